#include "Views/Apps/AppListDelegate.h"

#include "Views/Apps/AppListModel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int margin = 14;
constexpr int gap = 10;
constexpr int sizeWidth = 76;
constexpr int dotSize = 6;

} // namespace

void AppListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isActive = isSelected && option.widget != nullptr && option.widget->hasFocus();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
        painter->setBrush(isActive ? theme.accent : isSelected ? theme.track : theme.hover);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(6, 1, -6, -1), 6, 6);
    }
    QRect row = option.rect.adjusted(margin, 0, -margin, 0);
    painter->drawPixmap(row.left(), row.center().y() - Metrics::iconSize / 2 + 1,
                        Icons::pixmap(QStringLiteral("app-window"), isActive ? theme.onAccent : theme.accent,
                                      Metrics::iconSize, painter->device()->devicePixelRatioF()));
    row.setLeft(row.left() + Metrics::iconSize + gap);
    const QRect size(row.right() - sizeWidth + 1, row.top(), sizeWidth, row.height());
    row.setRight(size.left() - gap);
    painter->setFont(Type::font(Type::Size::body));
    if (index.data(AppListModel::analyzedRole).toBool()) {
        painter->setPen(isActive ? theme.onAccent : theme.secondaryText);
        painter->drawText(size, Qt::AlignRight | Qt::AlignVCenter,
                          index.data(AppListModel::sizeRole).toString());
    } else {
        painter->setBrush(isActive ? theme.onAccent : theme.tertiaryText);
        painter->drawEllipse(
            QRectF(size.right() - dotSize, size.center().y() - dotSize / 2.0 + 1, dotSize, dotSize));
    }
    painter->setPen(isActive ? theme.onAccent : theme.text);
    painter->drawText(
        row, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, std::max(row.width(), 0)));
    painter->restore();
}

QSize AppListDelegate::sizeHint(const QStyleOptionViewItem & /*option*/,
                                const QModelIndex & /*index*/) const {
    return {0, Metrics::rowHeight};
}

} // namespace brimvale
