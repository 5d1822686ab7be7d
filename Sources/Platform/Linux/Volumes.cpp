#include "Platform/Volumes.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Linux/BlockDevice.h"
#include "Platform/Linux/DistantCapacity.h"
#include "Platform/Linux/MountTable.h"

#include <algorithm>
#include <iterator>
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

MountedVolume volumeOf(const Mount &mount, const std::optional<Capacity> &capacity) {
    MountedVolume volume{.url = FileURL(mount.point)};
    if (capacity) {
        volume.totalCapacity = capacity->total;
        volume.available = capacity->available;
        volume.reserved = capacity->reserved;
        // Linux keeps nothing here that it would purge on demand.
        volume.availableForImportantUsage = capacity->available;
    }
    if (mount.source.starts_with("/dev/")) {
        volume.name = labelOf(mount.source);
        volume.isInternal = isInternalDevice(mount.source);
    }
    volume.isRootFileSystem = mount.point == "/";
    return volume;
}

} // namespace

std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience, const Tools &tools) {
    std::vector<Mount> mounts = currentMounts();
    const Distance distance(mounts);
    const auto isDistant = [&](const Mount &mount) { return distance.isDistant(mount); };
    std::erase_if(mounts, [&](const Mount &mount) { return !isDistant(mount) && isSingleFile(mount); });
    mounts = storageMounts(mounts);
    std::vector<Mount> distant;
    std::copy_if(mounts.begin(), mounts.end(), std::back_inserter(distant), isDistant);
    const std::vector<std::optional<Capacity>> answers = distantCapacities(distant, patience, tools);

    std::vector<MountedVolume> volumes;
    auto answer = answers.begin();
    for (const Mount &mount : mounts)
        volumes.push_back(volumeOf(mount, isDistant(mount) ? *answer++ : localCapacity(mount)));
    return volumes;
}

} // namespace brimvale
