#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A mounted volume as the system reports it; a field is empty where the system does not report it. Sizes in
/// bytes.
struct MountedVolume {
    FileURL url; ///< the mount point
    std::optional<std::string> name = {};
    std::optional<std::string> fileSystem = {}; ///< its type: "ext4"
    std::optional<std::string> device = {};     ///< "/dev/sda2", a ZFS pool, or the address of a server
    std::optional<std::int64_t> totalCapacity = {};
    std::optional<std::int64_t> availableForImportantUsage = {}; ///< including space that can be purged
    std::optional<std::int64_t> available = {};
    std::optional<std::int64_t> reserved = {}; ///< free, but not for users; `totalCapacity` is without it
    std::optional<bool> isInternal = {};
    std::optional<bool> isRootFileSystem = {};
    std::optional<bool> isBrowsable = {};
};

/// The volumes mounted for users, in the system's order.
///
/// On Linux these are the file system at "/" and all storage: disks and pools (one row each, even if mounted
/// several times), network file systems and storage served by programs, but no kernel interfaces, memory or
/// software images.
///
/// Volumes that may take long to answer, or never do, are asked on other threads, and at most `patience` is
/// spent in total: until one answers, its last known figures are used. Before its first answer it has no
/// capacity on Linux, and on macOS the figures that the kernel had last, without what could be purged.
[[nodiscard]] std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience,
                                                        const Tools &tools = platformTools());

} // namespace brimvale
