#include "Core/Model/Backups.h"

#include "Base/Text.h"
#include "Core/Backup/Archiver.h"
#include "Core/Backup/ReviewedRemoval.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Workers.h"
#include "Core/Storage/CleanupEntries.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

std::string countedItems(std::size_t count) {
    return std::to_string(count) + " item" + (count == 1 ? "" : "s");
}

std::string nameOf(const FileURL &folder) {
    return displayText(folder.fileName());
}

double shareOf(std::int64_t bytes, std::int64_t total) {
    return std::min(static_cast<double>(bytes) / static_cast<double>(std::max<std::int64_t>(total, 1)), 1.0);
}

std::string detailOf(const ArchiveProgress &progress, const std::vector<FileURL> &sources,
                     std::int64_t total) {
    // The last steps are of no item.
    const bool isOfItem = progress.item < sources.size();
    return stepText(progress, isOfItem ? nameOf(sources[progress.item]) : "", total);
}

/// What the user reviews; without the entries and how they are removed.
PendingDeletion pendingOf(const ArchiveResult &result) {
    const bool isSameVolume =
        !result.items.empty() && Archiver::sameVolume(result.items.front().source, result.destination);
    return {.destination = result.destination,
            .items = result.items,
            .bytes = result.bytes,
            .readableExport = result.readableExport,
            .sameVolumeAsSource = isSameVolume,
            .remarks = result.remarks,
            .verified = result.verified};
}

/// The reason why nothing is removed after a failed backup.
std::string reasonOf(const ArchiveResult &result, bool isCancelled) {
    if (!result.failed.empty())
        return result.failed.front().second;
    return isCancelled ? "The backup was cancelled." : "The copy could not be verified.";
}

} // namespace

Backups::Backups(Workers &workers, Removals &removals)
    : Part({.backupRoot = Archiver::defaultDestination()}), workers_(workers), removals_(removals) {
    connect(&removals_, &Removals::ended, this, &Backups::removeConfirmed);
}

Backups::~Backups() {
    cancelArchive();
}

void Backups::chooseBackupRoot(FileURL folder) {
    update([&](BackupState &state) { state.backupRoot = std::move(folder); });
}

void Backups::archiveThenReview(const std::string &label, const FileURL &destination,
                                const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                const std::optional<std::string> &quitFirst) {
    if (state().isArchiving)
        return;
    std::vector<FileURL> sources;
    for (const CleanupEntry &entry : entries)
        sources.push_back(entry.url);
    const std::int64_t bytes = CleanupEntries::totalSize(entries);
    archiveCancelled_ = StopFlag();
    update([&](BackupState &state) {
        state.archiveError.reset();
        state.archiveProgress = 0;
        state.isArchiving = true;
        state.archiveStatus = "Copying " + countedItems(entries.size()) + "…";
    });

    struct Outcome {
        ArchiveResult result;
        PendingDeletion pending;
    };
    const auto onProgress = [this, context = QPointer<QObject>(this), sources,
                             bytes](const ArchiveProgress &progress) {
        onMainThread(context, [this, progress, sources, bytes] { showProgress(progress, sources, bytes); });
    };
    const ArchiveWatch watch{.cancelled = archiveCancelled_, .onProgress = onProgress};
    workers_.run(
        this,
        [sources, label, destination, watch, entries, mode, quitFirst] {
            ArchiveResult result = Archiver::archive(sources, label, destination, watch);
            PendingDeletion pending = pendingOf(result);
            pending.entries = entries;
            pending.mode = mode;
            pending.quitFirst = quitFirst;
            return Outcome{std::move(result), std::move(pending)};
        },
        [this](const Outcome &outcome) { finishArchive(outcome.result, outcome.pending); });
}

void Backups::showProgress(const ArchiveProgress &progress, const std::vector<FileURL> &sources,
                           std::int64_t total) {
    update([&](BackupState &state) {
        state.archiveProgress = shareOf(progress.bytes, total);
        state.archiveDetail = detailOf(progress, sources, total);
    });
}

void Backups::finishArchive(const ArchiveResult &result, const PendingDeletion &pending) {
    // The user may have cancelled when all was copied, and must not be asked to delete anything then.
    const bool isCancelled = result.isCancelled || archiveCancelled_.isSet();
    const bool isGood = !isCancelled && result.failed.empty() && !result.copied.empty();
    update([&](BackupState &state) {
        state.isArchiving = false;
        state.archiveStatus.reset();
        state.archiveDetail.clear();
        if (isGood) {
            state.lastArchiveDestination = result.destination;
            state.pendingDeletion = pending;
        } else {
            state.archiveError = "Nothing was deleted. " + reasonOf(result, isCancelled);
        }
    });
    if (isGood || isCancelled) // a user who cancelled needs no message
        return;
    RemovalResult failures{.isOfBackup = true};
    for (const auto &[url, reason] : result.failed)
        failures.failed.push_back({url, reason});
    removals_.publishResult(failures);
}

void Backups::cancelArchive() {
    archiveCancelled_.set();
}

void Backups::confirmPendingDeletion() {
    if (!state().pendingDeletion)
        return;
    confirmed_ = state().pendingDeletion;
    update([](BackupState &state) { state.pendingDeletion.reset(); });
    removeConfirmed();
}

void Backups::removeConfirmed() {
    if (!confirmed_ || removals_.isRemoving())
        return;
    const PendingDeletion pending = *std::exchange(confirmed_, std::nullopt);
    const auto show = [this](const std::string &status) {
        update([&](BackupState &state) { state.archiveStatus = status; });
    };
    std::vector<FileURL> originals;
    for (const CleanupEntry &entry : pending.entries)
        originals.push_back(entry.url);
    const auto remove = [pending, show, context = QPointer<QObject>(this)](RemovalProgress &progress,
                                                                           RemovalActions &actions) {
        ReviewedRemoval removal = removeReviewed(pending, progress, actions);
        onMainThread(context, [show, status = statusOf(removal, pending)] { show(status); });
        return std::move(removal.result);
    };
    removals_.removeCategoryEntries(originals, remove);
}

void Backups::cancelPendingDeletion() {
    if (!state().pendingDeletion)
        return;
    update([](BackupState &state) {
        state.archiveStatus =
            "Backup kept at " + nameOf(state.pendingDeletion->destination) + ". Nothing was deleted.";
        state.pendingDeletion.reset();
    });
}

} // namespace brimvale
