#include "Platform/Mounts.h"

#include "Base/FileURL.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <string_view>

namespace brimvale {

namespace {

/// File system types without storage of their own (proc(5), filesystems(5)).
constexpr std::array<std::string_view, 22> pseudoTypes = {
    "autofs",     "binfmt_misc", "bpf",       "cgroup",    "cgroup2", "configfs", "debugfs", "devpts",
    "devtmpfs",   "efivarfs",    "fusectl",   "hugetlbfs", "mqueue",  "nsfs",     "proc",    "pstore",
    "rpc_pipefs", "securityfs",  "selinuxfs", "smackfs",   "sysfs",   "tracefs"};

} // namespace

std::vector<std::string> pseudoMountPoints() {
    std::vector<std::string> points;
    for (const Mount &mount : currentMounts())
        if (std::find(pseudoTypes.begin(), pseudoTypes.end(), mount.type) != pseudoTypes.end())
            points.push_back(mount.point);
    return points;
}

std::unordered_map<std::string, UnwalkedMount> unwalkedMounts(const std::string &home) {
    std::unordered_map<std::string, UnwalkedMount> unwalked;
    for (const Mount &mount : currentMounts())
        if (const std::optional<UnwalkedMount> kind = kindOfUnwalked(mount);
            kind && !isAtOrUnder(home, mount.point))
            unwalked.emplace(mount.point, *kind);
    return unwalked;
}

struct MountPoints::Table {
    Descriptor file;
    std::vector<Mount> mounts;
    bool isRead = false;

    /// Reads the table unless it is known and unchanged. The kernel reports a change of the mounts as an
    /// exceptional condition of the open table (proc_pid_mounts(5)).
    void refresh() {
        pollfd change{file.number(), POLLPRI, 0};
        if (isRead && file.isOpen() && poll(&change, 1, 0) == 0)
            return;
        mounts = currentMounts();
        isRead = true;
    }
};

MountPoints::MountPoints() : table_(std::make_unique<Table>()) {
    table_->file = Descriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
}

MountPoints::~MountPoints() = default;

bool MountPoints::areKnown() {
    table_->refresh();
    return !table_->mounts.empty();
}

std::optional<std::string> MountPoints::firstIn(const std::string &path) {
    table_->refresh();
    for (const Mount &mount : table_->mounts)
        if (isAtOrUnder(mount.point, path))
            return mount.point;
    return std::nullopt;
}

bool MountPoints::isMountPoint(const std::string &path) {
    table_->refresh();
    return std::any_of(table_->mounts.begin(), table_->mounts.end(),
                       [&](const Mount &mount) { return mount.point == path; });
}

std::vector<std::string> MountPoints::otherPathsOf(const std::string &path) {
    table_->refresh();
    return widerPathsOf(table_->mounts, path);
}

bool MountPoints::mayBlock(const std::string &path) {
    table_->refresh();
    const Mount *mount = mountAt(table_->mounts, path);
    return mount != nullptr && (storageKind(*mount) == StorageKind::distant || mount->type == "autofs" ||
                                mount->type.starts_with("fuse"));
}

} // namespace brimvale
