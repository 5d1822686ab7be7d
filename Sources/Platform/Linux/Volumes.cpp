#include "Platform/Volumes.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Linux/BlockDevice.h"
#include "Platform/Linux/DistantCapacity.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/VolumeName.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string_view>
#include <sys/statvfs.h>

namespace brimvale {

namespace {

/// Tells which mounts may not answer: another program or machine serves them, or the path to them leads
/// through such a mount. The file system at "/" always answers, because the program runs from it.
class Distance {
public:
    explicit Distance(const std::vector<Mount> &mounts) {
        for (const Mount &mount : mounts)
            if (mount.point != "/" && storageKind(mount) == StorageKind::distant)
                points_.push_back(mount.point);
    }

    [[nodiscard]] bool isDistant(const Mount &mount) const {
        return std::any_of(points_.begin(), points_.end(),
                           [&](const std::string &point) { return isAtOrUnder(mount.point, point); });
    }

private:
    std::vector<std::string> points_;
};

/// In a container, single files of the host's disk are mounted.
bool isSingleFile(const Mount &mount) {
    if (mount.root == "/" || storageKind(mount) != StorageKind::local)
        return false;
    const std::optional<FileStatus> status = fileStatus(mount.point);
    return status && status->kind != FileKind::directory;
}

std::optional<Capacity> localCapacity(const Mount &mount) {
    struct statvfs figures {};
    if (statvfs(mount.point.c_str(), &figures) != 0)
        return std::nullopt;
    return capacityOf(figures.f_frsize, figures.f_blocks, figures.f_bfree, figures.f_bavail);
}

/// A pool of ZFS has many file systems, each of which reports its own use and the room that they share.
std::optional<Capacity> capacityOfPool(const std::string &pool, const std::vector<Mount> &mounts) {
    Capacity sum;
    std::set<std::string> counted;
    for (const Mount &mount : mounts) {
        const bool isSnapshot = mount.source.find('@') != std::string::npos;
        if (poolOf(mount) != pool || isSnapshot || !counted.insert(mount.device).second)
            continue;
        const std::optional<Capacity> capacity = localCapacity(mount);
        if (!capacity || __builtin_add_overflow(sum.total, capacity->total - capacity->available, &sum.total))
            return std::nullopt;
        sum.available = std::max(sum.available, capacity->available);
    }
    if (__builtin_add_overflow(sum.total, sum.available, &sum.total))
        return std::nullopt;
    return sum;
}

/// The parts that the computer starts from, and what programs for containers mount for themselves. File
/// managers show neither.
bool isForSystemOnly(const Mount &mount) {
    constexpr std::array<std::string_view, 4> startPoints = {"/boot", "/boot/efi", "/boot/firmware", "/efi"};
    constexpr std::array<std::string_view, 5> stores = {"/var/lib/docker/", "/var/lib/containers/",
                                                        "/var/lib/containerd/", "/var/lib/kubelet/",
                                                        "/run/containerd/"};
    const auto isFirmwarePart = [&] {
        return mount.type == "vfat" &&
               std::find(startPoints.begin(), startPoints.end(), mount.point) != startPoints.end();
    };
    return isFirmwarePart() || std::any_of(stores.begin(), stores.end(), [&](std::string_view store) {
               return mount.point.starts_with(store);
           });
}

std::string typeOf(const Mount &mount) {
    constexpr std::string_view served = "fuse.";
    return mount.type.starts_with(served) ? mount.type.substr(served.size()) : mount.type;
}

/// The device of the file system that holds the user's files where "/" is only an image of the system; else
/// the one of "/".
std::string rootDevice(const std::vector<Mount> &mounts) {
    const Mount *root = mountAt(mounts, "/");
    const bool isImage = root != nullptr && root->type == "overlay" && root->source == "composefs";
    const Mount *chosen = isImage ? mountAt(mounts, "/sysroot") : root;
    return chosen != nullptr ? chosen->device : "";
}

MountedVolume volumeOf(const Mount &mount, const std::optional<Capacity> &capacity) {
    MountedVolume volume{.url = FileURL(mount.point)};
    if (capacity) {
        volume.totalCapacity = capacity->total;
        volume.available = capacity->available;
        volume.reserved = capacity->reserved;
        // Linux keeps nothing here that it would purge on demand.
        volume.availableForImportantUsage = capacity->available;
    }
    if (storageKind(mount) != StorageKind::none) {
        volume.fileSystem = typeOf(mount);
        volume.device = mount.type == "zfs" ? poolOf(mount) : mount.source;
    }
    volume.name = volumeName(mount);
    if (const auto folder = deviceFolderOf(mount, "/"))
        volume.isInternal = isInternalDevice(*folder);
    volume.isBrowsable = !isForSystemOnly(mount);
    return volume;
}

} // namespace

std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience, const Tools &tools) {
    std::vector<Mount> mounts = currentMounts();
    const Distance distance(mounts);
    const auto isDistant = [&](const Mount &mount) { return distance.isDistant(mount); };
    std::erase_if(mounts, [&](const Mount &mount) { return !isDistant(mount) && isSingleFile(mount); });
    const std::string ofRoot = rootDevice(mounts);
    const std::vector<Mount> shown = storageMounts(mounts);
    std::vector<Mount> distant;
    std::copy_if(shown.begin(), shown.end(), std::back_inserter(distant), isDistant);
    const std::vector<std::optional<Capacity>> answers = distantCapacities(distant, patience, tools);

    std::vector<MountedVolume> volumes;
    auto answer = answers.begin();
    for (const Mount &mount : shown) {
        const auto capacity = isDistant(mount)      ? *answer++
                              : mount.type == "zfs" ? capacityOfPool(poolOf(mount), mounts)
                                                    : localCapacity(mount);
        volumes.push_back(volumeOf(mount, capacity));
        volumes.back().isRootFileSystem = mount.device == ofRoot;
        if (mount.point == "/" && mount.device != ofRoot)
            volumes.back().isBrowsable = false; // an image without space of its own
    }
    return volumes;
}

} // namespace brimvale
