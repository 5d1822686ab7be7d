#include "Platform/FileAccess.h"

#include "Platform/Folder.h"
#include "Platform/Posix/ShortPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

bool isReportedAccessible(const std::string &path, int access) {
    return withShortPath(path, [access](int parent, const char *rest) {
               return faccessat(parent, rest, access, 0);
           }) == 0;
}

} // namespace

bool itemExists(const std::string &path) {
    return isReportedAccessible(path, F_OK);
}

bool isReportedReadable(const std::string &path) {
    return isReportedAccessible(path, R_OK);
}

bool isReportedWritable(const std::string &path) {
    return isReportedAccessible(path, W_OK);
}

bool isReportedExecutable(const std::string &path) {
    return isReportedAccessible(path, X_OK);
}

bool opensForReading(const std::string &path) {
    const int descriptor = withShortPath(path, [](int parent, const char *rest) {
        return openat(parent, rest, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    });
    if (descriptor < 0)
        return false;
    ::close(descriptor);
    return true;
}

bool isOwnItem(const std::string &path) {
    struct stat status {};
    const int answer = withShortPath(path, [&status](int parent, const char *rest) {
        return fstatat(parent, rest, &status, AT_SYMLINK_NOFOLLOW);
    });
    return answer == 0 && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) && status.st_uid == geteuid();
}

bool canListContents(const std::string &path) {
    Folder folder = Folder::at(path, Folder::Links::follow);
    return folder.isOpen() && (folder.nextName() != nullptr || errno == 0);
}

} // namespace brimvale
