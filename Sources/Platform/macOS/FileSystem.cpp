#include "Platform/FileSystem.h"

#include <unistd.h>

namespace brimvale {

void syncFileSystem(const std::string &path) {
    // sync only starts writing, but some network volumes support nothing else.
    if (sync_volume_np(path.c_str(), SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT) != 0)
        sync();
}

void writeOut(const std::string &, const StopFlag &) {}

bool copiesShareBlocks(const std::string &, const std::string &) {
    return false; // ditto does not promise to clone
}

} // namespace brimvale
