#pragma once

#include "Core/Scan/FSNode.h"
#include "Views/Browse/Outline/OutlineFilter.h"
#include "Views/Browse/Outline/OutlineOrder.h"
#include "Views/Browse/Outline/OutlineOwners.h"

#include <QAbstractItemModel>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The rows of a scanned tree for an outline. A folder is sorted and filtered only when its rows are needed,
/// so even a tree of a million nodes is fast. The tree's root has no row: it is the invalid index.
///
/// It writes `row` and `marks` of the nodes, so a tree can have only one such model.
class OutlineModel : public QAbstractItemModel {
    Q_OBJECT

public:
    /// The indices of some `outlineColumns`.
    enum Column {
        nameColumn,
        sizeColumn,
        changeColumn,
        shareColumn,
        percentColumn,
        itemsColumn,
        filesColumn,
        modifiedColumn,
        ownerColumn
    };

    explicit OutlineModel(QObject *parent = nullptr);

    /// Shows another tree, or none with null, and drops all pointers into the old one. The filter's text is
    /// kept; the new tree is shown complete until the filter has run.
    void setTree(std::shared_ptr<FSNode> tree);

    /// The node of a row; the root for the invalid index. Null without a tree.
    [[nodiscard]] FSNode *nodeAt(const QModelIndex &index) const;
    /// The index of a node of the tree; invalid for the root, for a small file with a node, and for nodes
    /// that the filter hides.
    [[nodiscard]] QModelIndex indexOf(const FSNode &node, int column = nameColumn) const;
    /// The rows of a folder, in order.
    [[nodiscard]] const std::vector<FSNode *> &rowsOf(const FSNode &folder) const;

    /// Whether `node`, which may be null, is `folder` or one of its descendants.
    [[nodiscard]] static bool isWithin(const FSNode *node, const FSNode &folder);

    /// Shows only the nodes that a filter (`FileFilter`) accepts, with their descendants and ancestors;
    /// everything for an empty one. Its times count back from `moment`, in seconds since 1970. A large tree
    /// is searched from the event loop: the rows stay unchanged until `filtered`. Setting another filter
    /// before that replaces this one. Returns what makes the text no filter, as a sentence, and keeps the
    /// earlier one then; usually nothing.
    QString setFilter(const QString &text, std::uint32_t moment = FSNode::secondsOf(now()));
    /// The text of the filter; the rows may not show it yet.
    [[nodiscard]] const QString &filter() const { return filter_; }
    [[nodiscard]] const FileFilter &fileFilter() const { return fileFilter_; }
    /// What the filter has found.
    [[nodiscard]] const FilterResult &filterResult() const { return result_; }
    /// Whether the rows do not show the last filter yet.
    [[nodiscard]] bool isFiltering() const { return pass_.has_value(); }

    /// Whether the current filter hides a node, not considering the outline's focus.
    [[nodiscard]] bool hides(const FSNode &node) const;
    /// Whether the current filter accepts a node itself, or an ancestor; true without a filter.
    [[nodiscard]] bool isMatch(const FSNode &node) const;
    /// Whether a filter is set and accepts a descendant of `folder`.
    [[nodiscard]] bool leadsToMatch(const FSNode &folder) const;

    /// Always shows this folder, because the outline is focused on it; null for none.
    void setFocused(FSNode *folder);

    /// From now on tells what has changed since an earlier scan; null for nothing. The comparison must stay
    /// until the next call.
    void setComparison(const TreeComparison *comparison);
    [[nodiscard]] bool hasComparison() const { return comparison_ != nullptr; }

    /// The figures of many nodes have changed: shows them, and sorts the rows again if they should be.
    void showFigures(bool inOrder);

    /// Call this right before `node`, which is not the root, is removed from the tree, and `removed` when the
    /// figures of its ancestors are updated. An outline focused on `node` or a descendant then shows the
    /// whole tree.
    void aboutToRemove(const FSNode &node);
    void removed();

    /// The same for `folder` getting other children: before and after.
    void aboutToReplaceContents(const FSNode &folder);
    void replacedContents(const FSNode &folder);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

signals:
    /// Texts of shown cells are known now that were not before; no figure has changed.
    void textsArrived();
    /// Emitted before and after every change of the rows' order or of the rows shown, except the removal of
    /// one.
    void aboutToRearrange();
    void rearranged();
    /// There is a comparison now, or none any more.
    void comparisonChanged();
    /// The rows now show the filter, which has this many matches in the whole tree; 0 for an empty filter.
    void filtered(qint64 matches);

private:
    struct Removal {
        FSNode *folder;
        std::optional<std::size_t> row; ///< if it has one
    };

    [[nodiscard]] QString textOf(const FSNode &node, int column) const;
    [[nodiscard]] QVariant remarkOn(const FSNode &node) const;
    [[nodiscard]] bool isFiltered() const { return marksInForce_.has_value(); }
    [[nodiscard]] bool isShown(const FSNode &node) const;
    void startFilter();
    void advanceFilter();
    void rearrange(LayoutChangeHint hint, const std::function<void()> &change);
    void markFocused(FSNode *folder);
    void forgetRowsWithin(const FSNode &node);
    void insertRowsOf(const FSNode &folder);
    void announceChangedFigures(const FSNode &folder);
    [[nodiscard]] bool isInPlace(const FSNode &node) const;

    std::shared_ptr<FSNode> tree_;
    OutlineOrder order_;
    const TreeComparison *comparison_ = nullptr;
    mutable OutlineOwners owners_;
    mutable std::unordered_map<const FSNode *, std::vector<FSNode *>> rows_; ///< of folders already shown
    FSNode *focused_ = nullptr;
    QString filter_;
    FileFilter fileFilter_;
    FilterResult result_;
    std::optional<std::size_t> marksInForce_; ///< the filter marks in use, if any
    std::size_t marksOfPass_ = 0;
    std::optional<OutlineFilter> pass_;
    QTimer passTimer_;
    std::optional<Removal> removal_;
    bool rowsAreLeaving_ = false; ///< those of the folder that gets other children
};

} // namespace brimvale
