#pragma once

#include "Platform/Linux/MountTable.h"
#include "Platform/Tools.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

/// The capacity of a file system in bytes. The total is for users: without reserved blocks.
struct Capacity {
    std::int64_t total = 0;
    std::int64_t available = 0;
    std::int64_t reserved = 0; ///< free, but only for the administrator or the file system itself
};

/// From the figures of statvfs(3); nothing where they are impossible.
[[nodiscard]] std::optional<Capacity> capacityOf(std::uint64_t blockSize, std::uint64_t blocks,
                                                 std::uint64_t freeBlocks, std::uint64_t availableBlocks);

/// The capacities of file systems that may never answer, in the order of `mounts`: each the last known one,
/// or nothing. Every one is asked again unless an earlier question is still open. Waits until all have
/// answered or `patience` has passed; later answers are used next time.
///
/// The system call would block its thread, and the end of the program, for as long as the other side is
/// silent, and no signal interrupts it. So another program makes the call, and only that one can get stuck.
/// Thread-safe.
[[nodiscard]] std::vector<std::optional<Capacity>>
distantCapacities(const std::vector<Mount> &mounts, std::chrono::milliseconds patience, const Tools &tools);

} // namespace brimvale
