#include "Catalogs/SkippedPaths.h"

namespace brimvale {

std::vector<std::string> skippedPaths(const Host &host) {
    return host.system == System::macOS ? macOSCatalog::skippedPaths() : linuxCatalog::skippedPaths();
}

std::vector<std::string> cloudProviderRoots(const Host &host) {
    return host.system == System::macOS ? macOSCatalog::cloudProviderRoots(host.home)
                                        : linuxCatalog::cloudProviderRoots(host.home);
}

} // namespace brimvale
