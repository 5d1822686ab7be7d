#include "Platform/Subvolumes.h"

#include "Base/FileURL.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <linux/btrfs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

namespace brimvale {

namespace {

bool isOnBtrfs(const Folder &folder) {
    struct statfs figures {};
    return fstatfs(folder.descriptor(), &figures) == 0 && figures.f_type == BTRFS_SUPER_MAGIC;
}

/// The path of a subvolume from an open ancestor folder. Nothing if it is elsewhere.
std::optional<std::string> pathFrom(const Folder &folder, std::uint64_t subvolume, std::uint64_t parent) {
    btrfs_ioctl_ino_lookup_user_args place{};
    place.dirid = parent;
    place.treeid = subvolume;
    if (ioctl(folder.descriptor(), BTRFS_IOC_INO_LOOKUP_USER, &place) != 0)
        return std::nullopt;
    // The path to its parent ends with a slash, or is empty.
    return std::string(place.path) + place.name;
}

/// The path, from the open folder, of a subvolume inside it. The system lists those of the whole subvolume
/// that the folder is in, some at a time, and notes in the list where to go on.
std::optional<std::string> subvolumeBelow(const Folder &folder) {
    btrfs_ioctl_get_subvol_rootref_args list{};
    while (true) {
        const int status = ioctl(folder.descriptor(), BTRFS_IOC_GET_SUBVOL_ROOTREF, &list);
        const bool hasMore = status != 0 && errno == EOVERFLOW;
        if (status != 0 && !hasMore)
            return std::nullopt;
        for (std::size_t i = 0; i < list.num_items; ++i)
            if (auto path = pathFrom(folder, list.rootref[i].treeid, list.rootref[i].dirid))
                return path;
        if (!hasMore)
            return std::nullopt;
    }
}

} // namespace

std::optional<std::string> subvolumeIn(const OpenedItem &item) {
    if (!item.isFolder() || !isOnBtrfs(item.folder()))
        return std::nullopt;
    if (item.identity().file.device != item.ancestors().back().device)
        return item.place().path();
    const Folder folder = item.folder().subfolder(item.name().c_str());
    if (folder.identity() != item.identity().file)
        return std::nullopt;
    const std::optional<std::string> path = subvolumeBelow(folder);
    return path ? std::optional(joinPath(item.place().path(), *path)) : std::nullopt;
}

} // namespace brimvale
