#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupNotes.h"
#include "Core/Removal/RemovalMode.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// A folder of which a removal has deleted only a part.
struct PartialRemoval {
    FileURL url;
    std::int64_t entriesRemoved = 0; ///< files, links and folders
    std::int64_t entriesInAll = 0;   ///< these, and what is left with the folder itself
    std::int64_t bytesFreed = 0;     ///< allocated bytes

    friend bool operator==(const PartialRemoval &, const PartialRemoval &) = default;
};

/// An item that was moved to the Trash, so that it can be put back.
struct MovedToTrash {
    FileURL place;          ///< where it was, without links on the way
    FileIdentity folder;    ///< its parent then
    ItemPin now;            ///< in the Trash
    std::int64_t bytes = 0; ///< allocated

    friend bool operator==(const MovedToTrash &, const MovedToTrash &) = default;
};

/// What deleting some items should free, found out before.
struct FreePromise {
    std::int64_t atLeast = 0;              ///< bytes that nothing else holds
    std::int64_t atMost = 0;               ///< with bytes that something unseen may hold
    std::vector<std::string> holders = {}; ///< what holds the rest, a line each, for display

    friend bool operator==(const FreePromise &, const FreePromise &) = default;
};

/// The outcome of one removal: every item is in exactly one of the lists `succeeded`, `failed` and
/// `needsAdmin`. The lists after these say more about the items.
struct RemovalResult {
    struct Failure {
        FileURL url;
        std::string reason; ///< a readable sentence
        friend bool operator==(const Failure &, const Failure &) = default;
    };

    std::vector<FileURL> succeeded = {};
    std::vector<Failure> failed = {};
    std::int64_t bytesFreed = 0; ///< sizes of the items in `succeeded`, including those moved to the Trash
    std::vector<FileURL> needsAdmin = {}; ///< can be retried as administrator
    bool isOfBackup = false;              ///< nothing was to be removed yet: the backup before it failed

    /// The bytes that are now in the Trash, and those that were deleted. Only the latter free space.
    std::int64_t bytesMovedToTrash = 0;
    std::int64_t bytesDeleted = 0;
    /// How much the free space of the volume grew, as a sentence; with the known or likely reason if that is
    /// much less or more than `bytesDeleted`. Empty where that was not measured.
    std::string freeSpaceRemark = {};
    std::optional<std::int64_t> freeSpaceGrowth = {}; ///< the same in bytes, below 0 if it has shrunk
    std::optional<FreePromise> promise = {}; ///< for the deleted items, if it is known and all are gone

    /// What was deleted of items that are not removed. `bytesFreed` includes it, unless the administrator's
    /// command deleted it.
    std::vector<PartialRemoval> partlyRemoved = {};
    /// Failed items that no longer exist all the same.
    std::vector<FileURL> goneAnyway = {};
    /// For items in `needsAdmin`: what keeps them, and what would help.
    std::vector<Failure> adminRemarks = {};
    /// Whether the user may allow the removal of one of them under App Management in the system's settings.
    bool needsAppManagement = false;

    /// For items in `succeeded`: what the user would not expect, as a sentence.
    std::vector<Failure> remarks = {};

    /// Failed items that are not what was shown.
    std::vector<FileURL> changed = {};
    /// For items in `succeeded`: where they are in the Trash, if that is known. Does not count in
    /// comparisons.
    std::vector<MovedToTrash> movedToTrash = {};

    /// Items in `needsAdmin` as they were shown, or as they were found. Does not count in comparisons.
    std::unordered_map<FileURL, ItemPin> pins = {};
    /// What a target of Cleanup says about items in `needsAdmin`. Does not count in comparisons.
    std::unordered_map<FileURL, std::shared_ptr<const CleanupNotes>> notes = {};

    friend bool operator==(const RemovalResult &a, const RemovalResult &b) {
        const auto fields = [](const RemovalResult &one) {
            return std::tie(one.succeeded, one.failed, one.bytesFreed, one.needsAdmin, one.isOfBackup,
                            one.partlyRemoved, one.goneAnyway, one.adminRemarks, one.needsAppManagement,
                            one.remarks, one.changed, one.bytesMovedToTrash, one.bytesDeleted,
                            one.freeSpaceRemark, one.freeSpaceGrowth, one.promise);
        };
        return fields(a) == fields(b);
    }
};

} // namespace brimvale
