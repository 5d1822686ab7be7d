#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A mounted volume as the system reports it; nothing where it does not. Sizes in bytes.
struct MountedVolume {
    FileURL url; ///< the mount point
    std::optional<std::string> name = {};
    std::optional<std::int64_t> totalCapacity = {};
    std::optional<std::int64_t> availableForImportantUsage = {}; ///< space that can be purged included
    std::optional<std::int64_t> available = {};
    std::optional<bool> isInternal = {};
    std::optional<bool> isRootFileSystem = {};
    std::optional<bool> isBrowsable = {};
};

/// The volumes that are mounted for people to use, in the system's order.
///
/// On Linux that is the file system at "/", whatever it is, and storage: disks (one row each, however often
/// they are mounted), network file systems and those that a program serves, but no kernel interfaces, no
/// memory and no software images. A file system that another program or machine answers for is never waited
/// for longer than `patience`, all of them together: until it answers, its capacity is the last one known.
[[nodiscard]] std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience,
                                                        const Tools &tools = platformTools());

} // namespace brimvale
