#include "Platform/Mounts.h"

#include <algorithm>
#include <array>
#include <mntent.h>
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
    std::FILE *table = setmntent("/proc/self/mounts", "re");
    if (table == nullptr)
        return points;
    mntent entry{};
    std::array<char, 16384> line{};
    while (getmntent_r(table, &entry, line.data(), static_cast<int>(line.size())) != nullptr) {
        // What is mounted over another mount hides it, as a disk does the automount trigger that called it.
        std::erase(points, entry.mnt_dir);
        if (std::find(pseudoTypes.begin(), pseudoTypes.end(), entry.mnt_type) != pseudoTypes.end())
            points.emplace_back(entry.mnt_dir);
    }
    endmntent(table);
    return points;
}

} // namespace brimvale
