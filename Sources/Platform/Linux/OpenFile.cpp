#include "Platform/Posix/OpenFile.h"

#include "Platform/Linux/FileSystemTypes.h"
#include "Platform/OpenedItem.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>

namespace brimvale {

int passThroughFlags() {
    return O_PATH | O_DIRECTORY | O_CLOEXEC;
}

std::string pathOf(int file) {
    std::error_code error;
    const std::filesystem::path link = "/proc/self/fd/" + std::to_string(file);
    std::string path = std::filesystem::read_symlink(link, error).native();
    return !error && path.starts_with('/') ? path : std::string();
}

std::optional<ItemIdentity> identityOfEntry(int folder, const char *name) {
    const std::uint32_t type =
        fileSystemType(folder); // first, so nothing lies between a comparison and its use
    struct statx record {};
    if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_BTIME, &record) != 0)
        return std::nullopt;
    ItemIdentity identity{.file = {makedev(record.stx_dev_major, record.stx_dev_minor), record.stx_ino},
                          .isFolder = S_ISDIR(record.stx_mode)};
    if ((record.stx_mask & STATX_BTIME) != 0 && !givesCopiesNewTimes(type))
        identity.created = nanosecondsOf(record.stx_btime.tv_sec, record.stx_btime.tv_nsec);
    if (!keepsFileNumbers(type))
        identity.details = {static_cast<std::int64_t>(record.stx_size),
                            nanosecondsOf(record.stx_mtime.tv_sec, record.stx_mtime.tv_nsec)};
    return identity;
}

void readFromDisk(int descriptor, std::int64_t start, std::int64_t count) {
    posix_fadvise(descriptor, start, count, POSIX_FADV_DONTNEED);
}

int openWithoutTrace(int folder, const char *name) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int file = openat(folder, name, flags | O_NOATIME);
    // Only the owner of a file may leave its date alone.
    return file >= 0 || errno != EPERM ? file : openat(folder, name, flags);
}

ssize_t readWithoutTrace(int descriptor, std::span<char> buffer, std::int64_t offset) {
    const iovec part{buffer.data(), buffer.size()};
    const ssize_t inMemory = preadv2(descriptor, &part, 1, offset, RWF_NOWAIT);
    if (inMemory == static_cast<ssize_t>(buffer.size()) || inMemory == 0)
        return inMemory;
    const std::size_t known = static_cast<std::size_t>(std::max<ssize_t>(inMemory, 0));
    const std::span<char> rest = buffer.subspan(known);
    const auto start = offset + static_cast<std::int64_t>(known);
    const ssize_t fromDisk = pread(descriptor, rest.data(), rest.size(), start);
    if (fromDisk > 0)
        posix_fadvise(descriptor, start, fromDisk, POSIX_FADV_DONTNEED);
    if (fromDisk < 0)
        return known > 0 ? inMemory : fromDisk;
    return static_cast<ssize_t>(known) + fromDisk;
}

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtim.tv_sec, record.st_mtim.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctim.tv_sec, record.st_ctim.tv_nsec);
}

} // namespace brimvale
