#include "Platform/FileStatus.h"

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

/// POSIX counts allocation in blocks of this many bytes (<sys/stat.h>, st_blocks).
constexpr std::int64_t blockSize = 512;

bool areBelieved(std::int64_t length, std::int64_t blocks) {
    return length >= 0 && length <= mostBelievedBytes && blocks >= 0 &&
           blocks <= mostBelievedBytes / blockSize;
}

} // namespace

FileStatus statusOf(const struct stat &record) {
    FileStatus status;
    status.kind = S_ISDIR(record.st_mode)   ? FileKind::directory
                  : S_ISREG(record.st_mode) ? FileKind::regularFile
                                            : FileKind::other;
    status.isDataless = isDataless(record);
    status.isMeasurable = areBelieved(record.st_size, record.st_blocks);
    if (status.isMeasurable) {
        status.allocatedBytes = record.st_blocks * blockSize;
        status.length = record.st_size;
    }
    status.linkCount = record.st_nlink;
    status.identity = {static_cast<std::uint32_t>(record.st_dev), record.st_ino};
    status.owner = record.st_uid;
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

std::optional<FileIdentity> folderIdentity(const std::string &path) {
    struct stat record {};
    const int result =
        withShortPath(path, [&](int parent, const char *rest) { return fstatat(parent, rest, &record, 0); });
    if (result != 0 || !S_ISDIR(record.st_mode))
        return std::nullopt;
    return statusOf(record).identity;
}

} // namespace brimvale
