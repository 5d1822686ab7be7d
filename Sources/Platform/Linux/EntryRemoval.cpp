#include "Platform/Posix/EntryRemoval.h"

#include <cerrno>

namespace brimvale {

bool isFolderToEmpty(const Folder & /*folder*/, const char * /*name*/, int error) {
    return error == EISDIR;
}

} // namespace brimvale
