#include "Platform/Posix/EntryRemoval.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

constexpr unsigned flagsAgainstRemoval =
    UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND | SF_NOUNLINK | SF_RESTRICTED;

bool mayChange(const struct stat &record) {
    return (record.st_flags & flagsAgainstRemoval) == 0;
}

/// Whether the rule of sticky folders lets the user remove the entry: only its owner, the folder's owner and
/// the administrator may.
bool mayLeave(const struct stat &entry, const struct stat &parent) {
    const uid_t user = geteuid();
    return (parent.st_mode & S_ISVTX) == 0 || user == 0 || user == entry.st_uid || user == parent.st_uid;
}

} // namespace

/// The system has one error for a folder and for an entry whose flags keep it; a few file systems have
/// another one for folders. A folder with such flags, or in one, keeps its contents too: they would be lost
/// before the folder itself is refused. The same goes for a folder in a sticky one: the error does not tell
/// whether the system has looked at that yet.
bool isFolderToEmpty(const Folder &folder, const char *name, int error) {
    struct stat entry {};
    struct stat parent {};
    return (error == EPERM || error == EISDIR) &&
           fstatat(folder.descriptor(), name, &entry, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(entry.st_mode) &&
           mayChange(entry) && fstat(folder.descriptor(), &parent) == 0 && mayChange(parent) &&
           mayLeave(entry, parent);
}

} // namespace brimvale
