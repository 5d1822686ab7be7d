#pragma once

#include "Base/Published.h"
#include "Base/StopFlag.h"
#include "Catalogs/StorageCategory.h"
#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Backup/PendingDeletion.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalResult.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/VolumeInfo.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brimvale {

struct ArchiveResult;

/// What a removal that is under way is doing.
enum class RemovalActivity {
    none,
    removing,
    stopping,       ///< it was told to, and ends before its next entry
    asAdministrator ///< waits for a password or for the command, and cannot be stopped
};

/// The one observable object of the application: every page reads its published fields and calls its
/// operations. Lives on the main thread; work runs in the background and its results come back here.
class CorvelModel : public QObject {
    Q_OBJECT

public:
    /// `actions` carries out removals and outlives the model.
    explicit CorvelModel(QObject *parent = nullptr, RemovalActions &actions = RemovalActions::platform());
    /// Cancels what runs and waits for it, also for an administrator's command.
    ~CorvelModel() override;

signals:
    void volumesChanged();
    void snapshotsChanged();
    void hasFullDiskAccessChanged();
    void scanRootPathChanged();
    void treeChanged();
    void isScanningChanged();
    void scanFiguresChanged(); ///< any of the figures of the running or finished scan
    void appsChanged();
    void cleanupChanged();
    void categoriesChanged();
    void lastResultChanged();
    void totalFreedThisSessionChanged();
    void removalChanged(); ///< what the removal under way does, and how far it is
    void archiveChanged();
    void isDeletingSnapshotChanged();

    /// These are going to be removed from `tree`, one after the other: time to let go of all at once.
    void nodesAboutToBeDetached(const std::vector<FSNode *> &nodes);
    /// Around the removal of one node from `tree`. Before, it is still in its place; afterwards it stands
    /// alone and the figures of the folders that it was in are as they are to be. Only those who listen may
    /// still have it; it must be let go of before the second announcement is over.
    void nodeAboutToBeDetached(FSNode *node);
    void nodeDetached(FSNode *node);

public:
    template<class T, void (CorvelModel::*changed)()>
    using Field = Published<CorvelModel, T, changed>;

    Field<std::vector<VolumeInfo>, &CorvelModel::volumesChanged> volumes{this};
    Field<std::vector<LocalSnapshot>, &CorvelModel::snapshotsChanged> snapshots{this};
    Field<bool, &CorvelModel::hasFullDiskAccessChanged> hasFullDiskAccess{this};
    Field<bool, &CorvelModel::isDeletingSnapshotChanged> isDeletingSnapshot{this};

    Field<std::string, &CorvelModel::scanRootPathChanged> scanRootPath;
    /// The last finished scan, sorted; null before the first and while one runs. A page must let go of it
    /// when the change is announced.
    Field<std::shared_ptr<FSNode>, &CorvelModel::treeChanged> tree{this};
    Field<bool, &CorvelModel::isScanningChanged> isScanning{this};
    Field<std::int64_t, &CorvelModel::scanFiguresChanged> scanFiles{this};
    Field<std::int64_t, &CorvelModel::scanFiguresChanged> scanBytes{this};      ///< allocated
    Field<std::string, &CorvelModel::scanFiguresChanged> scanCurrentPath{this}; ///< empty when idle
    Field<std::int64_t, &CorvelModel::scanFiguresChanged> scanUnreadable{this};
    Field<double, &CorvelModel::scanFiguresChanged> scanElapsed{this}; ///< seconds
    Field<std::optional<Date>, &CorvelModel::scanFiguresChanged> lastScanDate{this};

    Field<std::vector<AppRow>, &CorvelModel::appsChanged> apps{this};
    Field<bool, &CorvelModel::appsChanged> isLoadingApps{this};
    Field<double, &CorvelModel::appsChanged> appProgress{this}; ///< 0 to 1
    Field<bool, &CorvelModel::appsChanged> includeSystemApps{this};

    Field<std::vector<CleanupTarget>, &CorvelModel::cleanupChanged> cleanupTargets;
    Field<bool, &CorvelModel::cleanupChanged> isMeasuringCleanup{this};
    Field<double, &CorvelModel::cleanupChanged> cleanupProgress{this}; ///< 0 to 1

