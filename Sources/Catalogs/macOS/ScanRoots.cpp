#include "Catalogs/ScanRoots.h"

namespace brimvale::macOSCatalog {

const std::vector<ScanRoot> &scanRoots() {
    static const std::vector<ScanRoot> roots = {
        {"Home folder", "~"},
        {"Applications", "/Applications"},
        {"User Library", "~/Library"},
        {"System Library", "/Library"},
        {"Whole data volume", "/System/Volumes/Data"},
        {"System volume", "/"},
    };
    return roots;
}

} // namespace brimvale::macOSCatalog
