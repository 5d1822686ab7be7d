#include "Platform/SharedBlocks.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"
#include "Platform/Linux/BtrfsSnapshots.h"
#include "Platform/Linux/Extents.h"
#include "Platform/Linux/FileSystemTypes.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <unordered_map>
#include <utility>

namespace brimvale {

namespace {

/// What a tiny file counts, though it is stored beside its name and takes less.
constexpr std::int64_t usualBlock = 4096;

/// Extents of Btrfs are shared and freed as a whole.
constexpr std::int64_t longestBtrfsExtent = 128 << 20;

/// Adds up the extents of one file.
class BlockSums {
public:
    explicit BlockSums(std::int64_t reach) { blocks_.reach = reach; }

    void add(const fiemap_extent &extent) {
        if ((extent.fe_flags & FIEMAP_EXTENT_DATA_INLINE) != 0)
            blocks_.packedBytes += usualBlock;
        if (!hasPlace(extent) || extent.fe_length > mostBelievedBytes)
            return;
        const bool isPacked = (extent.fe_flags & FIEMAP_EXTENT_ENCODED) != 0;
        const auto bytes = static_cast<std::int64_t>(extent.fe_length);
        if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) == 0) {
            blocks_.packedBytes += isPacked ? bytes : 0;
            return;
        }
        blocks_.bytes += bytes;
        if (isPacked)
            addPacked(extent.fe_physical, bytes);
        else
            blocks_.places.push_back({extent.fe_physical, bytes});
    }

    [[nodiscard]] SharedBlocks take() { return std::move(blocks_); }

private:
    /// Several parts of a file may use the same compressed blocks.
    void addPacked(std::uint64_t start, std::int64_t bytes) {
        const auto [known, isNew] = packed_.try_emplace(start, blocks_.places.size());
        if (isNew)
            blocks_.places.push_back({start, bytes, true});
        else
            blocks_.places[known->second].bytes += bytes;
    }

    SharedBlocks blocks_;
    std::unordered_map<std::uint64_t, std::size_t> packed_; ///< the positions of compressed blocks, by start
};

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
    const std::uint32_t type = fileSystemType(folder.descriptor());
    if (sharesExtents(type))
        return BlockSharing::told;
    // Deleting what is in the lower layer of an overlay frees nothing, and nobody knows what others do.
    return keepsBlocksApart(type) ? BlockSharing::never : BlockSharing::untold;
}

std::optional<SharedBlocks> sharedBlocksOf(const Folder &folder, const char *name,
                                           const StopFlag &cancelled) {
    const Descriptor file(
        openat(folder.descriptor(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    BlockSums sums(fileSystemType(file.number()) == BTRFS_SUPER_MAGIC ? longestBtrfsExtent : 0);
    const bool isTold = forEachExtent(file.number(), [&](const fiemap_extent &extent) {
        sums.add(extent);
        return !cancelled.isSet();
    });
    return isTold && !cancelled.isSet() ? std::optional(sums.take()) : std::nullopt;
}

SnapshottedFolder snapshottedFolderOf(const std::string &folder, const StopFlag &cancelled) {
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
            for (BtrfsSnapshot &one : btrfsSnapshotsIn(mount.point, cancelled)) {
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
