#pragma once

#include "Base/FileURL.h"
#include "Base/StopFlag.h"
#include "Core/Scan/WalkPool.h"
#include "Platform/FileStatus.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// What deleting some items gives back, in allocated bytes. Every file and every block counts once.
struct Reclaim {
    struct Part {
        std::string name; ///< of a program; or the path of a snapshot, as bytes
        std::int64_t bytes = 0;

        friend bool operator==(const Part &, const Part &) = default;
    };

    /// A file that has another name outside the selection.
    struct Link {
        FileIdentity file;
        std::int64_t bytes = 0;
        std::string otherName = {}; ///< a path outside the selection; empty where none was found

        friend bool operator==(const Link &, const Link &) = default;
    };

    std::int64_t freesNow = 0; ///< nothing else holds it
    /// Freed as well, unless something holds it that cannot be seen from here; or as much as compressed files
    /// take less than they count.
    std::int64_t mayFree = 0;
    std::int64_t linkedElsewhere = 0;      ///< of files that have another name outside the selection
    std::int64_t filesLinkedElsewhere = 0; ///< their number
    std::vector<Link> links = {};          ///< the largest of them first, not all
    std::int64_t sharedElsewhere = 0; ///< of blocks that other files have, or snapshots nobody can look into
    std::int64_t inSnapshots = 0;     ///< of blocks that snapshots have
    std::vector<Part> snapshots = {}; ///< each with what it was found to hold first, the largest first
    std::int64_t inUse = 0;           ///< freed when the programs that use these files let them go
    std::vector<Part> programs = {};  ///< the largest first
    /// Programs of other users that could not be asked what they have open. Where there are some, files of
    /// other users count as `mayFree`.
    std::int64_t unaskedPrograms = 0;
    std::int64_t files = 0;      ///< seen
    std::int64_t unreadable = 0; ///< items that could not be looked at, or only in part

    [[nodiscard]] std::int64_t freesAtMost() const { return freesNow + mayFree; }

    friend bool operator==(const Reclaim &, const Reclaim &) = default;
};

/// Shared with the thread that shows the progress.
struct ReclaimProgress {
    StopFlag cancelled;
    std::atomic<std::int64_t> files = 0; ///< seen so far
};

/// Where other names of files are looked for.
struct LinkPlaces {
    std::vector<std::string> folders = {}; ///< absolute paths
    bool areDeep = false; ///< at any depth, until all is found; otherwise only directly in them, and not long
};

/// Finds out what deleting these items, at absolute paths, gives back. Follows no link below the items, reads
/// no contents, and leaves other volumes, other machines and placeholders of cloud providers alone. Blocks;
/// once `progress.cancelled` is set, it returns soon, with figures that mean nothing.
[[nodiscard]] Reclaim reclaimOf(const std::vector<FileURL> &items, ReclaimProgress &progress,
                                const LinkPlaces &linkPlaces = {}, WalkPool &pool = WalkPool::shared());

} // namespace brimvale
