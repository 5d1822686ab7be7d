#include "Platform/FileAccess.h"

#include "Platform/Folder.h"
#include "Platform/Posix/ShortPath.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace brimvale {

bool itemExists(const std::string &path) {
    return withShortPath(path, [](int enclosing, const char *rest) {
               return faccessat(enclosing, rest, F_OK, 0);
           }) == 0;
}

bool isReportedReadable(const std::string &path) {
    return withShortPath(path, [](int enclosing, const char *rest) {
               return faccessat(enclosing, rest, R_OK, 0);
           }) == 0;
}

bool opensForReading(const std::string &path) {
    const int descriptor = withShortPath(path, [](int enclosing, const char *rest) {
        return openat(enclosing, rest, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    });
    if (descriptor < 0)
        return false;
    ::close(descriptor);
    return true;
}

bool canListContents(const std::string &path) {
    Folder folder = Folder::at(path, Folder::Links::follow);
    return folder.isOpen() && (folder.nextName() != nullptr || errno == 0);
}

} // namespace brimvale
