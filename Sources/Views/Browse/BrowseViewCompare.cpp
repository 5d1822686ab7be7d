#include "Core/Model/ScanSession.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Compare/ChangeList.h"
#include "Views/Browse/Compare/ChangeTexts.h"
#include "Views/Browse/Compare/CompareNote.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Browse/Find/TabStrip.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapPanel.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/WindowServices.h"

#include <QStackedLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// Whether a filter accepts something that is gone: by its name and earlier size, or by the name of a folder
/// between it and the root. Its date is not known.
bool acceptsGone(const FileFilter &filter, const TreeChange &change, const std::string &root) {
    const FileURL item(change.path);
    if (!change.isAggregate && (change.isFolder ? filter.acceptsFolder(item.fileName(), change.before, 0)
                                                : filter.acceptsFile(item.fileName(), change.before, 0)))
        return true;
    if (filter.hasConditions()) // the figures of the folder are not known
        return false;
    for (FileURL folder = change.isAggregate ? item : item.parent(); folder.path().size() > root.size();
         folder = folder.parent())
        if (filter.acceptsFolder(folder.fileName(), 0, 0))
            return true;
    return false;
}

} // namespace

void BrowseView::makeComparison() {
    lists_->addWidget(changes_);
    connect(note_, &CompareNote::stopAsked, this, &BrowseView::stopComparing);
    connect(changes_, &ChangeList::shownInFolder, this, &BrowseView::showChange);
    connect(changes_, &ChangeList::changeSelected, this, &BrowseView::selectChange);
    connect(changes_, &ChangeList::menuRequested, this, &BrowseView::showMenu);
    connect(&comparison_, &ScanComparison::compared, this, &BrowseView::showComparison);
    connect(&scan_, &ScanSession::dropped, this, &BrowseView::compareAgain);
}

void BrowseView::compareWith(ScanComparison::Earlier earlier) {
    if (scan_->tree == nullptr)
        return;
    stopComparing();
    comparison_.begin(std::move(earlier), *scan_->tree);
    changesTab_ = tabs_->addTab(u"Changes"_s);
    map_->setComparing(true);
    note_->showComparison(comparison_);
    emit comparingChanged();
}

void BrowseView::stopComparing() {
    if (!changesTab_)
        return;
    letGoOfComparison();
    comparison_.end();
    if (tabs_->currentIndex() == *changesTab_)
        tabs_->setCurrentIndex(0);
    tabs_->removeTab(*std::exchange(changesTab_, std::nullopt));
    map_->setComparing(false);
    emit comparingChanged();
}

/// The tree may have changed, or is another one. While nodes leave it one by one, it is not compared.
void BrowseView::compareAgain() {
    if (!comparison_.isOn() || scan_->tree == nullptr || scan_.isDropping())
        return;
    comparison_.compareAgain(*scan_->tree);
    if (!comparison_.isOn())
        return stopComparing(); // it is a tree of another folder
    note_->showComparison(comparison_);
}

/// Everything on the page forgets the changes, which point into the tree.
void BrowseView::letGoOfComparison() {
    outlineModel_.setComparison(nullptr);
    treemap_->setChanges({});
    changes_->changes().clear();
    comparison_.letGo();
    note_->showComparison(comparison_);
    details_->showChange({});
}

void BrowseView::showComparison() {
    outlineModel_.setComparison(comparison_.changes());
    treemap_->setChanges([this](const FSNode &node) { return comparison_.of(node); });
    note_->showComparison(comparison_);
    listChanges();
    if (shown_.size() == 1)
        details_->showChange(changeSentence(comparison_.of(*shown_.front())));
}

/// Lists the changes in the focused folder, whose path may have been another one.
void BrowseView::listChanges() {
    if (focus_ == nullptr || comparison_.changes() == nullptr)
        return changes_->changes().clear();
    const std::string folder = focus_->path();
    const std::string later = scan_->tree->path();
    const std::string earlier = comparison_.earlier().tree->path();
    const std::string within = folder == later ? std::string()
                               : later == "/"  ? folder
                                               : folder.substr(later.size());
    changes_->changes().show(comparison_.changes()->changes(), folder,
                             earlier == "/" && !within.empty() ? within : earlier + within,
                             [&](const TreeChange &change) { return acceptsChange(change, earlier); });
}

/// Whether the filter accepts a change, as the outline would. `earlierRoot` is the path of the earlier scan.
bool BrowseView::acceptsChange(const TreeChange &change, const std::string &earlierRoot) const {
    const FileFilter &filter = outlineModel_.fileFilter();
    if (filter.acceptsAll())
        return true;
    const FSNode *node = comparison_.changes()->nodeOf(change);
    return node != nullptr ? !outlineModel_.hides(*node) : acceptsGone(filter, change, earlierRoot);
}

/// Selects the item of a change, which is acted on like any other. Of what is gone nothing is left to select.
void BrowseView::selectChange(const TreeChange *change) {
    FSNode *node =
        change == nullptr || change->kind == TreeChange::Kind::gone ? nullptr : nodeOf(FileURL(change->path));
    treemap_->setSelection(node);
    if (node != nullptr)
        showDetails({node}, true);
    else
        select({});
}

void BrowseView::showChange(const TreeChange &change) {
    if (change.kind == TreeChange::Kind::gone)
        return WindowServices::notify(*this,
                                      u"This item is gone. Its folder shows how much smaller it is now."_s);
    if (FSNode *node = nodeOf(FileURL(change.path)))
        showInFolder(node);
}

} // namespace brimvale
