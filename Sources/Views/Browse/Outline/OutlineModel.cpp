#include "Views/Browse/Outline/OutlineModel.h"

#include "Core/Scan/NodeExplanation.h"
#include "Views/Browse/Compare/ChangeTexts.h"
#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineMarks.h"
#include "Views/Browse/Outline/Prefetch.h"

#include <QStringList>
#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

const OutlineColumn &columnAt(int column) {
    return outlineColumns()[static_cast<std::size_t>(column)];
}

} // namespace

OutlineModel::OutlineModel(QObject *parent) : QAbstractItemModel(parent) {
    connect(&passTimer_, &QTimer::timeout, this, &OutlineModel::advanceFilter);
    connect(&owners_, &OutlineOwners::arrived, this, &OutlineModel::textsArrived);
}

void OutlineModel::setTree(std::shared_ptr<FSNode> tree) {
    beginResetModel();
    passTimer_.stop();
    pass_.reset();
    marksInForce_.reset();
    removal_.reset();
    markFocused(nullptr);
    rows_.clear();
    owners_.forget();
    tree_ = std::move(tree);
    endResetModel();
    startFilter();
}

FSNode *OutlineModel::nodeAt(const QModelIndex &index) const {
    return index.isValid() ? static_cast<FSNode *>(index.internalPointer()) : tree_.get();
}

QModelIndex OutlineModel::indexOf(const FSNode &node, int column) const {
    if (&node == tree_.get() || node.parent()->isAggregate || !isShown(node))
        return {};
    const std::vector<FSNode *> &rows = rowsOf(*node.parent());
    std::size_t row = std::min<std::size_t>(node.row, rows.size() - 1);
    while (rows[row] != &node) // rows above it have been removed since
        --row;
    rows[row]->row = static_cast<std::uint32_t>(row);
    return createIndex(static_cast<int>(row), column, &node);
}

const std::vector<FSNode *> &OutlineModel::rowsOf(const FSNode &folder) const {
    const auto [entry, isNew] = rows_.try_emplace(&folder);
    std::vector<FSNode *> &rows = entry->second;
    if (!isNew)
        return rows;
    rows.reserve(folder.children().size());
    for (const std::unique_ptr<FSNode> &child : folder.children())
        rows.push_back(child.get());
    if (isFiltered())
        std::erase_if(rows, [&](const FSNode *node) { return !isShown(*node); });
    order_.sort(rows);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        prefetchNodes(rows, row);
        rows[row]->row = static_cast<std::uint32_t>(row);
    }
    return rows;
}

bool OutlineModel::isWithin(const FSNode *node, const FSNode &folder) {
    while (node != nullptr && node != &folder)
        node = node->parent();
    return node != nullptr;
}

/// Rows of all folders are created again when needed. An index becomes invalid if its node is no longer shown
/// after `change`.
void OutlineModel::rearrange(LayoutChangeHint hint, const std::function<void()> &change) {
    emit aboutToRearrange();
    emit layoutAboutToBeChanged({}, hint);
    change();
    rows_.clear();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before)
        after.append(indexOf(*nodeAt(index), index.column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, hint);
    emit rearranged();
}

void OutlineModel::aboutToRemove(const FSNode &node) {
    passTimer_.stop();
    pass_.reset();
    if (isWithin(focused_, node))
        setFocused(nullptr);
    const QModelIndex index = indexOf(node);
    removal_ = Removal{node.parent(), std::nullopt};
    if (index.isValid()) {
        beginRemoveRows(index.parent(), index.row(), index.row());
        removal_->row = static_cast<std::size_t>(index.row());
    }
    forgetRowsWithin(node);
}

void OutlineModel::forgetRowsWithin(const FSNode &node) {
    if (node.isDirectory)
        std::erase_if(rows_, [&](const auto &entry) { return isWithin(entry.first, node); });
}

