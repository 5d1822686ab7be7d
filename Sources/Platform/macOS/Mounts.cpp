#include "Platform/Mounts.h"

#include "Base/FileURL.h"
#include "Platform/macOS/MountTable.h"

#include <string_view>

namespace brimvale {

std::vector<std::string> pseudoMountPoints() {
    const MountTable table;
    std::vector<std::string> points;
    for (const struct statfs &mount : table.entries()) {
        const std::string_view type = mount.f_fstypename;
        if (type == "devfs" || type == "autofs")
            points.emplace_back(mount.f_mntonname);
    }
    return points;
}

std::unordered_map<std::string, UnwalkedMount> unwalkedMounts(const std::string & /*home*/) {
    return {};
}

struct MountPoints::Table {};

MountPoints::MountPoints() = default;
MountPoints::~MountPoints() = default;

bool MountPoints::areKnown() {
    return !MountTable().entries().empty();
}

std::optional<std::string> MountPoints::firstIn(const std::string &path) {
    const MountTable table;
    for (const struct statfs &mount : table.entries())
        if (isAtOrUnder(mount.f_mntonname, path))
            return mount.f_mntonname;
    return std::nullopt;
}

// The system mounts nothing on files.
bool MountPoints::isMountPoint(const std::string & /*path*/) {
    return false;
}

// The system has no bind mounts.
std::vector<std::string> MountPoints::otherPathsOf(const std::string & /*path*/) {
    return {};
}

bool MountPoints::mayBlock(const std::string &path) {
    const MountTable table;
    const struct statfs *deepest = nullptr;
    for (const struct statfs &mount : table.entries())
        if (isAtOrUnder(path, mount.f_mntonname) &&
            (deepest == nullptr ||
             std::string_view(mount.f_mntonname).size() > std::string_view(deepest->f_mntonname).size()))
            deepest = &mount;
    return deepest != nullptr &&
           ((deepest->f_flags & MNT_LOCAL) == 0 || std::string_view(deepest->f_fstypename) == "autofs");
}

} // namespace brimvale
