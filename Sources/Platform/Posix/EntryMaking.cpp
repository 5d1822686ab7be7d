#include "Platform/EntryMaking.h"

#include "Platform/EntryRecord.h"
#include "Platform/FileReader.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

timespec timeOf(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    timespec time{};
    time.tv_sec = static_cast<std::time_t>(seconds.time_since_epoch().count());
    time.tv_nsec = static_cast<long>((date - seconds).count());
    return time;
}

} // namespace

std::optional<FileError> makePrivateFolder(const std::string &path) {
    return mkdir(path.c_str(), 0700) == 0 ? std::nullopt : std::optional(FileError::posix(errno));
}

std::optional<FileError> copyLink(const std::string &link, const std::string &place) {
    const std::optional<std::string> target = linkTarget(link);
    struct stat record {};
    const std::optional<EntryRecord> original = entryRecord(link);
    if (!target || !original || lstat(link.c_str(), &record) != 0 ||
        symlink(target->c_str(), place.c_str()) != 0)
        return FileError::posix(errno);
    static_cast<void>(lchown(place.c_str(), record.st_uid, record.st_gid) == 0);
    const std::array<timespec, 2> times = {timeOf(original->modified), timeOf(original->modified)};
    utimensat(AT_FDCWD, place.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
    return std::nullopt;
}

} // namespace brimvale
