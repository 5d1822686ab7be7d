#include "Platform/SharedSpace.h"

#include "Platform/Linux/FileSystemTypes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/btrfs.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <memory>
#include <sys/ioctl.h>

namespace brimvale {

namespace {

constexpr std::uint32_t btrfs = 0x9123683E;
constexpr std::array<std::uint32_t, 4> sharingTypes = {btrfs, 0x58465342 /* XFS */, 0x7461636F /* OCFS2 */,
                                                       0xCA451A4E /* bcachefs */};

/// Subvolumes of one Btrfs have devices of their own, but the same storage.
std::string storageOf(const SteadyFile &file) {
    btrfs_ioctl_fs_info_args figures{};
    if (fileSystemType(file.descriptor()) == btrfs &&
        ioctl(file.descriptor(), BTRFS_IOC_FS_INFO, &figures) == 0)
        return {reinterpret_cast<const char *>(figures.fsid), sizeof figures.fsid};
    return std::to_string(file.record().identity.device);
}

/// Room for an answer of the kernel, which follows the question in memory.
constexpr std::size_t extentsAtOnce = 256;
constexpr std::size_t mostExtents = 100'000;

struct ExtentQuestion {
    alignas(fiemap) std::array<char, sizeof(fiemap) + extentsAtOnce * sizeof(fiemap_extent)> bytes{};

    fiemap &question() { return *reinterpret_cast<fiemap *>(bytes.data()); }
    const fiemap_extent &answer(std::size_t i) { return question().fm_extents[i]; }
};

/// Whether the place of the bytes is known. Those of a tiny file may be stored beside its name, and new ones
/// may have no place yet.
bool hasPlace(const fiemap_extent &extent) {
    return (extent.fe_flags & (FIEMAP_EXTENT_UNKNOWN | FIEMAP_EXTENT_DELALLOC | FIEMAP_EXTENT_DATA_INLINE |
                               FIEMAP_EXTENT_NOT_ALIGNED | FIEMAP_EXTENT_UNWRITTEN)) == 0;
}

/// Adds the next extents. False at the end, nothing where one has no known place.
std::optional<bool> addExtents(int descriptor, std::uint64_t start, StoredBytes &stored) {
    const auto extents = std::make_unique<ExtentQuestion>();
    fiemap &question = extents->question();
    question.fm_start = start;
    question.fm_length = FIEMAP_MAX_OFFSET - start;
    question.fm_extent_count = extentsAtOnce;
    if (ioctl(descriptor, FS_IOC_FIEMAP, &question) != 0)
        return std::nullopt;
    const std::size_t count = std::min<std::size_t>(question.fm_mapped_extents, extentsAtOnce);
    for (std::size_t i = 0; i < count; ++i) {
        const fiemap_extent &extent = extents->answer(i);
        if (!hasPlace(extent))
            return std::nullopt;
        stored.runs.push_back({extent.fe_logical, extent.fe_physical, extent.fe_length});
        stored.areShared = stored.areShared || (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
        if ((extent.fe_flags & FIEMAP_EXTENT_LAST) != 0)
            return false;
    }
    return count > 0;
}

/// Joins runs that continue one another: the same bytes may be told in one piece or in several.
void joinRuns(std::vector<StoredBytes::Run> &runs) {
    std::size_t kept = 0;
    for (std::size_t i = 1; i < runs.size(); ++i) {
        StoredBytes::Run &last = runs[kept];
        if (runs[i].offset == last.offset + last.length && runs[i].place == last.place + last.length)
            last.length += runs[i].length;
        else
            runs[++kept] = runs[i];
    }
    if (!runs.empty())
        runs.resize(kept + 1);
}

/// The question to share one piece, with room for the answer about one file.
struct SharingQuestion {
    alignas(file_dedupe_range)
        std::array<char, sizeof(file_dedupe_range) + sizeof(file_dedupe_range_info)> bytes{};

    file_dedupe_range &question() { return *reinterpret_cast<file_dedupe_range *>(bytes.data()); }
    file_dedupe_range_info &answer() { return question().info[0]; }
};

using Sharing = Result<std::int64_t, SharingFailure>;

/// The bytes of the next piece that are shared now.
Sharing sharePiece(const SteadyFile &original, const SteadyFile &copy, std::int64_t offset,
                   std::int64_t length) {
    SharingQuestion asked;
    asked.question().src_offset = static_cast<std::uint64_t>(offset);
    asked.question().src_length = static_cast<std::uint64_t>(length);
    asked.question().dest_count = 1;
    asked.answer().dest_fd = copy.descriptor();
    asked.answer().dest_offset = static_cast<std::uint64_t>(offset);
    if (ioctl(original.descriptor(), FIDEDUPERANGE, asked.bytes.data()) != 0)
        return SharingFailure{errno};
    if (asked.answer().status < 0)
        return SharingFailure{-asked.answer().status};
    if (asked.answer().status == FILE_DEDUPE_RANGE_DIFFERS || asked.answer().bytes_deduped == 0)
        return SharingFailure{};
    return static_cast<std::int64_t>(asked.answer().bytes_deduped);
}

} // namespace

bool mayShareBytes(const SteadyFile &file) {
    return std::find(sharingTypes.begin(), sharingTypes.end(), fileSystemType(file.descriptor())) !=
           sharingTypes.end();
}

std::optional<StoredBytes> storedBytes(const SteadyFile &file) {
    if (!mayShareBytes(file))
        return std::nullopt;
    StoredBytes stored;
    while (stored.runs.size() < mostExtents) {
        const std::uint64_t next =
            stored.runs.empty() ? 0 : stored.runs.back().offset + stored.runs.back().length;
        const std::optional<bool> hasMore = addExtents(file.descriptor(), next, stored);
        if (!hasMore)
            return std::nullopt;
        if (*hasMore)
            continue;
        if (stored.runs.empty())
            return std::nullopt;
        joinRuns(stored.runs);
        stored.storage = storageOf(file);
        return stored;
    }
    return std::nullopt;
}

Sharing shareBytes(const SteadyFile &original, const SteadyFile &copy, const StopFlag &stopped) {
    constexpr std::int64_t piece = 16 << 20; // what Btrfs takes at once
    const std::int64_t length = original.record().length;
    if (copy.record().length != length)
        return SharingFailure{};
    std::int64_t shared = 0;
    while (shared < length && !stopped.isSet()) {
        const Sharing done = sharePiece(original, copy, shared, std::min(piece, length - shared));
        const auto *bytes = std::get_if<std::int64_t>(&done);
        if (bytes == nullptr)
            return done;
        shared += *bytes;
    }
    return shared;
}

} // namespace brimvale
