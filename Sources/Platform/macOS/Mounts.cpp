#include "Platform/Mounts.h"

#include "Base/FileURL.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <sys/mount.h>

namespace brimvale {

namespace {

/// The mount table, without asking the file systems anything.
class MountTable {
public:
    MountTable() {
        struct statfs *entries = nullptr;
        const int count = getmntinfo_r_np(&entries, MNT_NOWAIT);
        memory_.reset(entries);
        if (count > 0)
            entries_ = {entries, static_cast<std::size_t>(count)};
    }
    [[nodiscard]] std::span<const struct statfs> entries() const { return entries_; }

private:
    struct Free {
        void operator()(struct statfs *memory) const { std::free(memory); }
    };
    std::unique_ptr<struct statfs, Free> memory_;
    std::span<const struct statfs> entries_;
};

} // namespace

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
