#include "Catalogs/AccessProbes.h"

namespace brimvale::macOSCatalog {

AccessProbes accessProbes(const FileURL &home) {
    // The privacy databases, the system's and the user's, are themselves what the permission protects.
    const FileURL database("/Library/Application Support/com.apple.TCC/TCC.db");
    return {.files = {database, home.appending(database.path().substr(1))},
            .folder = home.appending("Library/Messages")};
}

} // namespace brimvale::macOSCatalog
