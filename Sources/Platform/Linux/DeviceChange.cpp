#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <fcntl.h>
#include <iterator>
#include <linux/btrfs.h>
#include <optional>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

/// The mount with an entry of an open folder, or with an empty name that with the folder itself. Nothing
/// where the kernel does not tell (Linux before 5.8).
std::optional<std::uint64_t> mountNumberOf(const Folder &folder, const char *name) {
    struct statx status {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH;
    const bool isKnown = statx(folder.descriptor(), name, flags, STATX_MNT_ID, &status) == 0 &&
                         (status.stx_mask & STATX_MNT_ID) != 0;
    return isKnown ? std::optional<std::uint64_t>(status.stx_mnt_id) : std::nullopt;
}

bool isSnapshot(const Folder &subvolume) {
    btrfs_ioctl_get_subvol_info_args info{};
    if (!subvolume.isOpen() || ioctl(subvolume.descriptor(), BTRFS_IOC_GET_SUBVOL_INFO, &info) < 0)
        return false;
    const bool isCopy = std::any_of(std::begin(info.parent_uuid), std::end(info.parent_uuid),
                                    [](auto byte) { return byte != 0; });
    constexpr std::uint64_t readOnly = 1; // BTRFS_ROOT_SUBVOL_RDONLY of its root item
    return isCopy && (info.flags & readOnly) != 0;
}

} // namespace

SubfolderKind kindOnOtherDevice(const Folder &parent, const char *name) {
    const std::optional<std::uint64_t> mount = mountNumberOf(parent, name);
    if (!mount || mount != mountNumberOf(parent, ""))
        return SubfolderKind::otherVolume;
    return isSnapshot(parent.subfolder(name)) ? SubfolderKind::snapshot : SubfolderKind::walkable;
}

} // namespace brimvale
