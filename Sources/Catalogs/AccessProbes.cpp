#include "Catalogs/AccessProbes.h"

namespace brimvale {

std::optional<AccessProbes> accessProbes(const Host &host) {
    return host.system == System::macOS ? std::optional(macOSCatalog::accessProbes(host.home)) : std::nullopt;
}

} // namespace brimvale
