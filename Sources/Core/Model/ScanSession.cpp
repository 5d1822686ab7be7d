#include "Core/Model/ScanSession.h"

#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanStats.h"
#include "Platform/FileStatus.h"
#include "Platform/Host.h"

#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds scanInterval{200};
constexpr std::chrono::milliseconds sliceOfDetaching{8};

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
    return file;
}

/// The folder or file as the scan of the tree at `rootPath` would show it now; null if it is gone.
std::shared_ptr<FSNode> scannedAgain(const std::string &path, const std::string &rootPath, ScanStats &stats) {
    const ScanOptions options = ScanOptions::standard();
    std::shared_ptr<FSNode> found = path == rootPath ? DiskScanner::scan(path, options, stats)
                                                     : DiskScanner::scanInside(path, options, stats);
    if (found == nullptr)
        return fileAgain(path);
    found->sortRecursively();
    return found;
}

} // namespace

ScanSession::ScanSession(Workers &workers, Volumes &volumes)
    : Part({.scanRootPath = homeFolder().path()}), workers_(workers), volumes_(volumes) {
    connect(&progressTimer_, &QTimer::timeout, this, &ScanSession::pollScan);
}

ScanSession::~ScanSession() {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->stats->cancel();
    for (const std::shared_ptr<ScanStats> &stats : rescans_)
        stats->cancel();
}

void ScanSession::chooseScanRoot(std::string path) {
    update([&](SessionState &state) { state.scanRootPath = std::move(path); });
}

void ScanSession::startScan(std::optional<std::string> path) {
    if (state().isScanning) {
        if (scanStats_ != nullptr)
            scanStats_->cancel();
        finishScan(nullptr);
    }
    SessionState &begun = unannounced();
    if (path)
        begun.scanRootPath = *std::move(path);
    begun.isScanning = true;
    begun.scanFiles = begun.scanBytes = begun.scanUnreadable = 0;
    begun.scanElapsed = 0;
    begun.scanCurrentPath = begun.scanRootPath;
    scanStats_ = std::make_shared<ScanStats>();
    setTree(nullptr);
    emit changed();
    scanStart_ = std::chrono::steady_clock::now();
    progressTimer_.start(scanInterval);

    const auto walk = std::make_shared<Walk>(Walk{.stats = scanStats_});
    walks_.push_back(walk);
    workers_.run(
        this,
        [root = state().scanRootPath, stats = scanStats_] {
            std::shared_ptr<FSNode> found = DiskScanner::scan(root, ScanOptions::standard(), *stats);
            found->sortRecursively();
            return found;
        },
        [this, walk](std::shared_ptr<FSNode> found) {
            std::erase(walks_, walk);
            // Checked here, because a scan may be cancelled while its result waits for the event loop.
            if (walk->stats->cancelled())
                workers_.dispose(std::exchange(found, nullptr));
            finishScan(found);
            if (found == nullptr)
                return;
            dropFromTree(walk->gone);
            if (state().tree == found)
                scanAgain(foldersAt(*found, walk->partlyGone));
        });
}

void ScanSession::pollScan() {
    if (scanStats_ == nullptr)
        return;
    update([this](SessionState &state) {
        state.scanFiles = scanStats_->files();
        state.scanBytes = scanStats_->bytes();
        state.scanUnreadable = scanStats_->unreadable();
        state.scanCurrentPath = scanStats_->current();
        state.scanElapsed = elapsed();
    });
}

double ScanSession::elapsed() const {
    if (!scanStart_)
        return 0;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - *scanStart_).count();
}

// A superseded scan also ends here when its walk returns, and so ends the newer scan's progress early. The
// newer scan's tree still arrives.
void ScanSession::finishScan(const std::shared_ptr<FSNode> &found) {
    progressTimer_.stop();
    SessionState &ended = unannounced();
    if (found != nullptr) {
        if (scanStats_ != nullptr) {
            ended.scanFiles = scanStats_->files();
            ended.scanUnreadable = scanStats_->unreadable();
        }
        ended.scanBytes = found->size;
        ended.lastScanDate = now();
    }
    ended.scanElapsed = elapsed();
    ended.isScanning = false;
    ended.scanCurrentPath.clear();
    scanStats_ = nullptr;
    if (found != nullptr)
        setTree(found);
    emit changed();
    volumes_.refreshVolumes();
}

/// Announces another tree, and frees the earlier one in the background, because freeing so many nodes would
/// block the window.
void ScanSession::setTree(std::shared_ptr<FSNode> tree) {
    if (tree == state().tree)
        return;
    waiting_.clear(); // they belong to the earlier tree
    dropping_ = {};
    std::shared_ptr<FSNode> earlier = std::exchange(unannounced().tree, std::move(tree));
    emit treeChanged();
    if (earlier != nullptr)
        workers_.dispose(std::move(earlier));
}

void ScanSession::drop(const GonePaths &gone) {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->gone.add(gone);
    dropFromTree(gone);
}

