#pragma once

#include "Views/Browse/Outline/OutlineModel.h"

#include <QElapsedTimer>
#include <QTreeView>
#include <vector>

namespace brimvale {

/// The outline of a scanned tree: the rows within one folder, the focused one, with all that is opened
/// beneath. What is selected and what is opened stays so while rows are sorted, filtered or removed, as far
/// as it is still shown; the sort order is changed by a click on the header.
///
/// Delete and Command/Ctrl+Up are left to the widgets around it.
class OutlineView : public QTreeView {
    Q_OBJECT

public:
    /// An outline of `model`, which must outlive it.
    explicit OutlineView(OutlineModel &model, QWidget *parent = nullptr);

    /// Shows what is within `folder`, whatever the filter; null for the whole tree. The selection is dropped.
    void setFocusFolder(FSNode *folder);
    /// The focused folder; null without a tree.
    [[nodiscard]] FSNode *focusFolder() const;

    /// Selects one node of the tree and nothing else, opens the folders around it and scrolls to it. Selects
    /// nothing for null, a node that is filtered out, or one outside the focused folder. Does not announce.
    void select(FSNode *node);
    /// Takes these nodes, and what lies within them, out of the selection.
    void deselectWithin(const std::vector<FSNode *> &folders);
    /// The selected nodes, in no particular order.
    [[nodiscard]] std::vector<FSNode *> selectedNodes() const;

    [[nodiscard]] QRect visualRect(const QModelIndex &index) const override;

    /// Type-ahead: goes to the next row shown whose name starts with what was typed in quick succession.
    void keyboardSearch(const QString &typed) override;

signals:
    /// The user selected these nodes, or what was selected is not shown any more.
    void selectionChangedTo(const std::vector<brimvale::FSNode *> &nodes);
    /// A folder was double-clicked, or Return was pressed on it.
    void opened(brimvale::FSNode *folder);
    /// A context menu was asked for, for the selection, at this point of the screen.
    void menuRequested(const QPoint &position);

public:
    void reset() override;

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
    std::vector<FSNode *> announced_; ///< only to compare with: they may be gone
    std::vector<FSNode *> setAside_;  ///< the selection while rows are rearranged
    bool isSilent_ = false;
    bool isRestoring_ = false;
    int pointerY_ = -1; ///< of the pointer over the viewport
    QString typeAhead_;
    QElapsedTimer sinceTyped_;
};

} // namespace brimvale
