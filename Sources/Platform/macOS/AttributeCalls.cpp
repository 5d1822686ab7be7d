#include "Platform/Posix/AttributeCalls.h"

#include <sys/xattr.h>

namespace brimvale {

ssize_t listAttributes(const char *path, char *buffer, std::size_t size) {
    return listxattr(path, buffer, size, XATTR_NOFOLLOW);
}

ssize_t readAttribute(const char *path, const char *name, char *buffer, std::size_t size) {
    return getxattr(path, name, buffer, size, 0, XATTR_NOFOLLOW);
}

bool belongsToSystem(std::string_view name) {
    return name == "com.apple.provenance"; // tells which application made the file
}

} // namespace brimvale