void OutlineModel::removed() {
    if (!removal_)
        return;
    const Removal removal = *std::exchange(removal_, std::nullopt);
    if (removal.row) {
        std::vector<FSNode *> &rows = rows_[removal.folder];
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*removal.row));
        endRemoveRows();
    }
    announceChangedFigures(*removal.folder);
    startFilter(); // its ancestors may no longer contain a match
}

void OutlineModel::aboutToReplaceContents(const FSNode &folder) {
    passTimer_.stop();
    pass_.reset();
    if (focused_ != &folder && isWithin(focused_, folder))
        setFocused(nullptr);
    const bool hasPlace = &folder == tree_.get() || isShown(folder);
    const auto listed = rows_.find(&folder);
    if (hasPlace && listed != rows_.end() && !listed->second.empty()) {
        beginRemoveRows(indexOf(folder), 0, static_cast<int>(listed->second.size()) - 1);
        rowsAreLeaving_ = true;
    }
    std::erase_if(rows_,
                  [&](const auto &entry) { return entry.first != &folder && isWithin(entry.first, folder); });
}

void OutlineModel::replacedContents(const FSNode &folder) {
    owners_.forget();
    const bool wasListed = rows_.contains(&folder);
    rows_[&folder].clear();
    if (std::exchange(rowsAreLeaving_, false))
        endRemoveRows();
    rows_.erase(&folder);
    if (wasListed && (&folder == tree_.get() || isShown(folder)))
        insertRowsOf(folder);
    announceChangedFigures(folder);
    startFilter();
}

/// Announces the rows of a folder that was shown without any.
void OutlineModel::insertRowsOf(const FSNode &folder) {
    std::vector<FSNode *> rows = rowsOf(folder);
    if (rows.empty())
        return;
    rows_[&folder].clear();
    beginInsertRows(indexOf(folder), 0, static_cast<int>(rows.size()) - 1);
    rows_[&folder] = std::move(rows);
    endInsertRows();
}

/// Announces new figures for the rows in `folder`, whose shares have changed, and for its ancestors, whose
/// sizes have changed too.
void OutlineModel::announceChangedFigures(const FSNode &folder) {
    bool isInOrder = true;
    for (const FSNode *changed = &folder; changed != nullptr; changed = changed->parent()) {
        isInOrder = isInOrder && isInPlace(*changed);
        const auto listed = rows_.find(changed);
        if (listed == rows_.end() || listed->second.empty())
            continue;
        const std::vector<FSNode *> &rows = listed->second;
        emit dataChanged(createIndex(0, 0, rows.front()),
                         createIndex(static_cast<int>(rows.size()) - 1, columnCount() - 1, rows.back()));
    }
    if (!isInOrder)
        rearrange(VerticalSortHint, [] {});
}

/// Without one, what was sorted by growth is sorted by size.
void OutlineModel::setComparison(const TreeComparison *comparison) {
    const bool had = std::exchange(comparison_, comparison) != nullptr;
    const bool isSortedByIt = order_.comparison != nullptr;
    if (isSortedByIt)
        order_ = comparison != nullptr ? OutlineOrder{nullptr, order_.isFalling, comparison} : OutlineOrder();
    showFigures(isSortedByIt);
    if (had != (comparison != nullptr))
        emit comparisonChanged();
}

void OutlineModel::showFigures(bool inOrder) {
    if (inOrder)
        rearrange(VerticalSortHint, [] {});
    for (const auto &[folder, rows] : rows_)
        if (!rows.empty())
            emit dataChanged(createIndex(0, 0, rows.front()),
                             createIndex(static_cast<int>(rows.size()) - 1, columnCount() - 1, rows.back()));
}

/// Whether a node is in the right order between its neighbours.
bool OutlineModel::isInPlace(const FSNode &node) const {
    const QModelIndex index = indexOf(node);
    if (!index.isValid())
        return true;
    const std::vector<FSNode *> &rows = rowsOf(*node.parent());
    const auto row = static_cast<std::size_t>(index.row());
    return (row == 0 || order_.allows(*rows[row - 1], node)) &&
           (row + 1 == rows.size() || order_.allows(node, *rows[row + 1]));
}

