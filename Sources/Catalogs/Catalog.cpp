#include "Catalogs/Catalog.h"

#include "Catalogs/Linux/Catalog.h"
#include "Catalogs/macOS/Catalog.h"

namespace brimvale {

const Catalog &catalogOf(System system) {
    return system == System::macOS ? macOSCatalog::catalog() : linuxCatalog::catalog();
}

const Words &Words::current() {
    return catalogOf(Host::currentSystem()).words;
}

} // namespace brimvale
