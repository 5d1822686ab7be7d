#include "Catalogs/CleanupTargets.h"

namespace brimvale {

// Other systems have no list of their own yet.
std::vector<CleanupTarget> cleanupTargets(const Host &host) {
    return macOSCatalog::cleanupTargets(host.home);
}

} // namespace brimvale
