#include "Base/Text.h"
#include "Core/Backup/Archiver.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"

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
    if (progress.phase == ArchiveProgress::Phase::finishing)
        return "Writing the manifest";
    const std::string name = nameOf(sources[progress.item]);
    if (progress.phase == ArchiveProgress::Phase::comparing)
        return "Comparing “" + name + "” with its original";
    return "“" + name + "”, " + Fmt::byteFormatter(progress.bytes) + " of " + Fmt::byteFormatter(total);
}

} // namespace

void CorvelModel::chooseBackupRoot(FileURL folder) {
    backupRoot.set(std::move(folder));
}

void CorvelModel::archiveThenReview(const std::string &label, const FileURL &destination,
                                    const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    if (*isArchiving)
        return;
    std::vector<FileURL> sources;
    for (const CleanupEntry &entry : entries)
        sources.push_back(entry.url);
    const std::int64_t bytes = CleanupEntries::totalSize(entries);
    isArchiveCancelled_ = StopFlag();
    archiveError.set(std::nullopt);
    archiveProgress.set(0);
    isArchiving.set(true);
    archiveStatus.set("Copying " + countedItems(entries.size()) + "…");

    struct Outcome {
        ArchiveResult result;
        bool isSameVolume;
    };
    const ArchiveWatch watch{.cancelled = isArchiveCancelled_,
                             .onProgress = [this, sources, bytes](const ArchiveProgress &progress) {
                                 publish([this, share = shareOf(progress.bytes, bytes),
                                          detail = detailOf(progress, sources, bytes)] {
                                     archiveProgress.set(share);
                                     archiveDetail.set(detail);
                                 });
                             }};
    inBackground(
        [sources, label, destination, watch] {
            ArchiveResult result = Archiver::archive(sources, label, destination, watch);
            const bool isSameVolume = !result.items.empty() &&
                                      Archiver::sameVolume(result.items.front().source, result.destination);
            return Outcome{std::move(result), isSameVolume};
        },
        [this, entries, mode](const Outcome &outcome) {
            finishArchive(outcome.result, entries, mode, outcome.isSameVolume);
        });
}

void CorvelModel::finishArchive(const ArchiveResult &result, const std::vector<CleanupEntry> &entries,
                                RemovalMode mode, bool isSameVolume) {
    isArchiving.set(false);
    archiveStatus.set(std::nullopt);
    archiveDetail.set("");
    // The user may have cancelled when all was copied, and must not be asked to delete anything then.
    const bool isCancelled = result.isCancelled || isArchiveCancelled_.isSet();
    if (!isCancelled && result.failed.empty() && !result.copied.empty()) {
        lastArchiveDestination.set(result.destination);
        pendingDeletion.set(PendingDeletion{.destination = result.destination,
                                            .items = result.items,
                                            .entries = entries,
                                            .bytes = result.bytes,
                                            .mode = mode,
                                            .readableExport = result.readableExport,
                                            .sameVolumeAsSource = isSameVolume,
                                            .differing = result.differing});
        return;
    }
    const std::string unnamed = isCancelled ? "The backup was cancelled." : "The copy could not be verified.";
    archiveError.set("Nothing was deleted. " +
                     (result.failed.empty() ? unnamed : result.failed.front().second));
    if (isCancelled)
        return; // the user knows
    RemovalResult failures;
    for (const auto &[url, reason] : result.failed)
        failures.failed.push_back({url, reason});
    lastResult.update([&](std::optional<RemovalResult> &last) { last = failures; });
}

void CorvelModel::cancelArchive() {
    isArchiveCancelled_.set();
}

void CorvelModel::confirmPendingDeletion() {
    if (!*pendingDeletion)
        return;
    confirmed_ = **pendingDeletion;
    pendingDeletion.set(std::nullopt);
    removeConfirmed();
}

/// Removes the originals that the user has confirmed; while another removal is under way, once that has
/// ended.
void CorvelModel::removeConfirmed() {
    if (!confirmed_ || isRemoving())
        return;
    const PendingDeletion pending = *std::exchange(confirmed_, std::nullopt);
    removeCategoryEntries(pending.entries, pending.mode);
    archiveStatus.set("Backed up to " + nameOf(pending.destination) + ", then removed the originals.");
}

void CorvelModel::cancelPendingDeletion() {
    if (!*pendingDeletion)
        return;
    const std::string name = nameOf((*pendingDeletion)->destination);
    pendingDeletion.set(std::nullopt);
    archiveStatus.set("Backup kept at " + name + ". Nothing was deleted.");
}

} // namespace brimvale
