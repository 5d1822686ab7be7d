#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int chevronSize = 14;
constexpr qreal groundRadius = 6;
constexpr int messageMargin = 24;

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
        painter->setBrush(!isSelected ? theme.hover : hasFocus() ? theme.accent : theme.selection);
        painter->drawRoundedRect(ground, groundRadius, groundRadius);
    }
    if (isCurrent && (!isSelected || announced_.size() > 1)) {
        painter->setPen(isSelected ? theme.onAccent : theme.tint);
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(ground.adjusted(0.5, 0.5, -0.5, -0.5), groundRadius, groundRadius);
    }
    painter->restore();

    QStyleOptionViewItem bare = option;
    bare.palette.setBrush(QPalette::Highlight, Qt::transparent);
    QTreeView::drawRow(painter, bare, index);
}

QRect OutlineView::visualRect(const QModelIndex &index) const {
    const QRect cell = QTreeView::visualRect(index);
    const bool isShownName = cell.height() > 0 && index.column() == OutlineModel::nameColumn;
    return isShownName ? OutlineDelegate::nameCell(cell) : cell;
}

/// Directly before the icon, at any depth of the row.
QRect OutlineView::chevronRect(const QModelIndex &name) const {
    const QRect cell = visualRect(name);
    return {cell.left() - indentation(), cell.top(), indentation(), cell.height()};
}

void OutlineView::drawBranches(QPainter *painter, const QRect &, const QModelIndex &index) const {
    if (!model_.hasChildren(index))
        return;
    const Theme &theme = Theme::current();
    const bool isOnAccent = hasFocus() && selectionModel()->isSelected(index);
    const QString name = isExpanded(index) ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right");
    const QRect place = chevronRect(index);
    painter->drawPixmap(place.center().x() - chevronSize / 2 + 1, place.center().y() - chevronSize / 2 + 1,
                        Icons::pixmap(name, isOnAccent ? theme.onAccent : theme.tertiaryText, chevronSize,
                                      devicePixelRatioF()));
}

void OutlineView::paintEvent(QPaintEvent *event) {
    QTreeView::paintEvent(event);
    const bool isFilteredOut = focusFolder() != nullptr && !model_.filter().isEmpty() &&
                               !model_.isFiltering() && model_.rowCount(rootIndex()) == 0;
    if (!isFilteredOut)
        return;
    QPainter painter(viewport());
    painter.setPen(Theme::current().tertiaryText);
    painter.setFont(font());
    const QRect place = viewport()->rect().adjusted(messageMargin, 0, -messageMargin, 0);
    painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap,
                     u"No matches for “%1” in this folder."_s.arg(model_.filter()));
}

} // namespace brimvale
