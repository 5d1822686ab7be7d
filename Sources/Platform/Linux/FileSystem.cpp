#include "Platform/FileSystem.h"

#include "Platform/FileStatus.h"
#include "Platform/Linux/MountTable.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <future>
#include <linux/btrfs.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

constexpr std::uint32_t zfsType = 0x2FC12FC1; // not in the kernel's header

/// The pool of the ZFS file system with this device; empty where none is mounted.
std::string poolWith(dev_t device) {
    const std::string name = std::to_string(major(device)) + ":" + std::to_string(minor(device));
    for (const Mount &mount : currentMounts())
        if (mount.device == name)
            return poolOf(mount);
    return {};
}

} // namespace

std::optional<std::int64_t> freeSpace(const std::string &path) {
    struct statvfs figures {};
    if (statvfs(path.c_str(), &figures) != 0)
        return std::nullopt;
    return static_cast<std::int64_t>(figures.f_bfree) * static_cast<std::int64_t>(figures.f_frsize);
}

std::string storageOf(const std::string &path) {
    struct statfs figures {};
    struct stat record {};
    if (statfs(path.c_str(), &figures) != 0 || stat(path.c_str(), &record) != 0)
        return {};
    const auto asText = [](const auto &value) {
        return std::string(reinterpret_cast<const char *>(&value), sizeof(value));
    };
    if (static_cast<std::uint32_t>(figures.f_type) == zfsType)
        if (const std::string pool = poolWith(record.st_dev); !pool.empty())
            return std::string("zfs ").append(pool);
    if (figures.f_type != BTRFS_SUPER_MAGIC)
        return asText(record.st_dev);
    // Every subvolume has a device of its own.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    btrfs_ioctl_fs_info_args system{};
    const bool isKnown = descriptor >= 0 && ioctl(descriptor, BTRFS_IOC_FS_INFO, &system) == 0;
    if (descriptor >= 0)
        close(descriptor);
    if (isKnown)
        return "btrfs " + asText(system.fsid);
    // A folder that the user may not open: the top of its file system may be open to all.
    const std::vector<Mount> mounts = currentMounts();
    const Mount *mount = mountAt(mounts, path);
    return mount != nullptr && mount->point != path && mount->type == "btrfs" ? storageOf(mount->point)
                                                                              : asText(record.st_dev);
}

// The kernel cannot be told to give up, so a thread that waits too long is left behind.
bool awaitFreeSpace(const std::string &path) {
    constexpr std::chrono::seconds patience{5};
    const std::vector<Mount> mounts = currentMounts();
    const Mount *mount = mountAt(mounts, path);
    if (mount == nullptr || !hasSharedBlocks(*mount))
        return true;
    std::packaged_task<void()> task([path] { syncFileSystem(path); });
    const std::future<void> done = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error &) {
        return false; // no thread could be started
    }
    return done.wait_for(patience) == std::future_status::ready;
}

bool mayShareBlocks(const std::vector<std::string> &paths) {
    const std::vector<Mount> mounts = currentMounts();
    return std::any_of(paths.begin(), paths.end(), [&](const std::string &path) {
        const Mount *mount = mountAt(mounts, path);
        return mount != nullptr && hasSharedBlocks(*mount);
    });
}

void syncFileSystem(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        sync(); // no permission to open it; write out everything instead
        return;
    }
    static_cast<void>(syncfs(descriptor));
    close(descriptor);
}

// The disk gets the next pieces while one is waited for.
void writeOut(const std::string &path, const StopFlag &cancelled) {
    constexpr off_t piece = 4 << 20;
    constexpr off_t ahead = 4 * piece;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    struct stat record {};
    if (descriptor >= 0 && fstat(descriptor, &record) == 0 && S_ISREG(record.st_mode) &&
        record.st_size > piece)
        for (off_t start = -ahead; start < record.st_size && !cancelled.isSet(); start += piece) {
            sync_file_range(descriptor, start + ahead, piece, SYNC_FILE_RANGE_WRITE);
            if (start >= 0)
                sync_file_range(descriptor, start, piece,
                                SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                    SYNC_FILE_RANGE_WAIT_AFTER);
        }
    if (descriptor >= 0)
        close(descriptor);
}

bool copiesShareBlocks(const std::string &source, const std::string &folder) {
    const auto from = fileStatus(source);
    const auto to = fileStatus(folder);
    if (!from || !to || from->identity.device != to->identity.device)
        return false;
    // Only the file system itself can answer for sure: try it with two unnamed files.
    const int first = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const int second = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const bool areCloned = first >= 0 && second >= 0 && ioctl(second, FICLONE, first) == 0;
    for (const int descriptor : {first, second})
        if (descriptor >= 0)
            close(descriptor);
    return areCloned;
}

} // namespace brimvale
