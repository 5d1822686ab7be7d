#include "Core/Model/ScanSession.h"

#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanStats.h"
#include "Platform/Host.h"

#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds scanInterval{200};

} // namespace

ScanSession::ScanSession(Workers &workers, Volumes &volumes)
    : ScanSession(workers, volumes, DiskScanner::scan) {}

ScanSession::ScanSession(Workers &workers, Volumes &volumes, Scan scan)
    : Part({.scanRootPath = homeFolder().path()}), workers_(workers), volumes_(volumes),
      scan_(std::move(scan)) {
    connect(&progressTimer_, &QTimer::timeout, this, &ScanSession::pollScan);
}

ScanSession::~ScanSession() {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->stats->cancel();
    if (rescan_ != nullptr)
        rescan_->stats->cancel();
}

/// The options of a scan that begins at `moment`, in seconds since 1970, or that adds to one that did.
ScanOptions ScanSession::optionsAt(std::uint32_t moment) {
    ScanOptions options = ScanOptions::standard();
    options.moment = Date(std::chrono::seconds(moment));
    return options;
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
    begun.ageMoment = FSNode::secondsOf(now());
    begun.scanCurrentPath = begun.scanRootPath;
    scanStats_ = latestStats_ = std::make_shared<ScanStats>();
    growth_.begin(begun.scanRootPath, begun.tree);
    setTree(nullptr);
    emit changed();
    emit grown();
    scanStart_ = std::chrono::steady_clock::now();
    progressTimer_.start(scanInterval);

    const auto walk = std::make_shared<Walk>(Walk{.stats = scanStats_});
    walks_.push_back(walk);
    threads_.run(
        this,
        [scan = scan_, root = state().scanRootPath, moment = begun.ageMoment,
         stats = scanStats_](WalkPool &pool) {
            std::shared_ptr<FSNode> found = scan(root, optionsAt(moment), *stats, pool);
            found->sortRecursively();
            return found;
        },
        [this, walk](std::shared_ptr<FSNode> found) { takeResult(walk, std::move(found)); });
}

void ScanSession::showImported(std::shared_ptr<FSNode> tree, ImportedFrom from) {
    if (scanStats_ != nullptr) {
        scanStats_->cancel();
        endStopped();
    }
    latestStats_ = nullptr;
    SessionState &shown = unannounced();
    shown.scanFiles = tree->fileCount;
    shown.scanBytes = tree->size;
    shown.scanUnreadable = from.origin.unreadable;
    shown.scanElapsed = 0;
    shown.ageMoment = FSNode::secondsOf(from.origin.date.value_or(now()));
    latestStats_ = nullptr; // a list does not say what could not be read
    shown.importedFrom = std::move(from);
    setTree(std::move(tree));
    emit changed();
}

void ScanSession::takeResult(const std::shared_ptr<Walk> &walk, std::shared_ptr<FSNode> found) {
    std::erase(walks_, walk);
    // Checked here, because a scan may be cancelled while its result waits for the event loop.
    if (walk->stats->cancelled())
        workers_.dispose(std::exchange(found, nullptr));
    if (walk->hasStopped)
        return;
    if (found != nullptr)
        latestStats_ = walk->stats;
    finishScan(found);
    if (found == nullptr)
        return;
    walk->partlyGone.add(dropFromTree(walk->gone));
    scanAgain(walk->partlyGone);
}

/// Ends the session of a cancelled scan, whether its threads have ended or still wait in the system.
void ScanSession::endStopped() {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->hasStopped = walk->hasStopped || walk->stats == scanStats_;
    finishScan(nullptr);
}

void ScanSession::pollScan() {
    if (scanStats_ == nullptr)
        return;
    if (scanStats_->cancelled())
        return endStopped();
    update([this](SessionState &state) {
        state.scanFiles = scanStats_->files();
        state.scanBytes = scanStats_->bytes();
        state.scanUnreadable = scanStats_->unreadable();
        state.scanCurrentPath = scanStats_->current();
        state.scanElapsed = elapsed();
    });
    growth_.take(*scanStats_);
    emit grown();
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
        if (ended.ageMoment == 0)
            ended.ageMoment = FSNode::secondsOf(now());
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
    endGrowth(found != nullptr);
    scanStats_ = nullptr;
    if (found != nullptr)
        setTree(found);
    emit changed();
    emit grown();
    volumes_.refreshVolumes();
}

