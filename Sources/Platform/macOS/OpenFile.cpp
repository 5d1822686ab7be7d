#include "Platform/Posix/OpenFile.h"

#include "Platform/OpenedItem.h"
#include "Platform/Posix/Status.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

int passThroughFlags() {
    return O_SEARCH | O_CLOEXEC;
}

std::optional<ItemIdentity> identityOfEntry(int folder, const char *name) {
    struct stat record {};
    if (fstatat(folder, name, &record, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    const FileStatus status = statusOf(record);
    const timespec &created = record.st_birthtimespec;
    return ItemIdentity{.file = status.identity,
                        .isFolder = status.kind == FileKind::directory,
                        .created = nanosecondsOf(created.tv_sec, created.tv_nsec)};
}

void readFromDisk(int descriptor, std::int64_t /*start*/, std::int64_t /*count*/) {
    fcntl(descriptor, F_NOCACHE, 1);
}

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtimespec.tv_sec, record.st_mtimespec.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctimespec.tv_sec, record.st_ctimespec.tv_nsec);
}

} // namespace brimvale
