#include "Platform/Linux/MountTable.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <sstream>
#include <unordered_map>

namespace brimvale {

namespace {

/// Network file systems, shares from the host of a virtual machine, and programs that serve storage (FUSE).
/// Most FUSE programs serve no storage, so those that do are listed.
constexpr std::array<std::string_view, 30> distantTypes = {"9p",
                                                           "afs",
                                                           "beegfs",
                                                           "ceph",
                                                           "cifs",
                                                           "davfs",
                                                           "fuse",
                                                           "fuse.ceph",
                                                           "fuse.ceph-fuse",
                                                           "fuse.curlftpfs",
                                                           "fuse.davfs",
                                                           "fuse.davfs2",
                                                           "fuse.gcsfuse",
                                                           "fuse.glusterfs",
                                                           "fuse.mergerfs",
                                                           "fuse.rclone",
                                                           "fuse.s3fs",
                                                           "fuse.sshfs",
                                                           "fuse.vmhgfs-fuse",
                                                           "fuseblk",
                                                           "glusterfs",
                                                           "gpfs",
                                                           "lustre",
                                                           "ncpfs",
                                                           "nfs",
                                                           "nfs4",
                                                           "smb3",
                                                           "smbfs",
                                                           "vboxsf",
                                                           "virtiofs"};

/// Local storage whose source is no block device.
constexpr std::array<std::string_view, 2> pooledTypes = {"zfs", "bcachefs"};

bool contains(const auto &types, std::string_view type) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

std::optional<Mount> mountOf(const std::string &line) {
    std::istringstream fields(line);
    Mount mount;
    std::string options;
    if (!(fields >> mount.id >> mount.parent >> mount.device >> mount.root >> mount.point >> options))
        return std::nullopt;
    // Optional fields follow, up to a hyphen.
    std::string field;
    while (fields >> field && field != "-") {
    }
    if (!(fields >> mount.type))
        return std::nullopt;
    fields >> mount.source;
    mount.options = line.substr(line.rfind(' ') + 1); // the last field, also where the source is empty
    mount.root = decodedField(mount.root);
    mount.point = decodedField(mount.point);
    mount.source = decodedField(mount.source);
    return mount.point.starts_with('/') ? std::optional(std::move(mount)) : std::nullopt;
}

bool isStrictlyBelow(const std::string &path, const std::string &folder) {
    return path.size() > folder.size() && isAtOrUnder(path, folder);
}

/// The path at or inside `from`, at the same place inside `to`.
std::string moved(const std::string &path, const std::string &from, const std::string &to) {
    if (path.size() == from.size())
        return to;
    return joinPath(to, std::string_view(path).substr(from == "/" ? 1 : from.size() + 1));
}

/// Image-based systems, containers and snaps show all of a disk there, and parts of it at their own places:
/// /var of an ostree system is also a folder in /sysroot. NixOS often keeps users' data in /nix. These parts
/// are judged by their own places.
bool showsWholeSystem(const std::string &point) {
    return point == "/nix" || isAtOrUnder(point, "/sysroot") || isAtOrUnder(point, "/run/host") ||
           isAtOrUnder(point, "/var/lib/snapd/hostfs");
}

/// The order of the table does not help, because mounts may have been moved. But each mount names its parent
/// mount.
class Visibility {
public:
    explicit Visibility(const std::vector<Mount> &mounts) {
        for (const Mount &mount : mounts) {
            byId_[mount.id] = &mount;
            if (mount.parent != mount.id)
                inside_[mount.parent].push_back(&mount);
        }
    }

    [[nodiscard]] bool isHidden(const Mount &mount) const {
        if (const auto inside = inside_.find(mount.id); inside != inside_.end())
            for (const Mount *other : inside->second)
                if (other->point == mount.point)
                    return true;
        return isBehindAnother(mount);
    }

private:
    /// Whether the path to the mount point leads into another mount.
    [[nodiscard]] bool isBehindAnother(const Mount &mount) const {
        const Mount *inner = &mount;
        for (std::size_t steps = 0; steps < byId_.size(); ++steps) {
            const auto parent = byId_.find(inner->parent);
            if (parent == byId_.end() || parent->second == inner)
                return false;
            for (const Mount *other : inside_.at(inner->parent))
                if (other != inner && isStrictlyBelow(inner->point, other->point))
                    return true;
            inner = parent->second;
        }
        return false;
    }

