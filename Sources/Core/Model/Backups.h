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
    /// The item that a backup is at, and how many bytes of how many are copied; empty when idle.
    std::string archiveDetail = {};
    std::optional<std::string> archiveError = {};
    std::optional<FileURL> lastArchiveDestination = {};
    FileURL backupRoot; ///< the folder that backups go to
    std::optional<PendingDeletion> pendingDeletion = {};
};

/// Backups that are reviewed before their originals are removed.
class Backups : public Part<BackupState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Backups(Workers &workers, Removals &removals);
    /// Gives a backup under way up.
    ~Backups() override;

    /// Sets the folder that backups go to.
    void chooseBackupRoot(FileURL folder);

    /// Copies entries into a backup folder in `destination` and verifies the copies. Where all are good, the
    /// backup is published for review and the originals stay until that is confirmed; else the first reason
    /// is published as an error. Does nothing while another backup is made.
    void archiveThenReview(const std::string &label, const FileURL &destination,
                           const std::vector<CleanupEntry> &entries, RemovalMode mode);
    /// Gives the backup under way up; the originals stay.
    void cancelArchive();
    /// Removes the originals of the reviewed backup, or, while another removal is under way, once that has
    /// ended.
    void confirmPendingDeletion();
    /// Keeps the originals of the reviewed backup, and the backup.
    void cancelPendingDeletion();

private:
    void showProgress(const ArchiveProgress &progress, const std::vector<FileURL> &sources,
                      std::int64_t total);
    void finishArchive(const ArchiveResult &result, const std::vector<CleanupEntry> &entries,
                       RemovalMode mode, bool isSameVolume);
    void removeConfirmed();

    Workers &workers_;
    Removals &removals_;
    std::optional<PendingDeletion> confirmed_; ///< goes as soon as another removal has ended
    StopFlag archiveCancelled_;
};

} // namespace brimvale
