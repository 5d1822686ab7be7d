#include "Core/Backup/ReviewedRemoval.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Core/Removal/Remover.h"
#include "Platform/RunningApps.h"

#include <iterator>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

/// Why no original may be removed, as a sentence.
std::optional<std::string> reasonToKeepAll(const PendingDeletion &pending, const StopFlag &cancelled) {
    if (pending.quitFirst && isApplicationRunning(*pending.quitFirst))
        return "Its application is running again. Quit it and make another backup.";
    if (pending.verified == nullptr)
        return "It cannot be compared with the backup any more.";
    return changeOfBackup(*pending.verified, cancelled);
}

template<class T>
void append(std::vector<T> &all, std::vector<T> &&more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

void add(RemovalResult &all, RemovalResult &&one) {
    append(all.succeeded, std::move(one.succeeded));
    append(all.failed, std::move(one.failed));
    append(all.needsAdmin, std::move(one.needsAdmin));
    all.bytesFreed = checkedAdd(all.bytesFreed, one.bytesFreed);
}

} // namespace

ReviewedRemoval removeReviewed(const PendingDeletion &pending, RemovalProgress &progress,
                               RemovalActions &actions) {
    const std::optional<std::string> keepAll = reasonToKeepAll(pending, progress.cancelled);
    ReviewedRemoval removal;
    for (const CleanupEntry &entry : pending.entries) {
        std::optional<std::string> reason = keepAll;
        if (!reason && !progress.cancelled.isSet())
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
    if (removal.keptCount == 0)
        return "Backed up to " + name + ", then removed the originals.";
    return "Backed up to " + name + ". " + std::to_string(removal.keptCount) +
           (removal.keptCount == 1 ? " original was kept." : " originals were kept.");
}

} // namespace brimvale
