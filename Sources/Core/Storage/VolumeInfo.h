#pragma once

#include "Base/FileURL.h"
#include "Platform/Volumes.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

    /// How long `current` may wait where the window is about to be drawn.
    static constexpr std::chrono::milliseconds beforePaint{5};

    /// The mounted volumes, the root volume first, then by name. One whose capacity is not known is left out,
    /// so a volume on a network or behind another program is missing until it has answered once; no more than
    /// `patience` is spent on all of them. Never fails. Thread-safe.
    [[nodiscard]] static std::vector<VolumeInfo> current(std::chrono::milliseconds patience = beforePaint);

    /// Those of them that are to be listed, in order, from what the system reports.
    [[nodiscard]] static std::vector<VolumeInfo> from(const std::vector<MountedVolume> &mounted);

    /// The root volume, else the first, else nothing.
    [[nodiscard]] static std::optional<VolumeInfo> root(const std::vector<VolumeInfo> &volumes);

    /// The space to show as available. Some file systems do not say what is there for important usage.
    [[nodiscard]] std::int64_t shownAvailable() const {
        return availableForImportantUsage > 0 ? availableForImportantUsage : trueFree;
    }

    /// What the system would give back under pressure; 0 or less where it holds nothing back.
    [[nodiscard]] std::int64_t purgeable() const { return availableForImportantUsage - trueFree; }

    friend bool operator==(const VolumeInfo &, const VolumeInfo &) = default;
};

/// What to say of a volume's purgeable space; nothing where there is none.
[[nodiscard]] std::optional<std::string> purgeableSentence(const VolumeInfo &volume);

} // namespace brimvale
