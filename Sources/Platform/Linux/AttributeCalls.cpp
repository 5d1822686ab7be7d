#include "Platform/Posix/AttributeCalls.h"

#include <sys/xattr.h>

namespace brimvale {

ssize_t listAttributes(const char *path, char *buffer, std::size_t size) {
    return llistxattr(path, buffer, size);
}

ssize_t readAttribute(const char *path, const char *name, char *buffer, std::size_t size) {
    return lgetxattr(path, name, buffer, size);
}

bool belongsToSystem(std::string_view name) {
    return name == "security.selinux"; // says where a file is, not what it is
}

} // namespace brimvale
