#include "Catalogs/SkippedPaths.h"

namespace brimvale::linuxCatalog {

std::vector<std::string> skippedPaths() {
    return {"/dev", "/proc", "/run", "/sys"};
}

std::vector<std::string> cloudProviderRoots(const FileURL & /*home*/) {
    // Cloud folders are either plain files that a client synchronises, or a FUSE mount, which a scan of the
    // enclosing folder does not enter.
    return {};
}

} // namespace brimvale::linuxCatalog
