#include "Base/Background.h"
#include "Core/Model/AdministratorScan.h"
#include "Core/Model/ScanSession.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Scan/NodeExplanation.h"
#include "Platform/FileBrowser.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/GrowingView.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/ScanBar.h"
#include "Views/Browse/UnreadableSheet.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/WindowServices.h"
#include "Views/Entries/ItemActions.h"

#include <QMenu>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

/// Focuses on a folder of the history, if it is still in the tree.
void BrowseView::focusOnVisited(const std::optional<FileURL> &folder) {
    if (!folder)
        return;
    focusOn(nodeOf(*folder));
}

/// Focuses on a folder, or says why nothing can be shown inside the node.
void BrowseView::enter(FSNode *node) {
    if (!node->outlineChildren().empty())
        return focusOn(node);
    const QString name = displayedName(*node);
    if (const std::optional<std::string> why = explanation(*node))
        WindowServices::notify(*this, u"“%1”: %2"_s.arg(name, text(*why)));
    else if (node->isAggregate)
        WindowServices::notify(
            *this, u"“%1” are not listed one by one. Scan this folder by itself to see them."_s.arg(name));
    else if (node->isDirectory)
        WindowServices::notify(*this, u"“%1” is empty."_s.arg(name));
    else
        WindowServices::notify(*this, u"“%1” is a file. To open it, choose Open from its menu."_s.arg(name));
}

void BrowseView::open(const FileURL &folder) {
    FSNode *node = nodeOnDisk(folder);
    if (node != nullptr && !node->outlineChildren().empty())
        return focusOn(node);
    startScanOf(folder, std::nullopt);
}

void BrowseView::showItem(const FileURL &item) {
    FSNode *node = nodeOnDisk(item);
    if (node != nullptr && node->parent() != nullptr) {
        focusOn(node->parent());
        return selectNode(node);
    }
    if (node != nullptr)
        return focusOn(node);
    scanItem(item);
}

void BrowseView::scanItem(const FileURL &item) {
    inBackground(
        *QThreadPool::globalInstance(), this, [item] { return FileBrowser::kindOf(item); },
        [this, item](FileBrowser::Kind kind) {
            if (kind == FileBrowser::Kind::gone)
                WindowServices::notify(*this, u"“%1” is no longer there."_s.arg(displayedText(item.path())));
            else if (kind == FileBrowser::Kind::folder)
                startScanOf(item, std::nullopt);
            else
                startScanOf(item.parent(), item);
        });
}

/// Scans a folder and then selects an item in it.
void BrowseView::startScanOf(const FileURL &folder, const std::optional<FileURL> &item) {
    scan_.startScan(folder.path());
    toSelect_ = item;
}

/// Selects the item that the scan was started for, or what was selected in the growing picture.
void BrowseView::selectAsBefore() {
    if (scan_->tree != nullptr)
        if (const std::optional<FileURL> item = std::exchange(toSelect_, std::nullopt))
            if (FSNode *node = nodeOf(*item))
                return selectNode(node);
    const std::optional<std::string> name = growing_->selection();
    if (focus_ == nullptr || !name)
        return;
    for (const std::unique_ptr<FSNode> &child : focus_->children())
        if (child->name == *name && !child->isAggregate)
            return selectNode(child.get());
}

/// The node of an item in the tree; null if it has none.
FSNode *BrowseView::nodeOf(const FileURL &item) const {
    if (scan_->tree == nullptr)
        return nullptr;
    const std::vector<FSNode *> found = nodesAt(*scan_->tree, GonePaths({item}));
    return found.size() == 1 && !found.front()->isAggregate && FileURL(found.front()->path()) == item
               ? found.front()
               : nullptr;
}

/// The same, but not in a tree that was imported, which may be of another disk.
FSNode *BrowseView::nodeOnDisk(const FileURL &item) const {
    return scan_->tree != nullptr && scan_->tree->isImported() ? nullptr : nodeOf(item);
}

/// Scans the selected folder again, or the focused one.
void BrowseView::rescanFolder() {
    const FSNode *folder = shown_.size() == 1 && shown_.front()->isDirectory ? shown_.front() : focus_;
    if (folder != nullptr && !folder->isNotDescended && !folder->isOtherVolume())
        scan_.rescan(FileURL(folder->path()));
}

/// A folder has got other children: focuses on, expands and selects the same ones as before.
void BrowseView::showContents(FSNode *folder) {
    outlineModel_.replacedContents(*folder);
    if (focus_ == nullptr) { // the tree was empty
        focusOn(scan_->tree.get());
        return showState();
    }
    const KeptPlaces kept = std::exchange(kept_, {});
    if (FSNode *focused = kept.focusIn(*folder))
        moveFocus(focused);
    kept.putBack(*outline_, *folder);
}

/// The actions for one node: a folder is opened here, a file by its program.
void BrowseView::addActionsFor(FSNode &node, QMenu &menu) {
    const FileURL item(node.path());
    if (node.isDirectory && !node.outlineChildren().empty() && &node != focus_)
        menu.addAction(u"Open"_s, this, [this, folder = &node] { focusOn(folder); });
    if (node.isImported())
        return;
    if (!node.isDirectory && !node.isAggregate)
        menu.addAction(u"Open"_s, this, [this, item] { ItemActions::open(item, this); });
    ItemActions::addOtherPrograms(menu, item, this);
    if (node.isDirectory && !node.isNotDescended && !node.isOtherVolume())
        menu.addAction(u"Rescan This Folder"_s, this, &BrowseView::rescanFolder)
            ->setObjectName(QStringLiteral("rescanFolder"));
    menu.addSeparator();
}

void BrowseView::showUnreadable() {
    auto *sheet = new UnreadableSheet(scan_.unreadableItems(), scan_->scanUnreadable, this);
    const bool isOfThisDisk = scan_->tree != nullptr && !scan_->tree->isImported();
    if (isOfThisDisk && AdministratorScan::isPossible())
        sheet->offerAdministrator();
    connect(sheet, &UnreadableSheet::administratorAsked, this, [this] {
        if (scan_->tree != nullptr)
            emit administratorScanAsked(FileURL(scan_->tree->path()));
    });
    sheet->open();
}

void BrowseView::chooseFolder() {
    bar_->chooseFolder();
}

} // namespace brimvale
