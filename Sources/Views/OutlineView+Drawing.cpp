#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"
#include "Views/OutlineView.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr int chevronSize = 14;
constexpr qreal groundRadius = 6;

} // namespace

void OutlineView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    const bool isSelected = selectionModel()->isSelected(index);
    const bool isHovered = pointerY_ >= option.rect.top() && pointerY_ <= option.rect.bottom();
    const bool isCurrent = hasFocus() && index == currentIndex().siblingAtColumn(index.column());
    const QRectF ground = option.rect.adjusted(4, 1, -4, -1);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(!isSelected ? theme.hover : hasFocus() ? theme.accent : theme.track);
        painter->drawRoundedRect(ground, groundRadius, groundRadius);
    }
    if (isCurrent && (!isSelected || announced_.size() > 1)) {
        painter->setPen(isSelected ? theme.onAccent : theme.accent);
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(ground.adjusted(0.5, 0.5, -0.5, -0.5), groundRadius, groundRadius);
    }
    painter->restore();

    QStyleOptionViewItem bare = option;
    bare.palette.setBrush(QPalette::Highlight, Qt::transparent);
    QTreeView::drawRow(painter, bare, index);
}

void OutlineView::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const {
    if (!model_.hasChildren(index))
        return;
    const Theme &theme = Theme::current();
    const bool isOnAccent = hasFocus() && selectionModel()->isSelected(index);
    const QString name = isExpanded(index) ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right");
    painter->drawPixmap(rect.right() + 1 - (indentation() + chevronSize) / 2,
                        rect.center().y() - chevronSize / 2 + 1,
                        Icons::pixmap(name, isOnAccent ? theme.onAccent : theme.tertiaryText, chevronSize,
                                      devicePixelRatioF()));
}

} // namespace brimvale
