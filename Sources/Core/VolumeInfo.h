#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

/// A mounted volume. Sizes in bytes; 0 where the system gives none.
struct VolumeInfo {
    FileURL url; ///< the mount point
    std::string name;
    std::int64_t totalCapacity = 0;
    std::int64_t availableForImportantUsage = 0; ///< purgeable space included
    std::int64_t trueFree = 0;                   ///< purgeable space excluded
    bool isInternal = false;
    bool isRootVolume = false;

    friend bool operator==(const VolumeInfo &, const VolumeInfo &) = default;
};

/// A local snapshot of the root volume.
struct LocalSnapshot {
    std::string name;
    std::optional<Date> date; ///< nothing where the name does not tell

    friend bool operator==(const LocalSnapshot &, const LocalSnapshot &) = default;
};

} // namespace brimvale