    std::unordered_map<int, const Mount *> byId_;
    std::unordered_map<int, std::vector<const Mount *>> inside_;
};

} // namespace

std::string decodedField(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const std::string_view digits = field.substr(i + 1, 3);
        const bool isEscape = field[i] == '\\' && digits.size() == 3 &&
                              digits.find_first_not_of("01234567") == std::string_view::npos;
        if (!isEscape) {
            text.push_back(field[i]);
            continue;
        }
        text.push_back(static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0')));
        i += digits.size();
    }
    return text;
}

std::vector<Mount> mountsIn(std::string_view table) {
    std::vector<Mount> all;
    std::istringstream lines{std::string(table)};
    for (std::string line; std::getline(lines, line);)
        if (std::optional<Mount> mount = mountOf(line))
            all.push_back(*std::move(mount));
    const Visibility visibility(all);
    std::vector<Mount> visible;
    std::copy_if(all.begin(), all.end(), std::back_inserter(visible),
                 [&](const Mount &mount) { return !visibility.isHidden(mount); });
    return visible;
}

const Mount *mountAt(const std::vector<Mount> &mounts, const std::string &path) {
    const Mount *deepest = nullptr;
    for (const Mount &mount : mounts)
        if (isAtOrUnder(path, mount.point) &&
            (deepest == nullptr || mount.point.size() > deepest->point.size()))
            deepest = &mount;
    return deepest;
}

std::vector<std::string> widerPathsOf(const std::vector<Mount> &mounts, const std::string &path) {
    const Mount *own = mountAt(mounts, path);
    if (own == nullptr)
        return {};
    const std::string inFileSystem = moved(path, own->point, own->root);
    std::vector<std::string> paths;
    for (const Mount &other : mounts)
        if (other.device == own->device && isStrictlyBelow(own->root, other.root) &&
            !showsWholeSystem(other.point))
            paths.push_back(moved(inFileSystem, other.root, other.point));
    return paths;
}

std::vector<Mount> currentMounts() {
    return mountsIn(contentsOfFile("/proc/self/mountinfo", longestMountTable).value_or(""));
}

StorageKind storageKind(const Mount &mount) {
    if (contains(distantTypes, mount.type))
        return StorageKind::distant;
    if (mount.type == "squashfs")
        return StorageKind::none;
    if (contains(pooledTypes, mount.type))
        return StorageKind::local;
    if (!mount.source.starts_with("/dev/"))
        return StorageKind::none;
    // A disk that a program reads for the kernel answers only while that program does.
    return mount.type.starts_with("fuse.") ? StorageKind::distant : StorageKind::local;
}

std::string poolOf(const Mount &mount) {
    return mount.type == "zfs" ? mount.source.substr(0, mount.source.find_first_of("/@")) : "";
}

bool hasSharedBlocks(const Mount &mount) {
    constexpr std::array<std::string_view, 4> types = {"btrfs", "xfs", "zfs", "bcachefs"};
    return contains(types, mount.type);
}

std::optional<UnwalkedMount> kindOfUnwalked(const Mount &mount) {
    constexpr std::array<std::string_view, 6> containers = {"/run",
                                                            "/var/lib/docker",
                                                            "/var/lib/containerd",
                                                            "/var/lib/containers",
                                                            "/var/lib/kubelet",
                                                            "/var/lib/rancher"};
    if (mount.type == "fuseblk")
        return std::nullopt;
    if (mount.type == "fuse" || mount.type.starts_with("fuse."))
        return UnwalkedMount::program;
    if (contains(distantTypes, mount.type))
        return UnwalkedMount::otherMachine;
    if (mount.type == "squashfs")
        return UnwalkedMount::image;
    // The stores of ordinary users are in their homes.
    const bool isOfContainer =
        std::any_of(containers.begin(), containers.end(),
                    [&](std::string_view store) { return isAtOrUnder(mount.point, store); }) ||
        mount.point.find("/containers/storage/") != std::string::npos ||
        mount.point.find("/share/docker/") != std::string::npos;
    const bool isView = mount.type == "overlay" || mount.type == "nsfs";
    return isView && isOfContainer ? std::optional(UnwalkedMount::container) : std::nullopt;
}

std::vector<Mount> storageMounts(const std::vector<Mount> &mounts) {
    // Smaller is better: "/", then what shows the whole device or pool.
    const auto rank = [](const Mount &mount) {
        if (mount.point == "/")
            return std::ptrdiff_t{0};
        if (mount.type != "zfs")
            return std::ptrdiff_t{mount.root == "/" ? 1 : 2};
        return 1 + std::count_if(mount.source.begin(), mount.source.end(),
                                 [](char sign) { return sign == '/' || sign == '@'; });
    };
    const auto shareSpace = [](const Mount &a, const Mount &b) {
        return a.device == b.device || (a.type == "zfs" && poolOf(a) == poolOf(b));
    };
    std::vector<Mount> chosen;
    for (const Mount &mount : mounts) {
        if (mount.point != "/" && storageKind(mount) == StorageKind::none)
            continue;
        const auto same = std::find_if(chosen.begin(), chosen.end(),
                                       [&](const Mount &other) { return shareSpace(mount, other); });
        if (same == chosen.end())
            chosen.push_back(mount);
        else if (rank(mount) < rank(*same))
            *same = mount;
    }
    return chosen;
}

} // namespace brimvale
