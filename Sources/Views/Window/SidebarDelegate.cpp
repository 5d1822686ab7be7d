#include "Views/Window/SidebarDelegate.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr int headingHeight = 36;
constexpr int padding = 8;
constexpr int tileSize = 20;
constexpr qreal pillRadius = 6;
constexpr qreal ringWidth = 2;

bool isHeading(const QModelIndex &index) {
    return !index.data(SidebarDelegate::iconRole).isValid();
}

void paintHeading(QPainter &painter, const QRect &rect, const QString &title) {
    painter.setFont(Type::font(Type::Size::caption, QFont::DemiBold));
    painter.setPen(Theme::current().secondaryText);
    painter.drawText(rect.adjusted(padding, 0, -padding, -padding), Qt::AlignLeft | Qt::AlignBottom, title);
}

/// The keyboard focus is a ring inside the pill, because the accent also marks the current row without focus.
void paintPill(QPainter &painter, const QRectF &pill, const QStyleOptionViewItem &option) {
    const Theme &theme = Theme::current();
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    painter.setPen(Qt::NoPen);
    if (isCurrent || option.state.testFlag(QStyle::State_MouseOver)) {
        painter.setBrush(isCurrent ? theme.accent : theme.hover);
        painter.drawRoundedRect(pill, pillRadius, pillRadius);
    }
    const QStyle::State focus = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    if ((option.state & focus) == focus) {
        const qreal inset = ringWidth * 1.5;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(isCurrent ? theme.onAccent : theme.tint, ringWidth / 2));
        painter.drawRoundedRect(pill.adjusted(inset, inset, -inset, -inset), pillRadius - ringWidth,
                                pillRadius - ringWidth);
    }
}

void paintIcon(QPainter &painter, const QRect &place, const QModelIndex &index, const QColor &color) {
    const QString icon = index.data(SidebarDelegate::iconRole).toString();
    const auto tint = index.data(SidebarDelegate::tintRole).value<QColor>();
    const int size = tint.isValid() ? tileSize : Metrics::iconSize;
    QRect rect(0, 0, size, size);
    rect.moveCenter(place.center());
    if (tint.isValid())
        Icons::paintTile(painter, rect, icon, tint);
    else
        painter.drawPixmap(rect.topLeft(),
                           Icons::pixmap(icon, color, size, painter.device()->devicePixelRatioF()));
}

} // namespace

void SidebarDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const {
    const QString title = index.data(Qt::DisplayRole).toString();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isHeading(index)) {
        paintHeading(*painter, option.rect, title);
        painter->restore();
        return;
    }
    const Theme &theme = Theme::current();
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    paintPill(*painter, option.rect.adjusted(0, 1, 0, -1), option);

    QRect rest = option.rect.adjusted(padding - 2, 0, -padding, 0);
    paintIcon(*painter, QRect(rest.topLeft(), QSize(tileSize, rest.height())), index,
              isCurrent ? theme.onAccent : theme.tint);
    rest.setLeft(rest.left() + tileSize + padding - 2);

    const QString value = index.data(valueRole).toString();
    if (!value.isEmpty()) {
        painter->setFont(Type::font(Type::Size::caption));
        painter->setPen(isCurrent ? theme.onAccent : theme.secondaryText);
        painter->drawText(rest, Qt::AlignRight | Qt::AlignVCenter, value);
        rest.setRight(rest.right() - painter->fontMetrics().horizontalAdvance(value) - padding);
    }
    painter->setFont(Type::font(Type::Size::body, QFont::Medium));
    painter->setPen(isCurrent ? theme.onAccent : theme.text);
    painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(title, Qt::ElideRight, rest.width()));
    painter->restore();
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const {
    return {0, isHeading(index) ? Type::scaled(headingHeight) : Metrics::rowHeight()};
}

} // namespace brimvale
