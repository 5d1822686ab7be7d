#include "Platform/FileSystem.h"

#include <unistd.h>

namespace brimvale {

void syncFileSystem(const std::string &path) {
    // sync alone only begins to write, but is all there is for some network volumes.
    if (sync_volume_np(path.c_str(), SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT) != 0)
        sync();
}

bool copiesShareBlocks(const std::string &, const std::string &) {
    return false; // ditto does not promise to clone
}

} // namespace brimvale
