#pragma once

#include "Base/FileURL.h"
#include "Platform/Volumes.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A mounted volume. Sizes in bytes; 0 where unknown.
struct VolumeInfo {
    FileURL url; ///< the mount point
    std::string name;
    std::int64_t totalCapacity = 0;
    std::int64_t availableForImportantUsage = 0; ///< purgeable space included
    std::int64_t trueFree = 0;                   ///< purgeable space excluded
    bool isInternal = false;
    bool isRootVolume = false;
    std::int64_t reserved = 0; ///< free space that users cannot have; neither in the capacity nor in the rest
    std::optional<std::string> fileSystem = {}; ///< its type: "ext4"; a Mac does not tell
    std::optional<std::string> device = {};     ///< where it is: "/dev/sda2"; a Mac does not tell

    /// The longest wait in `current` just before the window is drawn.
    static constexpr std::chrono::milliseconds beforePaint{5};

    /// The mounted volumes, the root volume first, then by name. A volume of unknown capacity is left out, so
    /// one on a network or served by another program is missing until it has answered once. Waits at most
    /// `patience` for all of them. Never fails. Thread-safe.
    [[nodiscard]] static std::vector<VolumeInfo> current(std::chrono::milliseconds patience = beforePaint);

    /// The volumes to list, in order, from the system's report. The root volume gets `rootName`, if given.
    [[nodiscard]] static std::vector<VolumeInfo> from(const std::vector<MountedVolume> &mounted,
                                                      const std::optional<std::string> &rootName = {});

    /// The root volume, else the first, else nothing.
    [[nodiscard]] static std::optional<VolumeInfo> root(const std::vector<VolumeInfo> &volumes);

    /// The free space to show, everywhere. Some file systems do not report the space for important usage.
    [[nodiscard]] std::int64_t shownAvailable() const {
        return availableForImportantUsage > 0 ? availableForImportantUsage : trueFree;
    }

    /// The used space; purgeable space counts as used. At least 0.
    [[nodiscard]] std::int64_t used() const {
        return totalCapacity > trueFree ? totalCapacity - trueFree : 0;
    }

    /// The space the system would free when it runs low; 0 or less where there is none.
    [[nodiscard]] std::int64_t purgeable() const { return availableForImportantUsage - trueFree; }

    friend bool operator==(const VolumeInfo &, const VolumeInfo &) = default;
};

/// A volume's type, device and mount point: "ext4 · /dev/sda2 · /home"; nothing on a Mac.
[[nodiscard]] std::optional<std::string> volumeDetails(const VolumeInfo &volume);

/// A sentence about a volume's purgeable space; nothing where there is none.
[[nodiscard]] std::optional<std::string> purgeableSentence(const VolumeInfo &volume);

/// "47 GB used, 55 GB free, 168 GB reserved", with who may use the reserved space; nothing without any.
[[nodiscard]] std::optional<std::string> reservedSentence(const VolumeInfo &volume);

} // namespace brimvale