/// A view asks for every row of a folder that it lays out, then for its flags and whether it has children. So
/// the first two do not read the node they are asked for, and the last finds it in the cache: a folder of
/// 200,000 rows would otherwise wait for memory as often.
QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const {
    const FSNode *folder = nodeAt(parent);
    if (row < 0 || column < 0 || column >= columnCount() || parent.column() > 0 || folder == nullptr ||
        folder->outlineChildren().empty())
        return {};
    const std::vector<FSNode *> &rows = rowsOf(*folder);
    const auto place = static_cast<std::size_t>(row);
    if (place >= rows.size())
        return {};
    prefetchContents(rows, place);
    return createIndex(row, column, rows[place]);
}

QModelIndex OutlineModel::parent(const QModelIndex &index) const {
    return index.isValid() ? indexOf(*nodeAt(index)->parent()) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex &parent) const {
    const FSNode *folder = nodeAt(parent);
    if (folder == nullptr || parent.column() > 0 || folder->outlineChildren().empty())
        return 0;
    return static_cast<int>(rowsOf(*folder).size());
}

int OutlineModel::columnCount(const QModelIndex &) const {
    return static_cast<int>(outlineColumns().size());
}

bool OutlineModel::hasChildren(const QModelIndex &parent) const {
    const FSNode *folder = nodeAt(parent);
    if (folder == nullptr || parent.column() > 0 || folder->outlineChildren().empty())
        return false;
    if (!isFiltered())
        return true;
    if (OutlineMark::has(*folder, OutlineMark::holdsFocused) || rows_.contains(folder))
        return !rowsOf(*folder).empty();
    return OutlineMark::has(*folder, any(OutlineMark::filters[*marksInForce_]));
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex &index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const FSNode &node = *nodeAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return textOf(node, index.column());
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return remarkOn(node);
    case Qt::TextAlignmentRole:
        return headerData(index.column(), Qt::Horizontal, role);
    default:
        return {};
    }
}

/// Why its figures are incomplete, and what became of it since the earlier scan.
QVariant OutlineModel::remarkOn(const FSNode &node) const {
    QStringList sentences;
    if (const std::optional<std::string> words = explanation(node))
        sentences << QString::fromStdString(*words);
    if (comparison_ != nullptr)
        sentences << changeSentence(comparison_->of(node));
    sentences.removeAll(QString());
    return sentences.isEmpty() ? QVariant() : sentences.join(u' ');
}

QString OutlineModel::textOf(const FSNode &node, int column) const {
    if (column == changeColumn)
        return comparison_ != nullptr ? changeText(comparison_->of(node)) : QString();
    return column == ownerColumn ? owners_.nameFor(node) : columnAt(column).text(node);
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const OutlineColumn &column = columnAt(section);
    switch (role) {
    case Qt::DisplayRole:
        return column.title;
    case Qt::TextAlignmentRole:
        return QVariant::fromValue<Qt::Alignment>(column.alignment());
    case Qt::ToolTipRole:
        return column.menuTitle != column.title ? column.menuTitle : QString();
    case Qt::InitialSortOrderRole:
        return static_cast<int>(column.firstOrder());
    default:
        return {};
    }
}

void OutlineModel::sort(int column, Qt::SortOrder order) {
    if (column >= 0 && !columnAt(column).isSortable())
        return;
    OutlineOrder wanted; // where no column is chosen
    if (column >= 0)
        wanted = {columnAt(column).figure, order == Qt::DescendingOrder};
    if (column == changeColumn)
        wanted.comparison = comparison_;
    if (column == changeColumn && comparison_ == nullptr)
        return;
    if (wanted == order_)
        return;
    rearrange(VerticalSortHint, [&] { order_ = wanted; });
}

} // namespace brimvale
