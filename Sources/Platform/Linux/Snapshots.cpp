#include "Platform/Snapshots.h"

#include "Base/FileURL.h"
#include "Platform/Linux/BtrfsSnapshots.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/Snapper.h"
#include "Platform/Linux/Timeshift.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

namespace brimvale {

namespace {

/// Whether a snapshot of Snapper is mounted, so that the computer runs from it.
bool isMounted(const std::string &path, const std::vector<Mount> &mounts) {
    const std::string end = path.substr(path.rfind("/.snapshots/"));
    return std::any_of(mounts.begin(), mounts.end(),
                       [&](const Mount &mount) { return mount.root.ends_with(end); });
}

/// The snapshots on one volume.
class Listing {
public:
    Listing(const std::vector<Mount> &all, const std::string &folder) : all_(all) {
        const Mount *own = mountAt(all, folder);
        if (own != nullptr && storageKind(*own) != StorageKind::distant) // a server has tools of its own
            device_ = own->device;
    }

    /// Lists those of the tools.
    void addTools(const Tools &tools) {
        const auto isHere = [this](const std::string &path) {
            const Mount *mount = mountAt(all_, path);
            return mount != nullptr && mount->device == device_;
        };
        snapper_ = snapperSnapshots(tools, isHere);
        std::erase_if(snapper_, [this](const SnapperSnapshot &one) { return isMounted(one.path, all_); });
        for (const Mount &mount : all_)
            if (mount.device == device_)
                for (VolumeSnapshot &one : timeshiftSnapshotsIn(mount.point, tools))
                    if (findTimeshift(one.name) == nullptr)
                        timeshift_.push_back(std::move(one));
    }

    /// Adds those of Btrfs that are of no tool, and gives the others the figures that the file system has.
    void addBtrfs() {
        std::vector<BtrfsSnapshot> found;
        for (const Mount &mount : all_)
            if (mount.device == device_ && mount.type == "btrfs")
                for (BtrfsSnapshot &one : btrfsSnapshotsIn(mount.point))
                    found.push_back(std::move(one));
        std::set<std::uint64_t> known; // a subvolume may be reached by several mounts
        for (const BtrfsSnapshot &one : found)
            if (!known.contains(one.subvolume) && isOfTool(one))
                known.insert(one.subvolume);
        for (BtrfsSnapshot &one : found)
            if (known.insert(one.subvolume).second)
                snapshots_.push_back({.name = std::move(one.path),
                                      .date = one.date,
                                      .tool = "Btrfs",
                                      .exclusiveBytes = one.exclusiveBytes});
    }

    [[nodiscard]] std::vector<VolumeSnapshot> all() && {
        for (SnapperSnapshot &one : snapper_)
            snapshots_.push_back(std::move(one.snapshot));
        std::move(timeshift_.begin(), timeshift_.end(), std::back_inserter(snapshots_));
        return std::move(snapshots_);
    }

private:
    bool isOfTool(const BtrfsSnapshot &found) {
        for (SnapperSnapshot &one : snapper_)
            if (one.path == found.path) {
                if (!one.snapshot.exclusiveBytes)
                    one.snapshot.exclusiveBytes = found.exclusiveBytes;
                return true;
            }
        VolumeSnapshot *one = findTimeshift(timeshiftNameOf(found.path));
        if (one != nullptr && found.exclusiveBytes) // there is one for the system and one for the homes
            one->exclusiveBytes = one->exclusiveBytes.value_or(0) + *found.exclusiveBytes;
        return one != nullptr;
    }

    VolumeSnapshot *findTimeshift(const std::string &name) {
        const auto found = std::find_if(timeshift_.begin(), timeshift_.end(),
                                        [&](const VolumeSnapshot &one) { return one.name == name; });
        return found == timeshift_.end() ? nullptr : &*found;
    }

    const std::vector<Mount> &all_;
    std::string device_;
    std::vector<SnapperSnapshot> snapper_;
    std::vector<VolumeSnapshot> timeshift_;
    std::vector<VolumeSnapshot> snapshots_;
};

} // namespace

std::vector<VolumeSnapshot> volumeSnapshots(const std::string &folder, const Tools &tools) {
    const std::vector<Mount> mounts = currentMounts();
    Listing listing(mounts, folder);
    listing.addTools(tools);
    listing.addBtrfs();
    return std::move(listing).all();
}

} // namespace brimvale
