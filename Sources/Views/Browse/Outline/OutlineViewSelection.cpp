#include "Views/Browse/Outline/OutlineMarks.h"
#include "Views/Browse/Outline/OutlineView.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace brimvale {

void OutlineView::select(FSNode *node) {
    const FSNode *focus = focusFolder();
    const bool isInside = node != nullptr && node != focus && OutlineModel::isWithin(node, *focus);
    const QModelIndex index = isInside ? model_.indexOf(*node) : QModelIndex();
    isSilent_ = true;
    if (index.isValid()) {
        std::vector<const FSNode *> around;
        for (const FSNode *folder = node->parent(); folder != focus; folder = folder->parent())
            around.push_back(folder);
        std::for_each(around.rbegin(), around.rend(),
                      [this](const FSNode *folder) { expand(model_.indexOf(*folder)); });
        selectionModel()->setCurrentIndex(index,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    } else {
        clearSelection();
    }
    isSilent_ = false;
}

void OutlineView::putBack(const std::vector<FSNode *> &expanded, const std::vector<FSNode *> &selected) {
    isSilent_ = true;
    for (const FSNode *folder : expanded) {
        const QModelIndex index = model_.indexOf(*folder);
        if (index.isValid() && model_.hasChildren(index))
            expand(index);
    }
    std::vector<FSNode *> nodes = selectedNodes();
    for (FSNode *node : selected)
        if (model_.indexOf(*node).isValid() && OutlineModel::isWithin(node, *focusFolder()))
            nodes.push_back(node);
    selectNodes(nodes);
    if (!nodes.empty() && !currentIndex().isValid())
        selectionModel()->setCurrentIndex(model_.indexOf(*nodes.front()), QItemSelectionModel::NoUpdate);
    isSilent_ = false;
}

void OutlineView::selectAll() {
    QTreeView::selectAll();
    std::vector<FSNode *> nodes = selectedNodes();
    if (std::erase_if(nodes, [this](const FSNode *node) { return !model_.isMatch(*node); }) > 0)
        selectNodes(nodes);
}

/// Updating a large selection node by node would take a second for a hundred nodes.
void OutlineView::deselectWithin(const std::vector<FSNode *> &folders) {
    const std::unordered_set<const FSNode *> leaving(folders.begin(), folders.end());
    const auto isLeaving = [&](const FSNode *node) {
        while (node != nullptr && !leaving.contains(node))
            node = node->parent();
        return node != nullptr;
    };
    std::vector<FSNode *> nodes = selectedNodes();
    if (std::erase_if(nodes, isLeaving) > 0)
        selectNodes(nodes);
}

std::vector<FSNode *> OutlineView::selectedNodes() const {
    std::vector<FSNode *> nodes;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        if (range.left() > OutlineModel::nameColumn || !range.isValid())
            continue;
        const std::vector<FSNode *> &rows = model_.rowsOf(*model_.nodeAt(range.parent()));
        nodes.insert(nodes.end(), rows.begin() + range.top(), rows.begin() + range.bottom() + 1);
    }
    return nodes;
}

void OutlineView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    announceSelection();
}

void OutlineView::announceSelection() {
    std::vector<FSNode *> nodes = selectedNodes();
    if (nodes == announced_)
        return;
    announced_ = std::move(nodes);
    if (!isSilent_)
        emit selectionChangedTo(announced_);
}

void OutlineView::reset() {
    QTreeView::reset();
    if (!std::exchange(announced_, {}).empty())
        emit selectionChangedTo({});
}

/// Uses as few ranges as possible, because the selection model checks all of them for every cell.
void OutlineView::selectNodes(const std::vector<FSNode *> &nodes) {
    struct Row {
        const FSNode *folder;
        QModelIndex index;
    };
    std::vector<Row> rows;
    rows.reserve(nodes.size());
    for (const FSNode *node : nodes)
        rows.push_back({node->parent(), model_.indexOf(*node)});
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
        return a.folder != b.folder ? std::less()(a.folder, b.folder) : a.index.row() < b.index.row();
    });
    QItemSelection selection;
    for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
        do
            ++next;
        while (next < rows.size() && rows[next].folder == rows[first].folder &&
               rows[next].index.row() == rows[next - 1].index.row() + 1);
        selection.append(QItemSelectionRange(rows[first].index,
                                             rows[next - 1].index.siblingAtColumn(model_.columnCount() - 1)));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

/// The selection model would update every single cell, which takes a second if a whole large folder is
/// selected.
void OutlineView::setAsideSelection() {
    const QSignalBlocker isQuiet(selectionModel());
    setAside_ = selectedNodes();
    selectionModel()->clearSelection();
}

void OutlineView::putBackSelection() {
    std::erase_if(setAside_, [this](const FSNode *node) { return !model_.indexOf(*node).isValid(); });
    const bool isWhole = setAside_.size() == announced_.size();
    {
        const QSignalBlocker isQuiet(selectionModel());
        selectNodes(std::exchange(setAside_, {}));
    }
    if (isWhole)
        announced_ = selectedNodes();
    else
        announceSelection();
}

/// Rows that are not shown are deselected.
void OutlineView::leaveClosed(const QModelIndex &folder) {
    if (isRestoring_)
        return;
    const FSNode &closed = *model_.nodeAt(folder);
    OutlineMark::remove(*model_.nodeAt(folder), OutlineMark::expanded);
    const auto isHidden = [&](const FSNode *node) {
        return node != &closed && OutlineModel::isWithin(node, closed);
    };
    if (currentIndex().isValid() && isHidden(model_.nodeAt(currentIndex())))
        selectionModel()->setCurrentIndex(folder, QItemSelectionModel::NoUpdate);
    std::vector<FSNode *> nodes = selectedNodes();
    if (std::erase_if(nodes, isHidden) > 0)
        selectNodes(nodes);
}

} // namespace brimvale