void ScanSession::dropFromTree(const GonePaths &gone) {
    if (state().tree == nullptr)
        return;
    if (!isDropping_)
        dropping_ = {};
    dropping_.add(gone);
    waiting_ = goneNodes(*state().tree, dropping_);
    if (waiting_.empty())
        return;
    emit nodesAboutToBeDetached(waiting_);
    if (!std::exchange(isDropping_, true))
        detachSlice();
}

/// Drops removed nodes for a short time, then lets the event loop run, because one large folder may have
/// many.
void ScanSession::detachSlice() {
    const auto end = std::chrono::steady_clock::now() + sliceOfDetaching;
    while (!waiting_.empty()) {
        if (std::chrono::steady_clock::now() > end) {
            QTimer::singleShot(0, this, &ScanSession::detachSlice);
            return;
        }
        FSNode *node = waiting_.back();
        waiting_.pop_back();
        detach(*node);
    }
    isDropping_ = false;
    workers_.dispose(std::exchange(detached_, {}));
    emit dropped();
}

/// Detaches a node and subtracts its size and files from all its ancestors. Logical sizes and numbers of
/// folders stay unchanged.
void ScanSession::detach(FSNode &node) {
    FSNode *parent = node.parent();
    emit nodeAboutToBeDetached(&node);
    detached_.push_back(parent->release(node));
    for (FSNode *folder = parent; folder != nullptr; folder = folder->parent()) {
        folder->size -= node.size;
        folder->fileCount -= node.fileCount;
    }
    emit nodeDetached(&node);
}

void ScanSession::measureAgain(const GonePaths &partlyGone) {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->partlyGone.add(partlyGone);
    if (state().tree != nullptr)
        scanAgain(foldersAt(*state().tree, partlyGone));
}

void ScanSession::readPlacesAgain(const GonePaths &replaced) {
    if (state().tree == nullptr)
        return;
    const FileURL root(state().tree->path());
    std::vector<FileURL> folders;
    for (const FileURL &place : replaced.outermost()) {
        const FileURL parent = place.parent();
        folders.push_back(parent == root ? place : parent);
    }
    measureAgain(GonePaths(std::move(folders)));
    std::vector<FSNode *> files;
    for (const std::unique_ptr<FSNode> &child : state().tree->children())
        if (!child->isDirectory && !child->isAggregate && replaced.contains(FileURL(child->path())))
            files.push_back(child.get());
    scanAgain(files);
}

void ScanSession::scanAgain(const std::vector<FSNode *> &nodes) {
    if (nodes.empty())
        return;
    Rescan rescan{state().tree, {}};
    for (const FSNode *node : nodes)
        rescan.places.emplace_back(node->path(), nullptr);
    const auto stats = std::make_shared<ScanStats>();
    rescans_.push_back(stats);
    workers_.run(
        this,
        [rescan = std::move(rescan), rootPath = state().tree->path(), stats]() mutable {
            for (auto &[path, found] : rescan.places)
                found = scannedAgain(path.path(), rootPath, *stats);
            return std::move(rescan);
        },
        [this, stats](Rescan done) {
            std::erase(rescans_, stats);
            replace(std::move(done));
        });
}

void ScanSession::replace(Rescan rescan) {
    if (state().tree == nullptr || rescan.tree.lock() != state().tree)
        return;
    if (isDropping_) { // of the nodes that wait, some may be in these folders
        QTimer::singleShot(sliceOfDetaching, this,
                           [this, rescan = std::move(rescan)]() mutable { replace(std::move(rescan)); });
        return;
    }
    std::vector<FileURL> gone;
    for (const auto &[path, found] : rescan.places) {
        // Looked for by their path, because a node may have left the tree since.
        const bool isRoot = path.path() == state().tree->path();
        for (FSNode *node :
             isRoot ? std::vector{state().tree.get()} : goneNodes(*state().tree, GonePaths({path}))) {
            if (found != nullptr && found->isDirectory == node->isDirectory)
                replaceContents(*node, *found);
            else
                gone.push_back(path);
        }
    }
    if (!gone.empty())
        drop(GonePaths(std::move(gone)));
    workers_.dispose(std::move(rescan.places));
}

void ScanSession::replaceContents(FSNode &folder, FSNode &found) {
    std::vector<FSNode *> children;
    for (const std::unique_ptr<FSNode> &child : folder.children())
        children.push_back(child.get());
    emit nodesAboutToBeDetached(children);
    emit contentsAboutToBeReplaced(&folder);
    folder.swapContents(found);
    for (FSNode *above = folder.parent(); above != nullptr; above = above->parent()) {
        above->size += folder.size - found.size;
        above->logicalSize += folder.logicalSize - found.logicalSize;
        above->fileCount += folder.fileCount - found.fileCount;
        above->dirCount += folder.dirCount - found.dirCount;
    }
    emit contentsReplaced(&folder);
}

} // namespace brimvale
