#include "Views/Browse/BrowseView.h"

#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Views/Browse/Breadcrumb.h"
#include "Views/Browse/Compare/ChangeList.h"
#include "Views/Browse/Compare/CompareNote.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Browse/Duplicates/DuplicatesView.h"
#include "Views/Browse/Find/FindView.h"
#include "Views/Browse/Find/TabStrip.h"
#include "Views/Browse/GrowingView.h"
#include "Views/Browse/ImportNote.h"
#include "Views/Browse/NodeRemoval.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/ScanBar.h"
#include "Views/Browse/ScanMessage.h"
#include "Views/Browse/SelectionCheck.h"
#include "Views/Browse/Treemap/TreemapPanel.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/Card.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/Theme.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

BrowseView::BrowseView(ScanSession &scan, Removals &removals, Duplicates &duplicates, const Volumes &volumes,
                       QWidget *parent)
    : QWidget(parent), scan_(scan), removals_(removals), bar_(new ScanBar(scan, volumes, this)),
      message_(new ScanMessage(scan, volumes, this)), growing_(new GrowingView(scan, this)),
      body_(new QStackedLayout), breadcrumb_(new Breadcrumb(this)), filter_(new QLineEdit(this)),
      outline_(new OutlineView(outlineModel_, this)), tabs_(new TabStrip(this)), find_(new FindView(this)),
      duplicates_(new DuplicatesView(duplicates, removals, this)), changes_(new ChangeList(this)),
      lists_(new QStackedLayout),
      filterNote_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      treemap_(new TreemapView(this)), details_(new DetailPanel(this)), note_(new CompareNote(this)),
      removal_(new NodeRemoval(scan, removals, *this)), check_(new SelectionCheck(this)) {
    setObjectName(QStringLiteral("browsePage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, Metrics::pageMargin, Metrics::pageMargin,
                               Metrics::pageMargin);
    layout->setSpacing(16);
    layout->addWidget(bar_);
    layout->addWidget(new ImportNote(scan, this));
    layout->addWidget(note_);
    layout->addLayout(body_, 1);
    results_ = makeResults();
    body_->addWidget(message_);
    body_->addWidget(results_);
    body_->addWidget(growing_);
    addShortcuts();
    makeComparison();

    connect(&scan_, &ScanSession::treeChanged, this, &BrowseView::showTree);
    connect(&scan_, &ScanSession::changed, this, [this] {
        if (std::exchange(wasScanning_, scan_->isScanning) != scan_->isScanning)
            showState();
    });
    connect(bar_, &ScanBar::unreadableAsked, this, &BrowseView::showUnreadable);
    connect(growing_, &GrowingView::filled, this, &BrowseView::showState);
    connect(breadcrumb_, &Breadcrumb::chosen, this, &BrowseView::focusOn);
    connect(outline_, &OutlineView::opened, this, &BrowseView::enter);
    connect(outline_, &OutlineView::fileOpened, this, &BrowseView::enter);
    connect(outline_, &OutlineView::selectionChangedTo, this, &BrowseView::select);
    connect(outline_, &OutlineView::menuRequested, this, &BrowseView::showMenu);
    connect(treemap_, &TreemapView::selected, this, &BrowseView::selectNode);
    connect(treemap_, &TreemapView::drilledIn, this, &BrowseView::enter);
    connect(treemap_, &TreemapView::contextMenuRequested, this,
            [this](FSNode *, QPoint place) { showMenu(place); });
    connect(filter_, &QLineEdit::textChanged, this, &BrowseView::applyFilter);
    connect(details_, &DetailPanel::revealRequested, this, &BrowseView::reveal);
    connect(details_, &DetailPanel::copyPathRequested, this, &BrowseView::copyPaths);
    connect(details_, &DetailPanel::removalRequested, this, &BrowseView::confirmRemoval);
    connect(details_, &DetailPanel::routeRequested, this, &BrowseView::followRoute);
    connect(check_, &SelectionCheck::answered, this, &BrowseView::showAnswer);
    connect(removal_, &NodeRemoval::confirmed, this, [this] {
        if (details_->isAncestorOf(window()->focusWidget()))
            currentList()->setFocus(); // a disabled button cannot keep it
    });
    connect(&scan_, &ScanSession::nodesAboutToBeDetached, outline_, &OutlineView::deselectWithin);
    connect(&scan_, &ScanSession::nodeAboutToBeDetached, this, &BrowseView::letGoOf);
    connect(&scan_, &ScanSession::nodeDetached, &outlineModel_, &OutlineModel::removed);
    connect(&scan_, &ScanSession::contentsAboutToBeReplaced, this, &BrowseView::letGoOfContents);
    connect(&scan_, &ScanSession::contentsReplaced, this, &BrowseView::showContents);
    connect(&scan_, &ScanSession::replacementBegins, this, [this](const FSNode *folder) {
        if (focus_ != nullptr)
            kept_ = KeptPlaces(*outline_, *folder, focus_);
        find_->keepSelection();
    });
    connect(&removals_, &Removals::changed, this, &BrowseView::showRemoval);
    showTree();
}

QWidget *BrowseView::makeResults() {
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("results"));
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(16);
    splitter->addWidget(makeOutlineSide());
    splitter->addWidget(makeTreemapSide());
    // Names need more room than tiles, at any width.
    splitter->setStretchFactor(0, 56);
    splitter->setStretchFactor(1, 44);
    splitter->setSizes({1120, 880});
    return splitter;
}

