#include "Views/Browse/Find/FindDelegate.h"

#include "Views/Browse/Find/FindModel.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Components/AlignedSize.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int findRowHeight = 44;
constexpr int edge = 14;
constexpr int space = 8;
constexpr int childIndent = 14;

int lineHeight() {
    return Type::scaled(18);
}

int figureWidth() {
    return Type::scaled(104);
}

void paintRowGround(QPainter &painter, const QStyleOptionViewItem &option) {
    const Theme &theme = Theme::current();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool hasFocus = option.widget != nullptr && option.widget->hasFocus();
    if (isSelected)
        painter.fillRect(option.rect, hasFocus ? theme.accent : theme.track);
    else if (option.state.testFlag(QStyle::State_MouseOver))
        painter.fillRect(option.rect, theme.hover);
    if (option.state.testFlag(QStyle::State_HasFocus) && !isSelected) {
        painter.setPen(QPen(theme.accent, 1.5));
        painter.drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
    }
}

void paintLine(QPainter &painter, const QRect &place, Qt::Alignment alignment, Type::Size size,
               const QColor &color, const QString &words) {
    painter.setFont(Type::font(size));
    painter.setPen(color);
    painter.drawText(place, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(words, Qt::ElideMiddle, std::max(place.width(), 0)));
}

} // namespace

void FindDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    const bool isOnAccent = OutlineDelegate::isOnAccent(option);
    const QColor &words = isOnAccent ? theme.onAccent : theme.text;
    const QColor &quiet = isOnAccent ? theme.onAccent : theme.secondaryText;
    paintRowGround(*painter, option);
    const QVariant share = index.data(FindModel::shareRole);
    const bool isOpen = option.state.testFlag(QStyle::State_Open);
    const QString icon = share.isNull() ? index.data(FindModel::iconRole).toString()
                         : isOpen       ? QStringLiteral("chevron-down")
                                        : QStringLiteral("chevron-right");
    QRect row = option.rect.adjusted(edge + (index.parent().isValid() ? childIndent : 0), 0, -edge, 0);
    painter->drawPixmap(
        row.left(), row.center().y() - Metrics::iconSize / 2 + 1,
        Icons::pixmap(icon, quiet, Metrics::iconSize, painter->device()->devicePixelRatioF()));
    row.setLeft(row.left() + Metrics::iconSize + space);

    const QString second = index.data(FindModel::lineRole).toString();
    const int top = second.isEmpty() ? row.center().y() - lineHeight() / 2 : row.top() + Type::scaled(4);
    const QRect upper(row.left(), top, row.width(), lineHeight());
    const QRect lower = upper.translated(0, lineHeight());
    const QRect name = upper.adjusted(0, 0, -figureWidth() - space, 0);
    const QRect figure(row.right() - figureWidth() + 1, top, figureWidth(), lineHeight());
    paintLine(*painter, name, Qt::AlignLeft, Type::Size::body, words, index.data().toString());
    drawAlignedSize(*painter, figure, index.data(FindModel::sizeRole).toString()); // in the name's font
    paintLine(*painter, lower.adjusted(0, 0, -figureWidth() - space, 0), Qt::AlignLeft, Type::Size::caption,
              quiet, second);
    const QRect belowFigure = figure.translated(0, lineHeight());
    if (share.isNull())
        paintLine(*painter, belowFigure, Qt::AlignRight, Type::Size::caption, quiet,
                  index.data(FindModel::dateRole).toString());
    else
        OutlineDelegate::paintShare(*painter, option, belowFigure, share.toDouble());
}

QSize FindDelegate::sizeHint(const QStyleOptionViewItem & /*option*/, const QModelIndex & /*index*/) const {
    return {0, Type::scaled(findRowHeight)};
}

} // namespace brimvale
