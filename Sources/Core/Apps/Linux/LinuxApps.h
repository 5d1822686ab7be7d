#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/Linux/EntrySearch.h"

#include <vector>

namespace brimvale::linuxApps {

/// The applications of a desktop, each once however many entries it has; in no order. Names are in the
/// session's language. Reads the files of package managers instead of asking them, except for RPM.
[[nodiscard]] std::vector<InstalledApp> installedApps(const DesktopPlaces &places,
                                                      const UserSession &session = UserSession::current());

} // namespace brimvale::linuxApps
