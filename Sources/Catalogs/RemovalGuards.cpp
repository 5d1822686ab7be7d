#include "Catalogs/RemovalGuards.h"

namespace brimvale {

GuardedPaths guardedPaths(const Host &host) {
    return host.system == System::macOS ? macOSCatalog::guardedPaths(host.home)
                                        : linuxCatalog::guardedPaths(host.home);
}

} // namespace brimvale