QWidget *BrowseView::makeOutlineSide() {
    filter_->setObjectName(QStringLiteral("filter"));
    filter_->setPlaceholderText(u"Filter by name"_s);
    filter_->setAccessibleName(u"Filter by name"_s);
    filter_->setClearButtonEnabled(true);
    filter_->setFixedWidth(Type::scaled(150));
    filter_->setTextMargins(4, 0, 4, 0);
    outline_->setObjectName(QStringLiteral("outline"));
    auto *head = new QHBoxLayout;
    head->setContentsMargins(4, 8, 8, 0); // so that the path begins above the title of the names
    head->addWidget(breadcrumb_, 1);
    head->addWidget(filter_);
    auto *card = new Card(this);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 1, 1, 8);
    layout->setSpacing(8);
    layout->addLayout(head);
    layout->addWidget(makeLists(), 1);
    card->setMinimumWidth(Type::partlyScaled(320));
    return card;
}

QWidget *BrowseView::makeTreemapSide() {
    treemap_->setObjectName(QStringLiteral("treemap"));
    map_ = new TreemapPanel(*treemap_, this);
    auto *detailCard = new Card(this);
    auto *detailLayout = new QVBoxLayout(detailCard);
    detailLayout->setContentsMargins(0, 0, 0, 0);
    detailLayout->addWidget(details_);
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(map_, 1);
    layout->addWidget(detailCard);
    side->setMinimumWidth(Type::partlyScaled(260));
    return side;
}

/// The shortcuts of the results are enabled while the results are visible.
void BrowseView::addShortcuts() {
    auto *find = new QShortcut(QKeySequence::Find, results_);
    connect(find, &QShortcut::activated, filter_, [this] {
        filter_->setFocus(Qt::ShortcutFocusReason);
        filter_->selectAll();
    });
    addShortcut(Shortcuts::parentFolder(), [this] { focusOnParent(); });
    addShortcut(Shortcuts::back(), [this] { focusOnVisited(history_.back()); });
    addShortcut(Shortcuts::forward(), [this] { focusOnVisited(history_.forward()); });
    addShortcut(Shortcuts::rescanFolder(), [this] { rescanFolder(); });
    addShortcut(Shortcuts::removal(), [this] {
        if (duplicates_->isAncestorOf(window()->focusWidget()))
            duplicates_->askForRemoval();
        else
            confirmRemoval();
    });
    auto *clear = new QShortcut(QKeySequence(Qt::Key_Escape), filter_);
    clear->setContext(Qt::WidgetShortcut);
    connect(clear, &QShortcut::activated, filter_, [this] {
        filter_->clear();
        currentList()->setFocus();
    });
    auto *invert = new QShortcut(Shortcuts::invertSelection(), results_);
    connect(invert, &QShortcut::activated, this, &BrowseView::invertSelection);
}

void BrowseView::addShortcut(const QList<QKeySequence> &keys, const std::function<void()> &act) {
    for (const QKeySequence &key : keys)
        connect(new QShortcut(key, results_), &QShortcut::activated, this, act);
}

