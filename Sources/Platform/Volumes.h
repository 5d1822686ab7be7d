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
    std::optional<std::int64_t> totalCapacity = {};
    std::optional<std::int64_t> availableForImportantUsage = {}; ///< including space that can be purged
    std::optional<std::int64_t> available = {};
    std::optional<bool> isInternal = {};
    std::optional<bool> isRootFileSystem = {};
    std::optional<bool> isBrowsable = {};
};

/// The volumes mounted for users, in the system's order.
///
/// On Linux these are the file system at "/" and all storage: disks (one row each, even if mounted several
/// times), network file systems and storage served by programs, but no kernel interfaces, memory or software
/// images. At most `patience` is spent in total on file systems that another program or machine serves: until
/// one answers, its last known capacity is used.
[[nodiscard]] std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience,
                                                        const Tools &tools = platformTools());

} // namespace brimvale
