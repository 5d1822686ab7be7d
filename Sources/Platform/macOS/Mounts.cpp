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

} // namespace brimvale