/// Shows the model's current tree, or none, and drops everything of an earlier one.
void BrowseView::showTree() {
    focus_ = nullptr;
    history_.clear();
    isStale_ = false;
    breadcrumb_->setFolder(nullptr);
    treemap_->setNode(nullptr);
    showDetails({}, false);
    filter_->clear();
    find_->letGo();
    letGoOfComparison();
    outlineModel_.setTree(scan_->tree);
    if (scan_->tree != nullptr)
        focusOn(scan_->tree.get());
    compareAgain();
    showState();
    selectAsBefore();
}

void BrowseView::showState() {
    const std::shared_ptr<FSNode> &tree = scan_->tree;
    const bool hasResults = tree != nullptr && !tree->children().empty();
    const bool isGrowing = tree == nullptr && growing_->hasRows();
    const bool hadFocus = growing_->isAncestorOf(window()->focusWidget());
    body_->setCurrentWidget(hasResults ? results_ : isGrowing ? static_cast<QWidget *>(growing_) : message_);
    if (hasResults && hadFocus)
        outline_->setFocus();
    if (!hasResults && !isGrowing)
        message_->showState();
}

void BrowseView::focusOn(FSNode *folder) {
    if (folder == nullptr || folder->outlineChildren().empty())
        return;
    history_.visit(FileURL(folder->path()));
    moveFocus(folder);
}

void BrowseView::moveFocus(FSNode *folder) {
    if (outlineModel_.hides(*folder))
        filter_->clear(); // it might hide everything
    focus_ = folder;
    outline_->select(nullptr);
    treemap_->setSelection(nullptr);
    breadcrumb_->setFolder(folder);
    treemap_->setNode(folder);
    outline_->setFocusFolder(folder);
    showDetails({folder}, false);
    listFiles();
}

void BrowseView::focusOnParent() {
    if (focus_ == nullptr || focus_->parent() == nullptr)
        return;
    FSNode *left = focus_;
    focusOn(focus_->parent());
    selectNode(left);
}

QAction *BrowseView::detailedMap() const {
    return map_->detailedMap();
}

void BrowseView::addColumns(QMenu &menu) {
    outline_->addColumns(menu);
}

TreemapView &BrowseView::map() const {
    return *treemap_;
}

/// A node is about to leave the tree: drop all pointers to it and its descendants.
void BrowseView::letGoOf(FSNode *node) {
    comparison_.letGoOf(*node);
    if (focus_ == nullptr)
        return;
    check_->forget();
    if (OutlineModel::isWithin(focus_, *node))
        focusOn(node->parent());
    const auto isGone = [node](const FSNode *one) {
        return OutlineModel::isWithin(one, *node) || !isInTree(*one);
    };
    std::erase_if(shown_, isGone);
    std::erase_if(toRemove_, isGone);
    showLater();
    find_->letGo();
    outlineModel_.aboutToRemove(*node);
}

/// A folder is about to get other children: drop all pointers to the old ones and their descendants.
void BrowseView::letGoOfContents(FSNode *folder) {
    comparison_.leaveTree();
    for (const std::unique_ptr<FSNode> &child : folder->children())
        comparison_.letGoOf(*child);
    if (focus_ == nullptr)
        return;
    check_->forget();
    if (focus_ != folder && OutlineModel::isWithin(focus_, *folder))
        moveFocus(folder);
    const auto isGone = [folder](const FSNode *one) {
        return one != folder && (OutlineModel::isWithin(one, *folder) || !isInTree(*one));
    };
    std::erase_if(shown_, isGone);
    std::erase_if(toRemove_, isGone);
    showLater();
    find_->letGo();
    outlineModel_.aboutToReplaceContents(*folder);
}

void BrowseView::showLater() {
    // Every time, because leaving the node or entering a folder draws the treemap again.
    if (treemap_->node() != nullptr)
        treemap_->setNode(nullptr);
    if (!std::exchange(isStale_, true))
        QTimer::singleShot(0, this, &BrowseView::showAfterRemoval);
}

/// Draws once after many nodes were removed.
void BrowseView::showAfterRemoval() {
    if (!isStale_ || focus_ == nullptr)
        return;
    isStale_ = false;
    compareAgain();
    treemap_->setNode(focus_);
    listFiles();
    select(selectedNodes());
    showState();
}

} // namespace brimvale
