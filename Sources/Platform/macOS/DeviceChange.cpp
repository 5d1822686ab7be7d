#include "Platform/DirectoryWalk.h"

namespace brimvale {

SubfolderKind kindOnOtherDevice(const Folder & /*parent*/, const char * /*name*/) {
    return SubfolderKind::otherVolume;
}

} // namespace brimvale
