#include "Platform/Posix/OpenFile.h"

#include "Platform/Linux/FileSystemTypes.h"
#include "Platform/OpenedItem.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>

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

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtim.tv_sec, record.st_mtim.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctim.tv_sec, record.st_ctim.tv_nsec);
}

} // namespace brimvale