/// The tree takes the place of the growing picture. Without one, that stays as it is.
void ScanSession::endGrowth(bool hasTree) {
    if (hasTree)
        return growth_.clear();
    if (scanStats_ != nullptr)
        growth_.take(*scanStats_);
    growth_.stop();
}

std::vector<UnreadableItem> ScanSession::unreadableItems() const {
    return latestStats_ == nullptr ? std::vector<UnreadableItem>() : latestStats_->unreadableItems().listed();
}

/// Whether there is a tree, and not one of another place or time.
bool ScanSession::showsThisDisk() const {
    return state().tree != nullptr && !state().tree->isImported();
}

/// Announces another tree, and frees the earlier one in the background, because freeing so many nodes would
/// block the window.
void ScanSession::setTree(std::shared_ptr<FSNode> tree) {
    if (tree == state().tree)
        return;
    waiting_.clear(); // they belong to the earlier tree
    unannounced().rescannedPath.clear();
    dropping_ = toScanAgain_ = {};
    std::shared_ptr<FSNode> earlier = std::exchange(unannounced().tree, std::move(tree));
    if (!state().tree || !state().tree->isImported())
        unannounced().importedFrom.reset();
    emit treeChanged();
    if (earlier != nullptr)
        workers_.dispose(std::move(earlier));
}

void ScanSession::drop(const GonePaths &gone) {
    for (const std::shared_ptr<Walk> &walk : walks_)
        walk->gone.add(gone);
    if (rescan_ != nullptr)
        rescan_->gone.add(gone);
    scanAgain(dropFromTree(gone));
}

/// Returns the folders that must be scanned again, because the removed items had no nodes.
GonePaths ScanSession::dropFromTree(const GonePaths &gone) {
    if (!showsThisDisk())
        return {};
    GonePaths folders(foldersMissing(*state().tree, gone));
    dropNodes(gone);
    return folders;
}

void ScanSession::dropNodes(const GonePaths &gone) {
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
    emit changed();
    emit dropped();
}

/// Detaches a node and subtracts it from all its ancestors. Their logical sizes and numbers of folders stay
/// as the scan found them; what is left of these is counted beside.
void ScanSession::detach(FSNode &node) {
    FSNode *parent = node.parent();
    emit nodeAboutToBeDetached(&node);
    node.subtractFromAncestors();
    if (parent->isAggregate)
        parent->subtractSmallFile(fileTypeOf(node.name), ageOf(node.modified, state().ageMoment), node.size);
    countFiles(-node.fileCount);
    forgetUnreadable(node);
    detached_.push_back(parent->release(node));
    emit nodeDetached(&node);
}

/// What could not be read in a node is of no interest when that leaves the tree.
void ScanSession::forgetUnreadable(const FSNode &node) {
    if (!node.isAtLeast() || latestStats_ == nullptr)
        return;
    latestStats_->unreadableItems().dropWithin(node.path());
    unmarkReadable(node.parent());
}

/// Takes the mark from a folder and its ancestors where everything inside could be read.
void ScanSession::unmarkReadable(FSNode *folder) {
    if (latestStats_ == nullptr)
        return;
    const UnreadableItems &items = latestStats_->unreadableItems();
    if (!state().isScanning)
        unannounced().scanUnreadable = items.count();
    for (; folder != nullptr; folder = folder->parent())
        if (folder->isAtLeast() && !items.reachInto(folder->path()))
            folder->unreadable = folder->holdsUnreadable = false;
}

/// Keeps the figures of the finished scan equal to those of its tree.
void ScanSession::countFiles(std::int64_t more) {
    if (state().isScanning)
        return;
    unannounced().scanFiles += more;
    unannounced().scanBytes = state().tree->size;
}

} // namespace brimvale
