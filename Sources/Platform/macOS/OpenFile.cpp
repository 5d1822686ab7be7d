#include "Platform/Posix/OpenFile.h"

#include "Platform/Folder.h"
#include "Platform/OpenedItem.h"
#include "Platform/Posix/Status.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <string_view>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// FAT and exFAT number a file by its first block, which an empty one has not; servers may not tell numbers.
bool fileSystemKeepsNumbers(int folder) {
    constexpr std::array<std::string_view, 4> unstable = {"exfat", "msdos", "smbfs", "webdav"};
    struct statfs figures {};
    return fstatfs(folder, &figures) != 0 ||
           std::find(unstable.begin(), unstable.end(), figures.f_fstypename) == unstable.end();
}

} // namespace

int passThroughFlags() {
    return O_SEARCH | O_CLOEXEC;
}

std::string pathOf(int file) {
    std::array<char, MAXPATHLEN> path{};
    return fcntl(file, F_GETPATH, path.data()) == 0 ? std::string(path.data()) : std::string();
}

std::optional<ItemIdentity> identityOfEntry(int folder, const char *name) {
    struct stat record {};
    if (fstatat(folder, name, &record, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    const FileStatus status = statusOf(record);
    const timespec &created = record.st_birthtimespec;
    const timespec &modified = record.st_mtimespec;
    ItemIdentity identity{.file = status.identity,
                          .isFolder = status.kind == FileKind::directory,
                          .created = nanosecondsOf(created.tv_sec, created.tv_nsec)};
    if (!fileSystemKeepsNumbers(folder))
        identity.details = {record.st_size, nanosecondsOf(modified.tv_sec, modified.tv_nsec)};
    return identity;
}

bool keepsFileNumbers(const Folder &folder) {
    return fileSystemKeepsNumbers(folder.descriptor());
}

void readFromDisk(int descriptor, std::int64_t /*start*/, std::int64_t /*count*/) {
    fcntl(descriptor, F_NOCACHE, 1);
}

int openWithoutTrace(int folder, const char *name) {
    const int file = openat(folder, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file >= 0)
        fcntl(file, F_NOCACHE, 1);
    return file;
}

ssize_t readWithoutTrace(int descriptor, std::span<char> buffer, std::int64_t offset) {
    return pread(descriptor, buffer.data(), buffer.size(), offset);
}

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtimespec.tv_sec, record.st_mtimespec.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctimespec.tv_sec, record.st_ctimespec.tv_nsec);
}

} // namespace brimvale
