#include "Platform/Linux/Extents.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <linux/fs.h>
#include <linux/magic.h>
#include <memory>
#include <span>
#include <sys/ioctl.h>

namespace brimvale {

namespace {

constexpr std::size_t extentsAtOnce = 256;

/// The question to the kernel with room for its answer, which follows it in memory.
class ExtentQuestion {
public:
    /// Asks for the extents from this byte of the file on; false on failure.
    bool ask(int file, std::uint64_t start) {
        fiemap &question = head();
        question = {};
        question.fm_start = start;
        question.fm_length = FIEMAP_MAX_OFFSET - start;
        question.fm_extent_count = extentsAtOnce;
        return ioctl(file, FS_IOC_FIEMAP, &question) == 0;
    }

    [[nodiscard]] std::span<const fiemap_extent> answer() {
        return {head().fm_extents, std::min<std::size_t>(head().fm_mapped_extents, extentsAtOnce)};
    }

private:
    fiemap &head() { return *reinterpret_cast<fiemap *>(bytes_.data()); }

    alignas(fiemap) std::array<char, sizeof(fiemap) + extentsAtOnce * sizeof(fiemap_extent)> bytes_{};
};

} // namespace

bool sharesExtents(std::uint32_t type) {
    constexpr std::uint32_t bcachefs = 0xCA451A4E; // not in the kernel's header
    return type == BTRFS_SUPER_MAGIC || type == XFS_SUPER_MAGIC || type == OCFS2_SUPER_MAGIC ||
           type == bcachefs;
}

bool forEachExtent(int file, const std::function<bool(const fiemap_extent &)> &take) {
    const auto question = std::make_unique<ExtentQuestion>();
    for (std::uint64_t start = 0;;) {
        if (!question->ask(file, start))
            return false;
        const std::span<const fiemap_extent> extents = question->answer();
        for (const fiemap_extent &extent : extents)
            if (!take(extent))
                return true;
        if (extents.empty() || (extents.back().fe_flags & FIEMAP_EXTENT_LAST) != 0)
            return true;
        const std::uint64_t next = extents.back().fe_logical + extents.back().fe_length;
        if (next <= start) // a file system that repeats itself would never end
            return false;
        start = next;
    }
}

bool hasPlace(const fiemap_extent &extent) {
    return (extent.fe_flags & (FIEMAP_EXTENT_UNKNOWN | FIEMAP_EXTENT_DELALLOC | FIEMAP_EXTENT_DATA_INLINE)) ==
           0;
}

} // namespace brimvale
