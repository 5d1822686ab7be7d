#pragma once

#include "Base/StopFlag.h"
#include "Core/Duplicates/DuplicateGroup.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace brimvale {

/// What sharing has done.
struct SpaceSharing {
    std::vector<FileURL> shared = {}; ///< the files that now share the space of another one
    std::int64_t bytes = 0;           ///< of these, which need no space of their own any more
    std::vector<RemovalResult::Failure> failed = {};
    bool wasStopped = false;
};

/// The files of a group that can share the space of the first of them, which is first: none where fewer than
/// two can.
[[nodiscard]] std::vector<const DuplicateFile *> filesToShare(const DuplicateGroup &group);

/// What sharing would do.
struct SharingFigures {
    std::int64_t files = 0; ///< that can share the space of another one
    std::int64_t bytes = 0; ///< of these
};

/// The figures of all groups. A sum above 64 bits ends the program.
[[nodiscard]] SharingFigures sharingIn(const std::vector<DuplicateGroup> &groups);

/// Stores the equal files of each group once, where their file system can. The file system compares them
/// again. Every file stays, with its contents and dates; nothing is done with files that have changed since
/// they were found, or that are protected. Blocks, and stops soon after `stopped` is set. `step` is called
/// after each file.
[[nodiscard]] SpaceSharing shareSpace(const std::vector<DuplicateGroup> &groups, const StopFlag &stopped,
                                      const std::function<void()> &step = {});

} // namespace brimvale
