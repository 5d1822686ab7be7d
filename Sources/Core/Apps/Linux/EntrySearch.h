#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Core/Apps/Linux/DesktopEntry.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

/// What decides which entries a user sees, and in which language.
struct UserSession {
    std::vector<std::string> locales;  ///< endings of translated keys, the best first
    std::vector<std::string> desktops; ///< the names of the desktop, as entries have them

    /// As the environment has it.
    [[nodiscard]] static UserSession current();
};

/// All desktop entries, each id once: the one of the first data folder, and with it those it replaces.
/// Whether an entry is listed also follows from the desktop and from programs that must exist. In order of
/// ids.
[[nodiscard]] std::vector<DesktopEntry> desktopEntries(const DesktopPlaces &places,
                                                       const UserSession &session);

/// The file that a command starts, on the disk of the host: looked for in the folders for commands unless it
/// has a path. Empty where there is none.
[[nodiscard]] std::string programFile(std::string_view command, const DesktopPlaces &places);

} // namespace brimvale::linuxApps
