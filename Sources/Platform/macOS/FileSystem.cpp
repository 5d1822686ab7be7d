#include "Platform/FileSystem.h"

#include <string_view>
#include <sys/mount.h>
#include <sys/param.h>
#include <unistd.h>

namespace brimvale {

std::optional<std::int64_t> freeSpace(const std::string &path) {
    struct statfs figures {};
    if (statfs(path.c_str(), &figures) != 0)
        return std::nullopt;
    return static_cast<std::int64_t>(figures.f_bfree) * static_cast<std::int64_t>(figures.f_bsize);
}

// The volumes of a container, such as "/dev/disk3s1s1" and "/dev/disk3s5", have the name of its disk.
std::string storageOf(const std::string &path) {
    struct statfs figures {};
    if (statfs(path.c_str(), &figures) != 0)
        return {};
    const std::string device = figures.f_mntfromname;
    constexpr std::string_view disk = "/dev/disk";
    if (!device.starts_with(disk))
        return device;
    return std::string_view(figures.f_fstypename) == "apfs" ? device.substr(0, device.find('s', disk.size()))
                                                            : device;
}

bool awaitFreeSpace(const std::string & /*path*/) {
    return true;
}

bool mayShareBlocks(const std::vector<std::string> & /*paths*/) {
    return false;
}

void syncFileSystem(const std::string &path) {
    // sync only starts writing, but some network volumes support nothing else.
    if (sync_volume_np(path.c_str(), SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT) != 0)
        sync();
}

void writeOut(const std::string &, const StopFlag &) {}

bool copiesShareBlocks(const std::string &, const std::string &) {
    return false; // ditto does not promise to clone
}

} // namespace brimvale
