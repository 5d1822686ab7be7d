#include "Core/Model/ScanSession.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanStats.h"
#include "Platform/FileStatus.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brimvale {

namespace {

/// The file as a scan would show it now; null if there is none.
std::shared_ptr<FSNode> fileAgain(const std::string &path) {
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status || status->kind != FileKind::regularFile)
        return nullptr;
    auto file = std::make_shared<FSNode>(std::string(FileURL(path).fileName()), path, false);
    file->setIdentity(status->identity);
    file->size = status->allocatedBytes;
    file->logicalSize = status->length;
    file->fileCount = 1;
    file->modified = FSNode::secondsOf(status->modified);
    return file;
}

/// The folder or file as the scan of the tree at `rootPath` would show it now; null if it is gone.
std::shared_ptr<FSNode> scannedAgain(const std::string &path, const std::string &rootPath,
                                     const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
    std::shared_ptr<FSNode> found = path == rootPath ? DiskScanner::scan(path, options, stats, pool)
                                                     : DiskScanner::scanInside(path, options, stats, pool);
    if (found == nullptr)
        return fileAgain(path);
    found->sortRecursively();
    return found;
}

} // namespace

void ScanSession::measureAgain(const GonePaths &partlyGone) {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->partlyGone.add(partlyGone);
    scanAgain(partlyGone);
}

void ScanSession::rescan(const FileURL &folder) {
    if (!showsThisDisk() || state().isScanning)
        return;
    update([&](SessionState &state) { state.rescannedPath = folder.path(); });
    scanAgain(GonePaths({folder}));
}

void ScanSession::stopRescan() {
    if (state().rescannedPath.empty())
        return;
    const FileURL stopped(std::exchange(unannounced().rescannedPath, {}));
    std::vector<FileURL> others;
    const auto keepOthers = [&](const GonePaths &places) {
        std::copy_if(places.outermost().begin(), places.outermost().end(), std::back_inserter(others),
                     [&](const FileURL &place) { return place != stopped; });
    };
    keepOthers(toScanAgain_);
    if (rescan_ != nullptr && rescan_->items.contains(stopped)) {
        rescan_->stats->cancel();
        keepOthers(rescan_->items);
    }
    toScanAgain_ = GonePaths(std::move(others));
    emit changed();
}

/// These places were scanned again, or are not in the tree.
void ScanSession::endUserRescan(const GonePaths &items) {
    const std::string &path = state().rescannedPath;
    if (path.empty() || !items.contains(FileURL(path)) || toScanAgain_.contains(FileURL(path)))
        return;
    update([](SessionState &state) { state.rescannedPath.clear(); });
}

void ScanSession::readPlacesAgain(const GonePaths &replaced) {
    if (!showsThisDisk())
        return;
    const FileURL root(state().tree->path());
    const auto hasNode = [this](const FileURL &place) {
        const bool isLeaving = isDropping_ && dropping_.contains(place);
        return !isLeaving && !nodesAt(*state().tree, GonePaths({place})).empty();
    };
    std::vector<FileURL> places;
    for (const FileURL &place : replaced.outermost()) {
        const FileURL parent = place.parent();
        places.push_back(parent == root && hasNode(place) ? place : parent);
    }
    measureAgain(GonePaths(std::move(places)));
}

void ScanSession::readGrownAgain(const GonePaths &folders) {
    if (!showsThisDisk())
        return;
    const auto isInTree = [this](const FileURL &folder) {
        return !foldersAt(*state().tree, GonePaths({folder})).empty();
    };
    const FileURL root(state().tree->path());
    std::vector<FileURL> places;
    for (const FileURL &folder : folders.outermost()) {
        if (isInTree(folder))
            places.push_back(folder);
        else if (folder.parent() != root && isInTree(folder.parent()))
            places.push_back(folder.parent());
    }
    measureAgain(GonePaths(std::move(places)));
}

/// One rescan follows the other, so no older contents replace newer ones.
void ScanSession::scanAgain(const GonePaths &items) {
    toScanAgain_.add(items);
    if (rescan_ == nullptr)
        beginRescan();
}

void ScanSession::beginRescan() {
    const GonePaths items = std::exchange(toScanAgain_, {});
    if (!showsThisDisk() || items.isEmpty())
        return;
    ScannedPlaces places;
    for (const FSNode *node : nodesAt(*state().tree, items))
        places.emplace_back(node->parent() != nullptr && node->parent()->isAggregate ? node->parent()->path()
                                                                                     : node->path(),
                            nullptr);
    if (places.empty())
        return endUserRescan(items);
    rescan_ = std::make_shared<Rescan>(Rescan{.tree = state().tree, .items = items});
    threads_.run(
        this,
        [places = std::move(places), rootPath = state().tree->path(), moment = state().ageMoment,
         stats = rescan_->stats](WalkPool &pool) mutable {
            for (auto &[path, found] : places)
                found = scannedAgain(path.path(), rootPath, optionsAt(moment), *stats, pool);
            return std::move(places);
        },
        [this](ScannedPlaces found) { endRescan(std::move(found)); });
}

void ScanSession::endRescan(ScannedPlaces found) {
    if (isDropping_) { // of the nodes that wait, some may be in these places
        QTimer::singleShot(sliceOfDetaching, this,
                           [this, found = std::move(found)]() mutable { endRescan(std::move(found)); });
        return;
    }
    const std::shared_ptr<Rescan> done = std::exchange(rescan_, nullptr);
    const bool isOfThisTree = state().tree != nullptr && done->tree.lock() == state().tree;
    if (isOfThisTree && !done->stats->cancelled()) {
        replaceUnreadable(found, done->stats);
        replace(found);
        scanAgain(dropFromTree(done->gone));
    }
    workers_.dispose(std::move(found));
    endUserRescan(done->items);
    if (rescan_ == nullptr)
        beginRescan();
}

void ScanSession::replace(const ScannedPlaces &places) {
    std::vector<FileURL> gone;
    for (const auto &[path, found] : places)
        for (FSNode *node : nodesAt(*state().tree, GonePaths({path}))) { // it may have left the tree since
            if (found != nullptr && found->isDirectory == node->isDirectory)
                replaceContents(*node, *found);
            else
                gone.push_back(path);
        }
    if (!gone.empty())
        drop(GonePaths(std::move(gone)));
}

void ScanSession::replaceContents(FSNode &folder, FSNode &found) {
    std::vector<FSNode *> children;
    for (const std::unique_ptr<FSNode> &child : folder.children())
        children.push_back(child.get());
    emit replacementBegins(&folder);
    emit nodesAboutToBeDetached(children);
    emit contentsAboutToBeReplaced(&folder);
    folder.swapContents(found);
    unmarkReadable(folder.parent() != nullptr ? folder.parent() : &folder);
    countFiles(folder.fileCount - found.fileCount);
    emit contentsReplaced(&folder);
    emit changed();
}

/// The places were scanned again, with these results.
void ScanSession::replaceUnreadable(const ScannedPlaces &places, const std::shared_ptr<ScanStats> &stats) {
    if (latestStats_ == nullptr)
        return;
    UnreadableItems &items = latestStats_->unreadableItems();
    for (const auto &place : places) {
        if (place.first.path() == state().tree->path()) { // its scan found all there are
            latestStats_ = stats;
            return;
        }
        items.dropWithin(place.first.path());
    }
    items.add(stats->unreadableItems());
}

} // namespace brimvale
