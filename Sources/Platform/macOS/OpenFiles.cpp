#include "Platform/OpenFiles.h"

namespace brimvale {

OpenFiles filesInUse(const StopFlag & /*cancelled*/) {
    return {};
}

} // namespace brimvale
