#include "Platform/Linux/BtrfsSnapshots.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <linux/btrfs.h>
#include <linux/btrfs_tree.h>
#include <string_view>
#include <sys/ioctl.h>

namespace brimvale {

namespace {

constexpr std::size_t mostSubvolumes = 100'000; // visited for one list

constexpr std::size_t longestQuotaFile = 4096; // of a file system, in bytes

/// A subvolume inside another, by its path from the folder that was asked.
struct Child {
    std::uint64_t subvolume;
    std::string path;
};

/// The subvolumes right inside the one that a folder is the top of. The system lists some at a time.
std::vector<Child> childrenOf(const Folder &folder) {
    std::vector<Child> children;
    btrfs_ioctl_get_subvol_rootref_args list{};
    while (true) {
        const int status = ioctl(folder.descriptor(), BTRFS_IOC_GET_SUBVOL_ROOTREF, &list);
        const bool hasMore = status != 0 && errno == EOVERFLOW;
        if (status != 0 && !hasMore)
            return children;
        for (std::size_t i = 0; i < list.num_items; ++i) {
            btrfs_ioctl_ino_lookup_user_args place{};
            place.dirid = list.rootref[i].dirid;
            place.treeid = list.rootref[i].treeid;
            if (ioctl(folder.descriptor(), BTRFS_IOC_INO_LOOKUP_USER, &place) == 0)
                children.push_back({list.rootref[i].treeid, std::string(place.path) + place.name});
        }
        if (!hasMore)
            return children;
    }
}

/// What the system knows of the subvolume that a folder is in. It answers 1 on success.
std::optional<btrfs_ioctl_get_subvol_info_args> subvolumeOf(const Folder &folder) {
    btrfs_ioctl_get_subvol_info_args info{};
    if (!folder.isOpen() || ioctl(folder.descriptor(), BTRFS_IOC_GET_SUBVOL_INFO, &info) < 0)
        return std::nullopt;
    return info;
}

bool isReadOnlySnapshot(const btrfs_ioctl_get_subvol_info_args &info) {
    const bool hasParent = std::any_of(std::begin(info.parent_uuid), std::end(info.parent_uuid),
                                       [](std::uint8_t byte) { return byte != 0; });
    return hasParent && (info.flags & BTRFS_ROOT_SUBVOL_RDONLY) != 0;
}

/// The kernel's folder for the quotas of a file system; empty where they are off, are being counted, or count
/// each block for the subvolume that wrote it, also if others share it.
std::string quotasOf(const Folder &folder) {
    btrfs_ioctl_fs_info_args system{};
    if (ioctl(folder.descriptor(), BTRFS_IOC_FS_INFO, &system) != 0)
        return "";
    std::string uuid;
    for (std::size_t i = 0; i < sizeof(system.fsid); ++i) {
        constexpr std::string_view digits = "0123456789abcdef";
        uuid += i == 4 || i == 6 || i == 8 || i == 10 ? "-" : "";
        uuid += {digits[system.fsid[i] >> 4], digits[system.fsid[i] & 15]};
    }
    std::string quotas = "/sys/fs/btrfs/" + uuid + "/qgroups";
    const auto valueOf = [&](const char *name) {
        return std::string(trimmed(contentsOfFile(joinPath(quotas, name), longestQuotaFile).value_or("")));
    };
    return valueOf("inconsistent") == "0" && valueOf("mode") != "squota" ? quotas : "";
}

std::optional<std::int64_t> exclusiveBytes(const std::string &quotas, std::uint64_t subvolume) {
    if (quotas.empty())
        return std::nullopt;
    const std::string file = joinPath(quotas, "0_" + std::to_string(subvolume) + "/exclusive");
    const std::string content = contentsOfFile(file, longestQuotaFile).value_or("");
    const std::string_view text = trimmed(content);
    std::int64_t bytes = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), bytes);
    return result.ec == std::errc() && bytes >= 0 ? std::optional(bytes) : std::nullopt;
}

} // namespace

std::vector<BtrfsSnapshot> btrfsSnapshotsIn(const std::string &mountPoint, const StopFlag &cancelled) {
    std::vector<BtrfsSnapshot> snapshots;
    const Folder top = Folder::at(mountPoint, Folder::Links::follow);
    const std::string quotas = top.isOpen() ? quotasOf(top) : "";
    std::vector<std::string> waiting = {mountPoint};
    for (std::size_t visited = 0; !waiting.empty() && visited < mostSubvolumes; ++visited) {
        const std::string parent = std::move(waiting.back());
        waiting.pop_back();
        const Folder folder = Folder::at(parent, Folder::Links::follow);
        for (const Child &child : folder.isOpen() ? childrenOf(folder) : std::vector<Child>()) {
            if (cancelled.isSet())
                return snapshots;
            std::string path = joinPath(parent, child.path);
            const auto info = subvolumeOf(Folder::at(path, Folder::Links::refuse));
            if (!info || info->treeid != child.subvolume) // something is mounted over it
                continue;
            if (!isReadOnlySnapshot(*info)) {
                waiting.push_back(std::move(path));
                continue;
            }
            const Date made(std::chrono::seconds(static_cast<std::int64_t>(info->otime.sec)));
            snapshots.push_back(
                {child.subvolume, std::move(path), made, exclusiveBytes(quotas, child.subvolume)});
        }
    }
    return snapshots;
}

} // namespace brimvale
