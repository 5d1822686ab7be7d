#pragma once

#include "Base/Date.h"
#include "Platform/Tools.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A snapshot on a volume, as its tool or the file system reports it.
struct VolumeSnapshot {
    std::string name; ///< as its tool has it: "root 42", "2026-05-01_10-00-01"; else its path
    std::optional<Date> date = {};
    std::string tool; ///< "Snapper", "Timeshift" or "Btrfs"
    std::string description = {};
    std::optional<std::int64_t> exclusiveBytes = {}; ///< what deleting only this one frees, where it is known
    /// A program and its arguments, which delete it when root runs them. Empty where only its owner knows
    /// how.
    std::vector<std::string> deletion = {};

    friend bool operator==(const VolumeSnapshot &, const VolumeSnapshot &) = default;
};

/// The snapshots on the volume of the folder at an absolute path, in any order: those of the known tools, and
/// the read-only ones of Btrfs that the user can reach. None that the computer runs from. Never fails. Waits
/// for the tools, each for a few seconds at most.
///
/// None on macOS, where only a tool lists them.
[[nodiscard]] std::vector<VolumeSnapshot> volumeSnapshots(const std::string &folder, const Tools &tools);

} // namespace brimvale
