#include "Catalogs/ScanRoots.h"

namespace brimvale::linuxCatalog {

const std::vector<ScanRoot> &scanRoots() {
    static const std::vector<ScanRoot> roots = {
        {"Home folder", "~"}, {"Applications", "/opt"},  {"User data", "~/.local/share"},
        {"System", "/usr"},   {"Variable data", "/var"}, {"Whole system", "/"},
    };
    return roots;
}

} // namespace brimvale::linuxCatalog
