#include "Platform/Posix/OwnTrash.h"

#include "Platform/Folder.h"
#include "Platform/Host.h"
#include "Platform/Posix/OpenFile.h"

#include <string>
#include <unistd.h>

namespace brimvale {

/// The Trash of a volume other than that of the home folder is ".Trashes/UID" at its top.
bool isOwnTrash(const Folder &folder) {
    const std::string path = pathOf(folder.descriptor());
    return path == accountHome().appending(".Trash").path() ||
           path.ends_with("/.Trashes/" + std::to_string(geteuid()));
}

} // namespace brimvale
