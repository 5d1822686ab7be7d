#pragma once

#include "Views/Browse/Outline/OutlineModel.h"

#include <QElapsedTimer>
#include <QTreeView>
#include <vector>

class QMenu;

namespace brimvale {

/// The outline of a scanned tree: the rows of the focused folder, and of all expanded folders below it. Shown
/// rows stay selected and expanded when rows are sorted, filtered or removed. A click on the header changes
/// the sort order.
///
/// Delete and Command/Ctrl+Up are handled by its parent widgets.
class OutlineView : public QTreeView {
    Q_OBJECT

public:
    /// An outline of `model`, which must outlive it.
    explicit OutlineView(OutlineModel &model, QWidget *parent = nullptr);

    /// Shows the contents of `folder`, even if the filter hides it; null for the whole tree. Clears the
    /// selection.
    void setFocusFolder(FSNode *folder);
    /// The focused folder; null without a tree.
    [[nodiscard]] FSNode *focusFolder() const;

    /// Selects only this node, expands its ancestors and scrolls to it. Selects nothing for null, a node that
    /// the filter hides, or one outside the focused folder. Emits no signal.
    void select(FSNode *node);
    /// Expands these folders and selects these nodes, beside those that are. The focus stays.
    void putBack(const std::vector<FSNode *> &expanded, const std::vector<FSNode *> &selected);
    /// Deselects these nodes and their descendants.
    void deselectWithin(const std::vector<FSNode *> &folders);
    /// The selected nodes, in no particular order.
    [[nodiscard]] std::vector<FSNode *> selectedNodes() const;

    [[nodiscard]] QRect visualRect(const QModelIndex &index) const override;

    /// Adds the columns to a menu, to choose them.
    void addColumns(QMenu &menu);

    /// Type-ahead: moves to the next shown row whose name starts with the text typed in quick succession.
    void keyboardSearch(const QString &typed) override;

signals:
    /// The user selected these nodes, or selected nodes are no longer shown.
    void selectionChangedTo(const std::vector<brimvale::FSNode *> &nodes);
    /// A folder was double-clicked, or Return was pressed on it; and the same for anything else.
    void opened(brimvale::FSNode *folder);
    void fileOpened(brimvale::FSNode *file);
    /// The user asked for the context menu of the selection, at this point of the screen.
    void menuRequested(const QPoint &position);

public:
    void reset() override;
    /// Selects all shown rows. Of those that a filter shows, the folders that only contain matches stay out.
    void selectAll() override;

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override;
    void drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override;

private:
    void setAsideSelection();
    void putBackSelection();
    void announceSelection();
    void selectNodes(const std::vector<FSNode *> &nodes);
    void open(const QModelIndex &index);
    void showFiltered(qint64 matches);
    void restoreExpansion(bool areMatchesOpen);
    void leaveClosed(const QModelIndex &folder);
    [[nodiscard]] QRect chevronRect(const QModelIndex &name) const;
    [[nodiscard]] FSNode *rowBelow(const FSNode &node) const;

    OutlineModel &model_;
    std::vector<FSNode *> announced_; ///< only for comparison: the nodes may be gone
    std::vector<FSNode *> setAside_;  ///< the selection while rows are rearranged
    bool isSilent_ = false;
    bool isRestoring_ = false;
    int pointerY_ = -1; ///< of the pointer in the viewport
    QString typeAhead_;
    QElapsedTimer sinceTyped_;
};

} // namespace brimvale
