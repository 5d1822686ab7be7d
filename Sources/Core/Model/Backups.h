#pragma once

#include "Base/StopFlag.h"
#include "Core/Backup/PendingDeletion.h"
#include "Core/Model/Part.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class Removals;
class Workers;
struct ArchiveProgress;
struct ArchiveResult;

struct BackupState {
    bool isArchiving = false;
    double archiveProgress = 0; ///< 0 to 1, by bytes
    std::optional<std::string> archiveStatus = {};
    /// The item being backed up, and how many bytes of how many are copied; empty when idle.
    std::string archiveDetail = {};
    std::optional<std::string> archiveError = {};
    std::optional<FileURL> lastArchiveDestination = {};
    FileURL backupRoot; ///< the folder for backups
    std::optional<PendingDeletion> pendingDeletion = {};
};

/// Makes backups, which the user reviews before the originals are removed.
class Backups : public Part<BackupState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Backups(Workers &workers, Removals &removals);
    /// Cancels a running backup.
    ~Backups() override;

    /// Sets the folder for backups.
    void chooseBackupRoot(FileURL folder);

    /// Copies entries into a backup folder in `destination` and verifies the copies. Where all are good, the
    /// backup is published for review and the originals stay until that is confirmed; else the first reason
    /// is published as an error. While the application `quitFirst` (bundle identifier) runs, the originals
    /// are not removed later. Does nothing while another backup is made.
    void archiveThenReview(const std::string &label, const FileURL &destination,
                           const std::vector<CleanupEntry> &entries, RemovalMode mode,
                           const std::optional<std::string> &quitFirst = std::nullopt);
    /// Gives the backup under way up; the originals stay.
    void cancelArchive();
    /// Removes the originals of the reviewed backup except those that have changed since, or, while another
    /// removal is under way, once that has ended.
    void confirmPendingDeletion();
    /// Keeps both the originals of the reviewed backup and the backup.
    void cancelPendingDeletion();

private:
    void showProgress(const ArchiveProgress &progress, const std::vector<FileURL> &sources,
                      std::int64_t total);
    void finishArchive(const ArchiveResult &result, const PendingDeletion &pending);
    void removeConfirmed();

    Workers &workers_;
    Removals &removals_;
    std::optional<PendingDeletion> confirmed_; ///< waits for another removal to end
    StopFlag archiveCancelled_;
};

} // namespace brimvale
