#include "Platform/SharedBlocks.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"
#include "Platform/Linux/BtrfsSnapshots.h"
#include "Platform/Linux/FileSystemTypes.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <span>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t extentsInAnswer = 250;

/// The request to the kernel with room for its answer.
class ExtentList {
public:
    /// Asks for the extents of a file from this byte on; false on failure.
    bool ask(int file, std::uint64_t start) {
        fiemap &list = head();
        list = {};
        list.fm_start = start;
        list.fm_length = FIEMAP_MAX_OFFSET - start;
        list.fm_extent_count = extentsInAnswer;
        return ioctl(file, FS_IOC_FIEMAP, &list) == 0;
    }

    [[nodiscard]] std::span<const fiemap_extent> extents() {
        return {head().fm_extents, std::min<std::size_t>(head().fm_mapped_extents, extentsInAnswer)};
    }

private:
    fiemap &head() { return *reinterpret_cast<fiemap *>(bytes_.data()); }

    alignas(fiemap) std::array<char, sizeof(fiemap) + extentsInAnswer * sizeof(fiemap_extent)> bytes_{};
};

/// Several parts of a file may use the same compressed blocks.
void addPacked(std::vector<BlockPlace> &places, const fiemap_extent &extent) {
    const auto bytes = static_cast<std::int64_t>(extent.fe_length);
    const auto known = std::find_if(places.rbegin(), places.rend(), [&](const BlockPlace &place) {
        return place.isPacked && place.start == extent.fe_physical;
    });
    if (known != places.rend())
        known->bytes += bytes;
    else
        places.push_back({extent.fe_physical, bytes, true});
}

void addExtent(SharedBlocks &blocks, const fiemap_extent &extent) {
    constexpr std::uint32_t withoutPlace =
        FIEMAP_EXTENT_UNKNOWN | FIEMAP_EXTENT_DELALLOC | FIEMAP_EXTENT_DATA_INLINE;
    if ((extent.fe_flags & withoutPlace) != 0 || extent.fe_length > mostBelievedBytes)
        return;
    const bool isPacked = (extent.fe_flags & FIEMAP_EXTENT_ENCODED) != 0;
    const auto bytes = static_cast<std::int64_t>(extent.fe_length);
    if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) == 0) {
        blocks.packedBytes += isPacked ? bytes : 0;
        return;
    }
    blocks.bytes += bytes;
    if (isPacked)
        addPacked(blocks.places, extent);
    else
        blocks.places.push_back({extent.fe_physical, bytes});
}

/// The top of the Btrfs subvolume that the folder at `path` is in; empty where it is above the mount.
std::string subvolumeTopOf(const std::string &path, const std::string &mountPoint) {
    constexpr std::uint64_t inodeOfTop = 256;
    for (FileURL folder(path);; folder = folder.parent()) {
        const std::optional<FileIdentity> identity = folderIdentity(folder.path());
        if (!identity)
            return {};
        if (identity->inode == inodeOfTop)
            return folder.path();
        if (folder.path() == mountPoint || folder.path() == "/")
            return {};
    }
}

} // namespace

BlockSharing blockSharingIn(const Folder &folder) {
    constexpr std::uint32_t bcachefs = 0xCA451A4E, zfs = 0x2FC12FC1; // not in the kernel's header
    switch (fileSystemType(folder.descriptor())) {
    case BTRFS_SUPER_MAGIC:
    case XFS_SUPER_MAGIC:
    case bcachefs:
        return BlockSharing::told;
    case zfs:
        return BlockSharing::untold;
    default:
        return BlockSharing::never;
    }
}

std::optional<SharedBlocks> sharedBlocksOf(const Folder &folder, const char *name,
                                           const StopFlag &cancelled) {
    const Descriptor file(
        openat(folder.descriptor(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    SharedBlocks blocks;
    ExtentList list;
    std::uint64_t start = 0;
    while (!cancelled.isSet()) {
        if (!list.ask(file.number(), start))
            return std::nullopt;
        const std::span<const fiemap_extent> extents = list.extents();
        for (const fiemap_extent &extent : extents)
            addExtent(blocks, extent);
        if (extents.empty() || (extents.back().fe_flags & FIEMAP_EXTENT_LAST) != 0)
            return blocks;
        start = extents.back().fe_logical + extents.back().fe_length;
    }
    return std::nullopt;
}

SnapshottedFolder snapshottedFolderOf(const std::string &folder) {
    const std::vector<Mount> mounts = currentMounts();
    const Mount *own = mountAt(mounts, folder);
    if (own == nullptr || own->type != "btrfs")
        return {};
    SnapshottedFolder found{.top = subvolumeTopOf(folder, own->point)};
    if (found.top.empty())
        return {};
    std::vector<BtrfsSnapshot> snapshots;
    for (const Mount &mount : mounts)
        if (mount.type == "btrfs" && mount.device == own->device)
            for (BtrfsSnapshot &one : btrfsSnapshotsIn(mount.point)) {
                const auto isKnown = [&](const BtrfsSnapshot &known) {
                    return known.subvolume == one.subvolume;
                };
                if (one.path != found.top && std::none_of(snapshots.begin(), snapshots.end(), isKnown))
                    snapshots.push_back(std::move(one));
            }
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const BtrfsSnapshot &a, const BtrfsSnapshot &b) { return a.date > b.date; });
    for (BtrfsSnapshot &one : snapshots)
        found.snapshots.push_back(std::move(one.path));
    return found;
}

} // namespace brimvale
