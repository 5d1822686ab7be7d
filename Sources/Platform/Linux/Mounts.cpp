#include "Platform/Mounts.h"

#include "Base/FileURL.h"
#include "Platform/Linux/MountTable.h"

#include <algorithm>
#include <array>
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

std::optional<std::string> mountPointIn(const std::string &path) {
    for (const Mount &mount : currentMounts())
        if (isAtOrUnder(mount.point, path))
            return mount.point;
    return std::nullopt;
}

} // namespace brimvale