    Field<std::vector<MeasuredCategory>, &CorvelModel::categoriesChanged> categories;
    Field<bool, &CorvelModel::categoriesChanged> isMeasuringCategories{this};
    Field<double, &CorvelModel::categoriesChanged> categoryProgress{this}; ///< 0 to 1
    Field<std::optional<Date>, &CorvelModel::categoriesChanged> lastCategoryScan{this};

    Field<RemovalActivity, &CorvelModel::removalChanged> removalActivity{this};
    Field<std::int64_t, &CorvelModel::removalChanged> removedEntries{this}; ///< by the removal under way

    /// The outcome of the most recent removal of any kind. Every one is announced, also one that went like
    /// the one before.
    Field<std::optional<RemovalResult>, &CorvelModel::lastResultChanged> lastResult{this};
    /// Bytes freed by every removal since launch.
    Field<std::int64_t, &CorvelModel::totalFreedThisSessionChanged> totalFreedThisSession{this};

    Field<bool, &CorvelModel::archiveChanged> isArchiving{this};
    Field<double, &CorvelModel::archiveChanged> archiveProgress{this}; ///< 0 to 1, by bytes
    Field<std::optional<std::string>, &CorvelModel::archiveChanged> archiveStatus{this};
    /// The item that a backup is at, and how many bytes of how many are copied; empty when idle.
    Field<std::string, &CorvelModel::archiveChanged> archiveDetail{this};
    Field<std::optional<std::string>, &CorvelModel::archiveChanged> archiveError{this};
    Field<std::optional<FileURL>, &CorvelModel::archiveChanged> lastArchiveDestination{this};
    Field<FileURL, &CorvelModel::archiveChanged> backupRoot;
    Field<std::optional<PendingDeletion>, &CorvelModel::archiveChanged> pendingDeletion{this};

    /// The root file system's volume, else the first, else nothing.
    [[nodiscard]] std::optional<VolumeInfo> rootVolume() const;

    /// Sets the folder that the next scan measures (absolute); a running scan goes on.
    void chooseScanRoot(std::string path);

    /// Scans `path` if given, else the current scan root. A running scan is cancelled and superseded.
    void startScan(std::optional<std::string> path = std::nullopt);

    /// The running scan's progress, null when idle. A page stops the scan by cancelling it.
    [[nodiscard]] const std::shared_ptr<ScanStats> &scanStats() const { return scanStats_; }

    /// Ends the scan session, with the tree that it found or, after a cancellation, with none.
    void finishScan(const std::shared_ptr<FSNode> &found);

    /// Whether a removal is under way. Until it has ended, a further one is not begun.
    [[nodiscard]] bool isRemoving() const { return *removalActivity != RemovalActivity::none; }

    /// Removes nodes of `tree`. Aggregates are left alone, and what lies in a node that is removed goes with
    /// it. The result is published; then the nodes that are gone leave the tree.
    void removeNodes(const std::vector<FSNode *> &nodes, RemovalMode mode);

    /// Removes for good, as the administrator, what a removal has put into `needsAdmin`. The result is
    /// published; then what is gone leaves `apps` and `cleanupTargets`.
    void escalate(const std::vector<FileURL> &urls);

    /// Stops the removal under way before its next entry, where that is possible.
    void stopRemoval();

    /// Reads the volumes and the access probe again, and the snapshots in the background.
    void refreshVolumes();

