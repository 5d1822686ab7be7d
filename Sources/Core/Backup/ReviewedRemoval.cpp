#include "Core/Backup/ReviewedRemoval.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Core/Removal/Remover.h"
#include "Platform/RunningApps.h"

#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

/// Why no original may be removed now, as a sentence.
std::optional<std::string> reasonToKeepAll(const PendingDeletion &pending, const StopFlag &cancelled) {
    if (pending.quitFirst && isApplicationRunning(*pending.quitFirst))
        return "Its app is running again. Quit it and make another backup.";
    if (pending.verified == nullptr)
        return "It can no longer be compared with the backup.";
    return changeOfBackup(*pending.verified, cancelled);
}

/// The same at the beginning, when the whole backup is read once.
std::optional<std::string> reasonToKeepAll(const PendingDeletion &pending, RemovalProgress &progress) {
    if (std::optional<std::string> reason = reasonToKeepAll(pending, progress.cancelled))
        return reason;
    progress.bytesToVerify = bytesOf(*pending.verified);
    return changeOfContents(*pending.verified, progress.cancelled, [&](std::size_t bytes) {
        progress.bytesVerified += static_cast<std::int64_t>(bytes);
    });
}

template<class T>
void append(std::vector<T> &all, std::vector<T> &&more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

void add(RemovalResult &all, RemovalResult &&one) {
    append(all.succeeded, std::move(one.succeeded));
    append(all.failed, std::move(one.failed));
    append(all.needsAdmin, std::move(one.needsAdmin));
    append(all.partlyRemoved, std::move(one.partlyRemoved));
    append(all.goneAnyway, std::move(one.goneAnyway));
    all.needsAppManagement = all.needsAppManagement || one.needsAppManagement;
    append(all.adminRemarks, std::move(one.adminRemarks));
    append(all.remarks, std::move(one.remarks));
    append(all.changed, std::move(one.changed));
    all.pins.merge(one.pins);
    for (auto bytes :
         {&RemovalResult::bytesFreed, &RemovalResult::bytesMovedToTrash, &RemovalResult::bytesDeleted})
        all.*bytes = checkedAdd(all.*bytes, one.*bytes);
}

} // namespace

ReviewedRemoval removeReviewed(const PendingDeletion &pending, RemovalProgress &progress,
                               RemovalActions &actions) {
    const std::optional<std::string> keepAll = reasonToKeepAll(pending, progress);
    ReviewedRemoval removal;
    for (const CleanupEntry &entry : pending.entries) {
        std::optional<std::string> reason = keepAll;
        if (!reason)
            reason = reasonToKeepAll(pending, progress.cancelled);
        if (!reason)
            reason = changeOfOriginal(*pending.verified, entry.url, progress.cancelled);
        // After a stop the remover reports the rest as not removed.
        if (reason && !progress.cancelled.isSet()) {
            removal.result.failed.push_back({entry.url, "Kept. " + *std::move(reason)});
            ++removal.keptCount;
            continue;
        }
        add(removal.result, Remover::remove({entry}, pending.mode, &progress, actions));
    }
    return removal;
}

std::string statusOf(const ReviewedRemoval &removal, const PendingDeletion &pending) {
    const std::string name = displayText(pending.destination.fileName());
    const std::size_t count = removal.result.failed.size() + removal.result.needsAdmin.size();
    if (count == 0)
        return "Backed up to " + name + ", then removed the originals.";
    return "Backed up to " + name + ". " + std::to_string(count) +
           (count == 1 ? " original was " : " originals were ") +
           (count == removal.keptCount ? "kept." : "not removed.");
}

} // namespace brimvale
