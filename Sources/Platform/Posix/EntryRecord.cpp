#include "Platform/EntryRecord.h"

#include "Platform/Folder.h"
#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/ShortPath.h"
#include "Platform/Posix/Status.h"

#include <sys/stat.h>

namespace brimvale {

namespace {

EntryKind kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return EntryKind::file;
    if (S_ISDIR(mode))
        return EntryKind::folder;
    if (S_ISLNK(mode))
        return EntryKind::link;
    if (S_ISFIFO(mode))
        return EntryKind::pipe;
    return S_ISSOCK(mode) ? EntryKind::socket : EntryKind::device;
}

std::optional<EntryRecord> recordAt(int folder, const char *name) {
    struct stat record {};
    if (fstatat(folder, name, &record, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return recordOf(record);
}

} // namespace

EntryRecord recordOf(const struct stat &record) {
    constexpr std::uint32_t modeBits = 07777;
    return {.kind = kindOf(record.st_mode),
            .permissions = record.st_mode & modeBits,
            .length = record.st_size,
            .modified = modificationDate(record),
            .touched = statusChangeDate(record),
            .identity = statusOf(record).identity};
}

std::optional<EntryRecord> entryRecord(const std::string &path) {
    std::optional<EntryRecord> found;
    withShortPath(path, [&](int parent, const char *rest) {
        found = recordAt(parent, rest);
        return found ? 0 : -1;
    });
    return found;
}

std::optional<EntryRecord> entryRecord(const Folder &folder, const char *name) {
    return recordAt(folder.descriptor(), name);
}

} // namespace brimvale
