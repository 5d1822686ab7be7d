#include "Platform/Posix/EntryRemoval.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

constexpr unsigned flagsAgainstRemoval =
    UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND | SF_NOUNLINK | SF_RESTRICTED;

bool mayChange(const struct stat &record) {
    return (record.st_flags & flagsAgainstRemoval) == 0;
}

} // namespace

/// The system has one error for a folder and for an entry whose flags keep it; a few file systems have
/// another one for folders. A folder with such flags, or in one, keeps its contents too: they would be lost
/// before the folder itself is refused.
bool isFolderToEmpty(const Folder &folder, const char *name, int error) {
    struct stat entry {};
    struct stat parent {};
    return (error == EPERM || error == EISDIR) &&
           fstatat(folder.descriptor(), name, &entry, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(entry.st_mode) &&
           mayChange(entry) && fstat(folder.descriptor(), &parent) == 0 && mayChange(parent);
}

} // namespace brimvale
