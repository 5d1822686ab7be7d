#pragma once

#include "Platform/FileStatus.h"

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace brimvale {

/// Keeps the sums of one measurement within 64 bits. Anyone can make empty files of any length, or serve a
/// file system with any figures, so files that together claim more than a volume holds are left out before
/// they are added. Then only a fault of our own can make a sum overflow. Thread-safe.
class SumLimit {
public:
    /// Whether the file's figures may be added. If not, it counts as unreadable: where `isMeasurable` is
    /// false, or where files of at least 64 MiB already claim `mostBelievedBytes` together.
    [[nodiscard]] bool admits(const FileStatus &file) {
        const std::int64_t claimed = std::max(file.length, file.allocatedBytes);
        if (!file.isMeasurable || claimed < largeFile)
            return file.isMeasurable;
        if (claimed_.fetch_add(claimed, std::memory_order_relaxed) <= mostBelievedBytes - claimed)
            return true;
        claimed_.fetch_sub(claimed, std::memory_order_relaxed);
        return false;
    }

private:
    /// It takes a billion smaller files to claim as much as the large ones may.
    static constexpr std::int64_t largeFile = std::int64_t{1} << 26;

    std::atomic<std::int64_t> claimed_ = 0; ///< bytes, by large files
};

} // namespace brimvale
