#include "Views/Browse/BrowseView.h"

#include "Base/Bytes.h"
#include "Catalogs/Words.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Removal/NodesToRemove.h"
#include "Views/Browse/Breadcrumb.h"
#include "Views/Browse/DetailPanel.h"
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
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/ItemActions.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// Whether the node is in the tree, and does not only stand for others in the treemap.
bool isInTree(const FSNode &node) {
    if (node.parent() == nullptr || !node.isAggregate)
        return true;
    const auto children = node.parent()->children();
    return std::any_of(children.begin(), children.end(),
                       [&](const auto &child) { return child.get() == &node; });
}

/// The title of what leads to the page of a category.
QString routeTo(const CategoryPolicy &policy) {
    return policy.backsUpFirst ? u"Back Up in %1…"_s.arg(text(policy.title))
                               : u"Open %1"_s.arg(text(policy.title));
}

QString sentenceOf(const RemovalRefusal &refusal) {
    const QString words = displayedText(refusal.reason);
    return refusal.hasRemovableContents ? words + u" Open it to choose what is inside."_s : words;
}

} // namespace

BrowseView::BrowseView(ScanSession &scan, Removals &removals, const Volumes &volumes, QWidget *parent)
    : QWidget(parent), scan_(scan), removals_(removals), bar_(new ScanBar(scan, volumes, this)),
      message_(new ScanMessage(scan, volumes, this)), growing_(new GrowingView(scan, this)),
      body_(new QStackedLayout), breadcrumb_(new Breadcrumb(this)), filter_(new QLineEdit(this)),
      outline_(new OutlineView(outlineModel_, this)), tabs_(new TabStrip(this)), find_(new FindView(this)),
      lists_(new QStackedLayout),
      filterNote_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      treemap_(new TreemapView(this)), details_(new DetailPanel(this)),
      removal_(new NodeRemoval(scan, removals, *this)), check_(new SelectionCheck(this)) {
    setObjectName(QStringLiteral("browsePage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, Metrics::pageMargin, Metrics::pageMargin,
                               Metrics::pageMargin);
    layout->setSpacing(16);
    layout->addWidget(bar_);
    layout->addWidget(new ImportNote(scan, this));
    layout->addLayout(body_, 1);
    results_ = makeResults();
    body_->addWidget(message_);
    body_->addWidget(results_);
    body_->addWidget(growing_);
    addShortcuts();

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
    filter_->setFixedWidth(150);
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
    card->setMinimumWidth(320);
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
    side->setMinimumWidth(260);
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
    addShortcut(Shortcuts::removal(), [this] { confirmRemoval(); });
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
    outlineModel_.setTree(scan_->tree);
    if (scan_->tree != nullptr)
        focusOn(scan_->tree.get());
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

/// After a selection in the outline, the treemap marks its first node, or the tile that contains it.
void BrowseView::select(const std::vector<FSNode *> &nodes) {
    treemap_->setSelection(nodes.empty() ? nullptr : nodes.front());
    if (nodes.empty() && focus_ != nullptr)
        showDetails({focus_}, false);
    else
        showDetails(nodes, true);
}

/// Selects one node in both. The tile for the many small children has no row in the outline.
void BrowseView::selectNode(FSNode *node) {
    find_->clearSelection(); // what is acted on is what is shown as selected
    outline_->select(isInTree(*node) ? node : nullptr);
    treemap_->setSelection(node);
    showDetails({node}, true);
}

void BrowseView::showDetails(std::vector<FSNode *> nodes, bool isSelected) {
    shown_ = std::move(nodes);
    isSelected_ = isSelected;
    details_->showNodes(shown_);
    isRemovalAsked_ = isBasketAsked_ = false;
    toRemove_ = isSelected_ ? removableNodes(shown_) : std::vector<FSNode *>();
    check_->check({toRemove_.begin(), toRemove_.end()});
    details_->showObjection({});
    showRemoval();
}

void BrowseView::showMenu(const QPoint &place) {
    if (shown_.empty())
        return;
    QMenu *menu = makeMenu(this);
    menu->setObjectName(QStringLiteral("nodeMenu"));
    if (shown_.size() == 1)
        addActionsFor(*shown_.front(), *menu);
    menu->addAction(ItemActions::copyTitle(shown_.size()), this, &BrowseView::copyPaths);
    if (currentList() == find_ && shown_.size() == 1)
        menu->addAction(u"Show in Folders"_s, this, [this, node = shown_.front()] { showInFolder(node); });
    menu->addAction(u"Invert Selection"_s, this, &BrowseView::invertSelection);
    if (!toRemove_.empty()) {
        QAction *gather = menu->addAction(u"Add to Basket"_s, this, &BrowseView::addToBasket);
        gather->setEnabled(!check_->objection());
        menu->addSeparator();
        QAction *remove = menu->addAction(u"Remove…"_s, this, &BrowseView::confirmRemoval);
        remove->setEnabled(!removals_.isRemoving() && !check_->objection());
        if (const CategoryPolicy *one = policy())
            menu->addAction(routeTo(*one), this, &BrowseView::followRoute);
    }
    // The tree may be replaced, or lose nodes, while the menu is open.
    connect(&scan_, &ScanSession::treeChanged, menu, &QMenu::close);
    connect(&scan_, &ScanSession::nodeAboutToBeDetached, menu, &QMenu::close);
    connect(&scan_, &ScanSession::contentsAboutToBeReplaced, menu, &QMenu::close);
    menu->popup(place);
}

void BrowseView::reveal() {
    if (shown_.size() == 1 && !shown_.front()->isImported())
        ItemActions::reveal(FileURL(shown_.front()->path()), this);
}

void BrowseView::copyPaths() {
    if (shown_.empty())
        return;
    std::vector<FileURL> items;
    for (const FSNode *node : shown_)
        items.emplace_back(node->path());
    ItemActions::copyPaths(items);
    details_->showNotice(items.size() == 1 ? u"Path copied."_s : u"Paths copied."_s);
}

/// Shows whether the shown nodes can be removed, and how much that would free.
void BrowseView::showRemoval() {
    std::int64_t bytes = 0;
    for (const FSNode *node : toRemove_)
        bytes = checkedAdd(bytes, node->size);
    details_->showRemoval(static_cast<std::int64_t>(toRemove_.size()), bytes, removals_.isRemoving());
}

/// Shows what stands against the removal of the selection, or opens the question that waited for that.
void BrowseView::showAnswer() {
    std::optional<DetailPanel::Objection> shown;
    if (const CategoryPolicy *one = policy())
        shown = {text(one->warning), routeTo(*one)};
    else if (check_->objection())
        shown = {sentenceOf(std::get<RemovalRefusal>(*check_->objection())), {}};
    details_->showObjection(shown);
    if (std::exchange(isBasketAsked_, false))
        addToBasket();
    if (!std::exchange(isRemovalAsked_, false))
        return;
    details_->showNotice({});
    confirmRemoval();
}

void BrowseView::confirmRemoval() {
    if (check_->isPending()) {
        isRemovalAsked_ = true;
        details_->showNotice(u"Checking the selection…"_s); // a very large one takes a moment
    } else if (!check_->objection()) {
        removal_->ask(toRemove_);
    }
}

const CategoryPolicy *BrowseView::policy() const {
    return check_->objection() ? std::get_if<CategoryPolicy>(&*check_->objection()) : nullptr;
}

void BrowseView::followRoute() {
    if (const CategoryPolicy *one = policy())
        emit categoryAsked(std::string(one->id));
}

QWidget &BrowseView::map() const {
    return *treemap_;
}

/// A node is about to leave the tree: drop all pointers to it and its descendants.
void BrowseView::letGoOf(FSNode *node) {
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
    treemap_->setNode(focus_);
    listFiles();
    select(selectedNodes());
    showState();
}

} // namespace brimvale
