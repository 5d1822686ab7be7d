#include "Base/Bytes.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Reclaim/LinkNames.h"
#include "Core/Removal/NodesToRemove.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Compare/ChangeList.h"
#include "Views/Browse/Compare/ChangeTexts.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Browse/Find/FindView.h"
#include "Views/Browse/NodeRemoval.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/SelectionCheck.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Text.h"
#include "Views/Entries/ItemActions.h"

#include <QMenu>
#include <algorithm>
#include <optional>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

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

/// Whether the node is in the tree, and does not only stand for others in the treemap.
bool BrowseView::isInTree(const FSNode &node) {
    if (node.parent() == nullptr || !node.isAggregate)
        return true;
    const auto children = node.parent()->children();
    return std::any_of(children.begin(), children.end(),
                       [&](const auto &child) { return child.get() == &node; });
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
    changes_->clearSelection();
    outline_->select(isInTree(*node) ? node : nullptr);
    treemap_->setSelection(node);
    showDetails({node}, true);
}

void BrowseView::showDetails(std::vector<FSNode *> nodes, bool isSelected) {
    shown_ = std::move(nodes);
    isSelected_ = isSelected;
    details_->showNodes(shown_);
    details_->showChange(shown_.size() == 1 ? changeSentence(comparison_.of(*shown_.front())) : QString());
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
    if (!shown)
        details_->showReclaim(check_->items(), placesOfOtherNames());
    if (std::exchange(isBasketAsked_, false))
        addToBasket();
    if (!std::exchange(isRemovalAsked_, false))
        return;
    details_->showNotice({});
    confirmRemoval();
}

/// Where files of the selection may have other names.
LinkPlaces BrowseView::placesOfOtherNames() const {
    const bool areLinked = std::any_of(toRemove_.begin(), toRemove_.end(),
                                       [](const FSNode *node) { return node->hasLinkedFiles; });
    return areLinked && scan_->tree != nullptr ? foldersWithLinks(*scan_->tree) : LinkPlaces{};
}

void BrowseView::confirmRemoval() {
    if (check_->isPending()) {
        isRemovalAsked_ = true;
        details_->showNotice(u"Checking the selection…"_s); // a very large one takes a moment
    } else if (!check_->objection()) {
        removal_->ask(toRemove_, details_->recentReclaim());
    }
}

const CategoryPolicy *BrowseView::policy() const {
    return check_->objection() ? std::get_if<CategoryPolicy>(&*check_->objection()) : nullptr;
}

void BrowseView::followRoute() {
    if (const CategoryPolicy *one = policy())
        emit categoryAsked(std::string(one->id));
}

/// What the guards or a storage category keep is not gathered, so this waits for the check.
void BrowseView::addToBasket() {
    isBasketAsked_ = check_->isPending();
    if (isBasketAsked_ || check_->objection() || toRemove_.empty())
        return;
    emit basketAsked(entriesOf(toRemove_));
    details_->showNotice(u"Added to the basket."_s);
}

} // namespace brimvale
