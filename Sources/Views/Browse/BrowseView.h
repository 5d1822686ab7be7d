#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupEntry.h"
#include "Views/Browse/Compare/ScanComparison.h"
#include "Views/Browse/FocusHistory.h"
#include "Views/Browse/KeptPlaces.h"
#include "Views/Browse/Outline/OutlineModel.h"

#include <QKeySequence>
#include <QList>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QLineEdit;
class QMenu;
class QStackedLayout;

namespace brimvale {

class Breadcrumb;
class ChangeList;
class CompareNote;
class DetailPanel;
class Duplicates;
class DuplicatesView;
class FindView;
class GrowingView;
class NodeRemoval;
class OutlineView;
class Removals;
class ScanBar;
class ScanMessage;
class ScanSession;
class SelectionCheck;
class TabStrip;
class TextLabel;
class TreemapPanel;
class TreemapView;
class Volumes;
struct CategoryPolicy;
struct LinkPlaces;

/// The page that shows the scanned tree as an outline and as a treemap of the focused folder, with equal
/// selections. In place of the outline, its files can be listed by size, type or age, or those with equal
/// contents.
class BrowseView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive the page.
    BrowseView(ScanSession &scan, Removals &removals, Duplicates &duplicates, const Volumes &volumes,
               QWidget *parent = nullptr);

    /// Shows a folder (absolute): in the scanned tree if it is there, otherwise by scanning it.
    void open(const FileURL &folder);
    /// Shows an item (absolute), selected in its parent folder: in the scanned tree if it is there. Otherwise
    /// scans it, or for a file its parent folder, or says in the window that it is gone.
    void showItem(const FileURL &item);
    /// Scans a folder, or the parent folder of a file, which is then selected; says if the item is gone.
    void scanItem(const FileURL &item);
    /// Lets the user choose a folder, which is scanned at once.
    void chooseFolder();
    /// Scans the selected folder again, or the focused one.
    void rescanFolder();

    /// The switch for the detailed map, for a menu.
    [[nodiscard]] QAction *detailedMap() const;

    /// Adds the columns of the outline to a menu, to choose them.
    void addColumns(QMenu &menu);

    /// The folder whose children the map shows; null without a tree.
    [[nodiscard]] FSNode *mapFolder() const { return focus_; }
    /// The map, to draw it into a picture.
    [[nodiscard]] TreemapView &map() const;

    /// Compares the tree with an earlier scan, until `stopComparing` or a tree of another folder. Does
    /// nothing without a tree.
    void compareWith(ScanComparison::Earlier earlier);
    void stopComparing();
    [[nodiscard]] bool isComparing() const { return changesTab_.has_value(); }

signals:
    /// `isComparing` is another answer now.
    void comparingChanged();
    /// The user wants to see the page of a storage category.
    void categoryAsked(const std::string &id);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);
    /// The user wants to scan a folder as administrator.
    void administratorScanAsked(const FileURL &folder);

private:
    QWidget *makeResults();
    QWidget *makeOutlineSide();
    QWidget *makeTreemapSide();
    void addShortcuts();
    void addShortcut(const QList<QKeySequence> &keys, const std::function<void()> &act);

    void showTree();
    void showState();
    void selectAsBefore();
    void focusOn(FSNode *folder);
    void enter(FSNode *node);
    void moveFocus(FSNode *folder);
    void focusOnParent();
    void focusOnVisited(const std::optional<FileURL> &folder);
    [[nodiscard]] static bool isInTree(const FSNode &node);
    void select(const std::vector<FSNode *> &nodes);
    void selectNode(FSNode *node);
    void showDetails(std::vector<FSNode *> nodes, bool isSelected);
    void showMenu(const QPoint &place);
    void addActionsFor(FSNode &node, QMenu &menu);
    void reveal();
    Q_INVOKABLE void copyPaths();
    void showRemoval();
    void showAnswer();
    void confirmRemoval();
    void followRoute();
    [[nodiscard]] const CategoryPolicy *policy() const;
    [[nodiscard]] LinkPlaces placesOfOtherNames() const;
    void letGoOf(FSNode *node);
    void letGoOfContents(FSNode *folder);
    void showContents(FSNode *folder);
    [[nodiscard]] FSNode *nodeOf(const FileURL &item) const;
    [[nodiscard]] FSNode *nodeOnDisk(const FileURL &item) const;
    void startScanOf(const FileURL &folder, const std::optional<FileURL> &item);
    void showUnreadable();
    void showLater();
    void showAfterRemoval();

    // The comparison with an earlier scan:
    void makeComparison();
    void compareAgain();
    void letGoOfComparison();
    void showComparison();
    void listChanges();
    [[nodiscard]] bool acceptsChange(const TreeChange &change, const std::string &earlierRoot) const;
    void selectChange(const TreeChange *change);
    void showChange(const TreeChange &change);

    // The lists beside the outline, and the filter:
    QWidget *makeLists();
    void applyFilter();
    void showMatches();
    void markMatches();
    [[nodiscard]] bool leadsMapToMatch(const FSNode &node) const;
    void chooseList(int tab);
    void listFiles();
    void showInFolder(FSNode *file);
    void invertSelection();
    void addToBasket();
    [[nodiscard]] QWidget *currentList() const;
    [[nodiscard]] std::vector<FSNode *> selectedNodes() const;

    ScanSession &scan_;
    const Removals &removals_;
    FSNode *focus_ = nullptr;        ///< the folder shown in both; null without a tree
    std::vector<FSNode *> shown_;    ///< the nodes in the details, which the actions use
    bool isSelected_ = false;        ///< `shown_` is the user's selection; otherwise the focused folder
    std::vector<FSNode *> toRemove_; ///< the nodes of the user's selection that can be removed
    bool wasScanning_ = false;       ///< the state shown
    bool isStale_ = false;           ///< nodes were removed since the treemap was drawn
    ScanBar *bar_;
    ScanMessage *message_;
    GrowingView *growing_;
    QWidget *results_ = nullptr;
    QStackedLayout *body_;
    Breadcrumb *breadcrumb_;
    QLineEdit *filter_;
    OutlineModel outlineModel_;
    OutlineView *outline_;
    TabStrip *tabs_; ///< the outline, or one of the lists of files
    FindView *find_;
    DuplicatesView *duplicates_;
    ChangeList *changes_;
    QStackedLayout *lists_;
    TextLabel *filterNote_; ///< what the filter has found, or what is wrong with it
    TreemapView *treemap_;
    TreemapPanel *map_ = nullptr; ///< contains it
    DetailPanel *details_;
    CompareNote *note_;
    ScanComparison comparison_{this};
    std::optional<int> changesTab_; ///< while there is a comparison
    NodeRemoval *removal_;
    SelectionCheck *check_;
    FocusHistory history_;
    std::optional<FileURL> toSelect_; ///< when the running scan is finished
    KeptPlaces kept_;                 ///< while a folder gets other contents
    bool isRemovalAsked_ = false;     ///< opens the question when the check is answered
    bool isBasketAsked_ = false;      ///< puts the selection into the basket then
};

} // namespace brimvale
