#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Catalogs/Linux/Places.h"

#include <vector>

namespace brimvale::linuxCatalog {

/// The folders where Flatpak installs: the user's, the system's, and those that "/etc/flatpak" names. One
/// that does not exist is among them, because it may be on a disk that is not connected.
[[nodiscard]] std::vector<FlatpakInstallation> flatpakInstallations(const Places &places);

} // namespace brimvale::linuxCatalog
