#include "Catalogs/ScanRoots.h"

namespace brimvale {

const std::vector<ScanRoot> &scanRoots(System system) {
    return system == System::macOS ? macOSCatalog::scanRoots() : linuxCatalog::scanRoots();
}

} // namespace brimvale
