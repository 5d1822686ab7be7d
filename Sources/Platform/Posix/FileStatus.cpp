#include "Platform/FileStatus.h"

#include "Base/Bytes.h"
#include "Platform/Posix/ShortPath.h"
#include "Platform/Posix/Status.h"

#include <ctime>
#include <sys/stat.h>

namespace brimvale {

namespace {

std::optional<Date> modificationTime(const struct stat &record) {
    constexpr std::time_t farthest = 9'000'000'000; // as far as nanoseconds reach
    if (record.st_mtime < -farthest || record.st_mtime > farthest)
        return std::nullopt;
    return Date(std::chrono::seconds(record.st_mtime));
}

} // namespace

FileStatus statusOf(const struct stat &record) {
    FileStatus status;
    status.kind = S_ISDIR(record.st_mode)   ? FileKind::directory
                  : S_ISREG(record.st_mode) ? FileKind::regularFile
                                            : FileKind::other;
    status.isDataless = isDataless(record);
    status.allocatedBytes = bytesOfBlocks(record.st_blocks);
    status.length = record.st_size;
    status.linkCount = record.st_nlink;
    status.identity = {static_cast<std::uint64_t>(record.st_dev), record.st_ino};
    status.modified = modificationTime(record);
    return status;
}

std::optional<FileStatus> fileStatus(const std::string &path) {
    struct stat record {};
    const int result = withShortPath(path, [&](int parent, const char *rest) {
        return fstatat(parent, rest, &record, AT_SYMLINK_NOFOLLOW);
    });
    return result == 0 ? std::optional(statusOf(record)) : std::nullopt;
}

} // namespace brimvale
