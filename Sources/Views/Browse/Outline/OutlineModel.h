#pragma once

#include "Core/Scan/FSNode.h"
#include "Views/Browse/Outline/OutlineFilter.h"
#include "Views/Browse/Outline/OutlineOrder.h"

#include <QAbstractItemModel>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The rows of a scanned tree for an outline. They are sorted and filtered here, for each folder once it is
/// looked into, so that a tree of a million nodes costs no more than what is seen of it. The tree's root has
/// no row of its own: it is the invalid index.
///
/// It keeps `row` and `marks` of the nodes, so a tree has one such model at a time.
class OutlineModel : public QAbstractItemModel {
    Q_OBJECT

public:
    /// The places of some of the `outlineColumns`.
    enum Column { nameColumn, sizeColumn, shareColumn, itemsColumn };

    explicit OutlineModel(QObject *parent = nullptr);

    /// Shows another tree, or none with null, and lets go of the one before at once. The filter's text stays
    /// in force; the new tree is shown whole until it is filtered.
    void setTree(std::shared_ptr<FSNode> tree);

    /// The node of a row, the root for the invalid index. Null without a tree.
    [[nodiscard]] FSNode *nodeAt(const QModelIndex &index) const;
    /// Where a node of the tree is; invalid for the root, and for one that is filtered out.
    [[nodiscard]] QModelIndex indexOf(const FSNode &node, int column = nameColumn) const;
    /// The rows within a folder, in order.
    [[nodiscard]] const std::vector<FSNode *> &rowsOf(const FSNode &folder) const;

    /// Whether `node`, which may be null, is `folder` or beneath it.
    [[nodiscard]] static bool isWithin(const FSNode *node, const FSNode &folder);

    /// Shows only the nodes whose names contain `text`, whatever the case, with all that they hold and the
    /// folders around them; everything for an empty text. A large tree is searched while the event loop runs:
    /// the rows stay as they are until `filtered`. A filter that is set before then replaces this one.
    void setFilter(const QString &text);
    /// The text that was last set; the rows may not show it yet.
    [[nodiscard]] const QString &filter() const { return filter_; }
    /// Whether the rows do not show the filter yet.
    [[nodiscard]] bool isFiltering() const { return pass_.has_value(); }

    /// Whether the filter in force hides a node, but for the outline's focus.
    [[nodiscard]] bool hides(const FSNode &node) const;
    /// Whether there is a filter in force and the name of something beneath `folder` matches it.
    [[nodiscard]] bool leadsToMatch(const FSNode &folder) const;

    /// Keeps a folder shown whatever the filter, since the outline is focused on it; null for none.
    void setFocused(FSNode *folder);

    /// Call right before `node`, which is not the root, is taken out of the tree, and then `removed` once the
    /// figures of the folders around it are as they will be. An outline that is focused on `node` or within
    /// it shows the whole tree then.
    void aboutToRemove(const FSNode &node);
    void removed();

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
    /// Around every change of the rows' order or of which ones are shown. Not for the removal of one.
    void aboutToRearrange();
    void rearranged();
    /// The rows show the filter now, which `matches` names of the whole tree match; 0 for an empty filter.
    void filtered(qint64 matches);

private:
    struct Removal {
        FSNode *folder;
        std::optional<std::size_t> row; ///< where there is one
    };

    [[nodiscard]] bool isFiltered() const { return marksInForce_.has_value(); }
    [[nodiscard]] bool isShown(const FSNode &node) const;
    void startFilter();
    void advanceFilter();
    void rearrange(LayoutChangeHint hint, const std::function<void()> &change);
    void markFocused(FSNode *folder);
    void forgetRowsWithin(const FSNode &node);
    void announceChangedFigures(const FSNode &folder);
    [[nodiscard]] bool isInPlace(const FSNode &node) const;

    std::shared_ptr<FSNode> tree_;
    OutlineOrder order_;
    mutable std::unordered_map<const FSNode *, std::vector<FSNode *>> rows_; ///< of the folders looked into
    FSNode *focused_ = nullptr;
    QString filter_;
    std::optional<std::size_t> marksInForce_; ///< which of the filter marks are shown, if any
    std::size_t marksOfPass_ = 0;
    std::optional<OutlineFilter> pass_;
    QTimer passTimer_;
    std::optional<Removal> removal_;
};

} // namespace brimvale
