#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What one run of a program took, from its start to its end.
struct MeasuredRun {
    double seconds = 0;         ///< by the clock on the wall
    double cpuSeconds = 0;      ///< of all its threads, in the program and in the system
    std::int64_t peakBytes = 0; ///< the most memory that was resident at once
    bool succeeded = false;     ///< it ended by itself, with status 0
};

/// Runs `command` (found along PATH), with nothing to read and its output thrown away, and waits for its end.
/// Nothing when there is no such program or it cannot be started.
///
/// A started program shares this one's memory for a moment, so its peak is never below ours: keep it small.
[[nodiscard]] std::optional<MeasuredRun> measure(std::vector<std::string> command);
