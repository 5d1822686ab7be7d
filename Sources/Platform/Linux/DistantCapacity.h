#pragma once

#include "Platform/Linux/MountTable.h"
#include "Platform/Tools.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

/// How much a file system holds, in bytes. The total is what there is for users: without reserved blocks.
struct Capacity {
    std::int64_t total = 0;
    std::int64_t available = 0;
};

/// From the figures of statvfs(3); nothing where they make no sense.
[[nodiscard]] std::optional<Capacity> capacityOf(std::uint64_t blockSize, std::uint64_t blocks,
                                                 std::uint64_t freeBlocks, std::uint64_t availableBlocks);

/// The capacities of file systems that may never answer, in the order of `mounts`: the last known one each,
/// nothing where none is known. All are asked again, unless the last question is still open, and waited for
/// until all have answered or `patience` is over; what comes later is known the next time.
///
/// The system call would hold its thread, and the program's end, for as long as the other side is silent, and
/// no signal ends that. So another program makes it: only that one is stuck then. Thread-safe.
[[nodiscard]] std::vector<std::optional<Capacity>>
distantCapacities(const std::vector<Mount> &mounts, std::chrono::milliseconds patience, const Tools &tools);

} // namespace brimvale
