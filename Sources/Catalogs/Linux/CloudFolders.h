#pragma once

#include "Catalogs/Linux/Places.h"

#include <string>
#include <vector>

namespace brimvale::linuxCatalog {

/// The folders that Dropbox, Nextcloud, ownCloud and OneDrive keep in step with their servers, from the
/// settings of these programs. They need not exist.
[[nodiscard]] std::vector<std::string> cloudFolders(const Places &places);

} // namespace brimvale::linuxCatalog
