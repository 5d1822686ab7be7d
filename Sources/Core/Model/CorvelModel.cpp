#include "Core/Model/CorvelModel.h"

#include "Core/Backup/Archiver.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/Permissions.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/StorageFigures.h"
#include "Platform/Host.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds progressInterval{200};
constexpr int leastWorkers = 6;
/// A Mac gives half a megabyte, too little for its parser of property lists on the worst that we let it have.
constexpr unsigned stackSize = 8 * 1024 * 1024;
/// For volumes that did not answer at once: they are on a network, or behind another program.
constexpr std::chrono::seconds patienceForDistantVolumes{2};

} // namespace

CorvelModel::CorvelModel(QObject *parent, RemovalActions &actions)
    : QObject(parent), scanRootPath(this, homeFolder().path()),
      cleanupTargets(this, CleanupCatalog::definitions()),
      categories(this, StorageFigures::unmeasured(StorageCategories::all())),
      backupRoot(this, Archiver::defaultDestination()), removalActions_(actions) {
    connect(&progressTimer_, &QTimer::timeout, this, &CorvelModel::pollScan);
    connect(&removalTimer_, &QTimer::timeout, this,
            [this] { removedEntries.set(removal_->progress->entriesRemoved); });
    // Most of them wait, for the disk or for a password.
    workers_.setMaxThreadCount(std::max(workers_.maxThreadCount(), leastWorkers));
    workers_.setStackSize(stackSize);
    refreshVolumes();
}

CorvelModel::~CorvelModel() {
    for (const std::shared_ptr<ScanStats> &scan : runningScans_)
        scan->cancel();
    if (removal_)
        removal_->progress->cancelled.set();
    cancelArchive();
    isClosing_.set();
    workers_.waitForDone();
}

std::optional<VolumeInfo> CorvelModel::rootVolume() const {
    return VolumeInfo::root(*volumes);
}

void CorvelModel::chooseScanRoot(std::string path) {
    scanRootPath.set(std::move(path));
}

void CorvelModel::startScan(std::optional<std::string> path) {
    if (*isScanning) {
        if (scanStats_ != nullptr)
            scanStats_->cancel();
        finishScan(nullptr);
    }
    if (path)
        scanRootPath.set(*std::move(path));
    scanStats_ = std::make_shared<ScanStats>();
    runningScans_.push_back(scanStats_);
    isScanning.set(true);
    scanFiles.set(0);
    scanBytes.set(0);
    scanUnreadable.set(0);
    scanElapsed.set(0);
    scanCurrentPath.set(*scanRootPath);
    withdrawTree();
    scanStart_ = std::chrono::steady_clock::now();
    progressTimer_.start(progressInterval);

    inBackground(
        [root = *scanRootPath, stats = scanStats_] {
            std::shared_ptr<FSNode> found = DiskScanner::scan(root, ScanOptions::standard(), *stats);
            found->sortRecursively();
            return found;
        },
        [this, stats = scanStats_](std::shared_ptr<FSNode> found) {
            std::erase(runningScans_, stats);
            // Asked here, since a scan may be cancelled while its result waits for the event loop.
            if (stats->cancelled())
                freeInBackground(std::exchange(found, nullptr));
            finishScan(found);
        });
}

void CorvelModel::pollScan() {
    if (scanStats_ == nullptr)
        return;
    scanFiles.set(scanStats_->files());
    scanBytes.set(scanStats_->bytes());
    scanUnreadable.set(scanStats_->unreadable());
    scanCurrentPath.set(scanStats_->current());
    if (scanStart_)
        scanElapsed.set(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - *scanStart_).count());
}

// A superseded scan ends here too when its walk returns, and so ends the newer scan's progress early; the
// newer scan's tree still comes.
void CorvelModel::finishScan(const std::shared_ptr<FSNode> &found) {
    progressTimer_.stop();
    if (found != nullptr) {
        withdrawTree();
        tree.set(found);
        if (scanStats_ != nullptr) {
            scanFiles.set(scanStats_->files());
            scanUnreadable.set(scanStats_->unreadable());
        }
        scanBytes.set(found->size);
        lastScanDate.set(now());
    }
    if (scanStart_)
        scanElapsed.set(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - *scanStart_).count());
    isScanning.set(false);
    scanStats_ = nullptr;
    scanCurrentPath.set("");
    refreshVolumes();
}

void CorvelModel::withdrawTree() {
    std::shared_ptr<FSNode> old = *tree;
    tree.set(nullptr);
    freeInBackground(std::move(old));
}

/// A tree has so many nodes that the window would stand still meanwhile.
void CorvelModel::freeInBackground(std::shared_ptr<FSNode> old) {
    if (old != nullptr)
        workers_.start([old = std::move(old)]() mutable { old.reset(); });
}

void CorvelModel::refreshVolumes() {
    volumes.set(VolumeInfo::current());
    hasFullDiskAccess.set(Permissions::hasFullDiskAccess());
    struct Found {
        std::vector<VolumeInfo> volumes;
        std::vector<LocalSnapshot> snapshots;
    };
    inBackground(
        [] {
            return Found{VolumeInfo::current(patienceForDistantVolumes), LocalSnapshot::list("/")};
        },
        [this](Found found) {
            volumes.set(std::move(found.volumes));
            snapshots.set(std::move(found.snapshots));
        });
}

void CorvelModel::deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done) {
    if (*isDeletingSnapshot)
        return;
    isDeletingSnapshot.set(true);
    inBackground(
        [name = snapshot.name, &actions = removalActions_] {
            return Remover::deleteSnapshot(name, FileURL("/"), actions);
        },
        [this, done](bool isDeleted) {
            isDeletingSnapshot.set(false);
            refreshVolumes();
            if (*isMeasuringCategories || *lastCategoryScan)
                resolveRemainder();
            done(isDeleted);
        });
}

} // namespace brimvale
