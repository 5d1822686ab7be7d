#include "Platform/SharedSpace.h"

#include "Platform/Linux/Extents.h"
#include "Platform/Linux/FileSystemTypes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/btrfs.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>

namespace brimvale {

namespace {

/// Subvolumes of one Btrfs have devices of their own, but the same storage.
std::string storageOf(const SteadyFile &file) {
    btrfs_ioctl_fs_info_args figures{};
    if (fileSystemType(file.descriptor()) == BTRFS_SUPER_MAGIC &&
        ioctl(file.descriptor(), BTRFS_IOC_FS_INFO, &figures) == 0)
        return {reinterpret_cast<const char *>(figures.fsid), sizeof figures.fsid};
    return std::to_string(file.record().identity.device);
}

constexpr std::size_t mostExtents = 100'000;

/// Whether other files can have the same bytes in the same place. Blocks without contents are not compared.
bool canBeShared(const fiemap_extent &extent) {
    return hasPlace(extent) && (extent.fe_flags & (FIEMAP_EXTENT_NOT_ALIGNED | FIEMAP_EXTENT_UNWRITTEN)) == 0;
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
    return sharesExtents(fileSystemType(file.descriptor()));
}

std::optional<StoredBytes> storedBytes(const SteadyFile &file) {
    if (!mayShareBytes(file))
        return std::nullopt;
    StoredBytes stored;
    bool isComplete = true;
    const bool isTold = forEachExtent(file.descriptor(), [&](const fiemap_extent &extent) {
        isComplete = canBeShared(extent) && stored.runs.size() < mostExtents;
        stored.runs.push_back({extent.fe_logical, extent.fe_physical, extent.fe_length});
        stored.areShared = stored.areShared || (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
        return isComplete;
    });
    if (!isTold || !isComplete || stored.runs.empty())
        return std::nullopt;
    joinRuns(stored.runs);
    stored.storage = storageOf(file);
    return stored;
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
