#include "Core/Treemap/TreemapStyle.h"
#include "Views/Browse/Compare/ChangeTexts.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <QContextMenuEvent>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

std::optional<std::size_t> TreemapView::tileAt(const QPointF &position) const {
    return TreemapNavigation::tileAt(tiles_, position.x(), position.y());
}

/// A detailed map shows things from anywhere below, so they need their path.
QString TreemapView::toolTipOf(std::size_t index) const {
    const FSNode &node = *tiles_[index].node;
    QString lines = displayedName(node);
    if (isDetailed_ && node.isAggregate)
        lines += QLatin1Char('\n') + displayedText(node.path());
    else if (isDetailed_)
        lines = displayedText(node.path());
    lines += QLatin1Char('\n') + text(TreemapStyle::sizeText(node));
    const QString change = changeOf_ ? changeSentence(changeOf_(node)) : QString();
    return change.isEmpty() ? lines : lines + QLatin1Char('\n') + change;
}

bool TreemapView::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    showToolTip(*static_cast<QHelpEvent *>(event));
    return true;
}

void TreemapView::mousePressEvent(QMouseEvent *event) {
    const std::optional<std::size_t> index = tileAt(event->position());
    pressed_ = index ? tiles_[*index].node : nullptr;
    if (event->button() == Qt::LeftButton && index)
        selectTile(*index);
}

/// Opens the tile of the first click: what the details tell about it may have moved the tiles since.
void TreemapView::mouseDoubleClickEvent(QMouseEvent *event) {
    const std::optional<std::size_t> index =
        pressed_ != nullptr ? tileOf(pressed_) : tileAt(event->position());
    if (event->button() == Qt::LeftButton && index)
        openTile(*index);
}

void TreemapView::mouseMoveEvent(QMouseEvent *event) {
    setHoveredTile(tileAt(event->position()));
}

void TreemapView::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    setHoveredTile(std::nullopt);
}

void TreemapView::keyPressEvent(QKeyEvent *event) {
    using TreemapNavigation::Direction;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = isPlain ? event->key() : Qt::Key_unknown;
    switch (key) {
    case Qt::Key_Left:
        return move(Direction::left);
    case Qt::Key_Right:
        return move(Direction::right);
    case Qt::Key_Up:
        return move(Direction::up);
    case Qt::Key_Down:
        return move(Direction::down);
    case Qt::Key_Escape:
        return selectAround(*event);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const std::optional<std::size_t> index = selectedTile())
            openTile(*index);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TreemapView::contextMenuEvent(QContextMenuEvent *event) {
    if (event->reason() != QContextMenuEvent::Keyboard) {
        if (const std::optional<std::size_t> index = tileAt(event->pos()))
            requestMenu(*index, event->globalPos());
    } else if (const std::optional<std::size_t> index = selectedTile()) {
        requestMenu(*index, mapToGlobal(tileArea(*index).center()));
    }
}

void TreemapView::setHoveredTile(std::optional<std::size_t> index) {
    if (index == hoveredTile_)
        return;
    for (const std::optional<std::size_t> changed : {std::exchange(hoveredTile_, index), index})
        if (changed)
            update(tileArea(*changed));
    emit hovered(index ? toolTipOf(*index).replace(QLatin1Char('\n'), u" · "_s) : QString());
}

void TreemapView::move(TreemapNavigation::Direction direction) {
    if (tiles_.empty())
        return;
    const std::optional<std::size_t> start = selectedTile();
    const auto target = start ? TreemapNavigation::next(tiles_, *start, direction) : std::size_t{0};
    if (target)
        selectTile(*target);
}

void TreemapView::showToolTip(const QHelpEvent &event) {
    const std::optional<std::size_t> index = tileAt(event.pos());
    if (!index)
        return QToolTip::hideText();
    QToolTip::showText(event.globalPos(), asToolTip(toolTipOf(*index)), this, tileArea(*index));
}

/// Selects the folder around the selected tile, where the map shows it.
void TreemapView::selectAround(QKeyEvent &event) {
    const std::optional<std::size_t> index = selectedTile();
    const auto folder = index ? TreemapNavigation::around(tiles_, *index) : std::nullopt;
    if (folder)
        selectTile(*folder);
    else
        QWidget::keyPressEvent(&event);
}

} // namespace brimvale