    /// Deletes a local snapshot as the administrator and reads the list of them again. `done` is told whether
    /// it was deleted. Does nothing while another one is being deleted.
    void deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done);

    /// Measures every cleanup target; each is published as it is done. Does nothing while one runs.
    void measureCleanup();

    /// Removes entries of cleanup targets. What is gone leaves every target, and the leftovers of `apps`.
    void removeCleanupEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode);

    /// Measures every storage category; each is published as it is done, the rows of System Data last. Does
    /// nothing while one runs.
    void measureCategories();

    /// The category of that identifier; null where there is none. Valid until `categories` changes.
    [[nodiscard]] const MeasuredCategory *category(std::string_view id) const;
    /// Bytes of all categories but System Data.
    [[nodiscard]] std::int64_t categorisedBytes() const;
    /// Bytes of the rows of System Data.
    [[nodiscard]] std::int64_t systemDataAccounted() const;
    /// Makes System Data what the used space of the root volume leaves after all other categories.
    void resolveRemainder();

    /// Removes rows of storage categories. What is gone leaves its category, and System Data follows.
    void removeCategoryEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode);

    /// Whether `loadApps` lists the applications of the system too. They are listed afresh: at once, or when
    /// the analysis under way is done.
    void setIncludeSystemApps(bool include);

    /// Lists the installed applications, then analyses them; each one's figures are published as they are
    /// ready. Does nothing while it runs.
    void loadApps();

    /// Removes an application's leftovers and, if asked, the application itself.
    void uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers, bool includeBundle,
                   RemovalMode mode);

    /// Sets the folder that backups go to.
    void chooseBackupRoot(FileURL folder);

    /// Copies entries into a backup folder in `destination` and verifies the copies. Where all are good, the
    /// backup is published for review and the originals stay until that is confirmed; else the first reason
    /// is published as an error. Does nothing while another backup is made.
    void archiveThenReview(const std::string &label, const FileURL &destination,
                           const std::vector<CleanupEntry> &entries, RemovalMode mode);
    /// Gives the backup under way up; the originals stay.
    void cancelArchive();
    /// Removes the originals of the reviewed backup.
    void confirmPendingDeletion();
    /// Keeps the originals of the reviewed backup, and the backup.
    void cancelPendingDeletion();

private:
    /// Runs `work` on another thread and then, from the event loop, `use` with its result, which is handed
    /// over; not if the model has gone by then.
    template<class Work, class Use>
    void inBackground(Work work, Use use) {
        workers_.start([this, work = std::move(work), use = std::move(use)] {
            QMetaObject::invokeMethod(
                this, [use, result = work()]() mutable { use(std::move(result)); }, Qt::QueuedConnection);
        });
    }

    /// Has the event loop call `use`, from whatever thread; not if the model has gone by then. For work in
    /// the background that has something to tell before it ends.
    template<class Use>
    void publish(Use use) {
        QMetaObject::invokeMethod(this, std::move(use), Qt::QueuedConnection);
    }

    void pollScan();
    void withdrawTree();
    void freeInBackground(std::shared_ptr<FSNode> old);

    /// A removal under way.
    struct Removal {
        std::shared_ptr<RemovalProgress> progress = std::make_shared<RemovalProgress>();
        /// What it was begun for: kept while it lasts, though another scan may have replaced it in the model.
        std::shared_ptr<FSNode> tree;
        std::vector<FSNode *> nodes;                   ///< to be detached, once they are gone
        std::vector<std::unique_ptr<FSNode>> detached; ///< from the end of `nodes`
    };

    void beginRemoval(Removal removal, RemovalActivity activity, std::function<RemovalResult()> work,
                      std::function<void(const RemovalResult &)> finish);
    void beginRemoval(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                      std::function<void(const RemovalResult &)> finish);
    void detachRemoved();
    void detach(FSNode &node);
    void endRemoval();
    void forget(const RemovalResult &result);
    void show(MeasuredCategory measured);
    void removeConfirmed();
    void finishArchive(const ArchiveResult &result, const std::vector<CleanupEntry> &entries,
                       RemovalMode mode, bool isSameVolume);

    std::shared_ptr<ScanStats> scanStats_;
    std::vector<std::shared_ptr<ScanStats>> runningScans_; ///< superseded ones, too, until their walk ends
    QTimer progressTimer_;
    std::optional<std::chrono::steady_clock::time_point> scanStart_;
    RemovalActions &removalActions_;
    std::optional<Removal> removal_;
    QTimer removalTimer_;
    /// Removed while something is measured: what was measured before must not bring it back.
    std::unordered_set<FileURL> goneMeanwhile_;
    std::optional<PendingDeletion> confirmed_; ///< goes as soon as another removal has ended
    StopFlag isArchiveCancelled_;
    StopFlag isClosing_;  ///< set when the model is about to go, for the work in the background
    QThreadPool workers_; ///< last, so that its work ends before anything else does
};

} // namespace brimvale
