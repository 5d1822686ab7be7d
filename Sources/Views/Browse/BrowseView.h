#pragma once

#include "Core/Model/CorvelModel.h"
#include "Views/Browse/Outline/OutlineModel.h"

#include <QWidget>
#include <vector>

class QLineEdit;
class QMenu;
class QStackedLayout;

namespace brimvale {

class Breadcrumb;
class DetailPanel;
class NodeRemoval;
class OutlineView;
class ScanBar;
class ScanMessage;
class TreemapView;

/// The page that shows the scanned tree as an outline and as a treemap of the focused folder, in step.
class BrowseView : public QWidget {
    Q_OBJECT

public:
    explicit BrowseView(CorvelModel &model, QWidget *parent = nullptr);

private:
    QWidget *makeResults();
    QWidget *makeOutlineSide();
    QWidget *makeTreemapSide();
    void addShortcuts();

    void showTree();
    void showState();
    void focusOn(FSNode *folder);
    void focusOnEnclosing();
    void select(const std::vector<FSNode *> &nodes);
    void selectNode(FSNode *node);
    void showDetails(std::vector<FSNode *> nodes, bool isSelected);
    void showMenu(const QPoint &place);
    void reveal();
    Q_INVOKABLE void copyPaths();
    [[nodiscard]] std::vector<FSNode *> removableNodes() const;
    void showRemoval();
    void confirmRemoval();
    void letGoOf(FSNode *node);
    void showAfterRemoval();

    CorvelModel &model_;
    FSNode *focus_ = nullptr;     ///< the folder that both show; null without a tree
    std::vector<FSNode *> shown_; ///< what the details are about, and the actions act on
    bool isSelected_ = false;     ///< the user has selected what is shown; else it is the focused folder
    bool isStale_ = false;        ///< nodes were taken out since the treemap was drawn
    ScanBar *bar_;
    ScanMessage *message_;
    QWidget *results_ = nullptr;
    QStackedLayout *body_;
    Breadcrumb *breadcrumb_;
    QLineEdit *filter_;
    OutlineModel outlineModel_;
    OutlineView *outline_;
    TreemapView *treemap_;
    DetailPanel *details_;
    NodeRemoval *removal_;
};

} // namespace brimvale
