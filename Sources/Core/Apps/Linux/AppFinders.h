#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/Linux/DesktopEntry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

/// An application, with the name of its icon.
struct FoundApp {
    InstalledApp app;
    std::string icon = {};
};

// The applications of one kind each. `entries` are all desktop entries, also those that are not listed.

[[nodiscard]] std::vector<FoundApp> flatpakApps(const DesktopPlaces &places,
                                                const std::vector<DesktopEntry> &entries);
[[nodiscard]] std::vector<FoundApp> snapApps(const DesktopPlaces &places,
                                             const std::vector<DesktopEntry> &entries);
[[nodiscard]] std::vector<FoundApp> appImages(const DesktopPlaces &places,
                                              const std::vector<DesktopEntry> &entries);
/// Packages, programs installed by hand, and what other programs have added: all that is known only by its
/// entry. Entries of the kinds above are left out, also those in `taken`, which are ids.
[[nodiscard]] std::vector<FoundApp> appsOfEntries(const DesktopPlaces &places,
                                                  const std::vector<DesktopEntry> &entries,
                                                  const std::vector<std::string> &taken);

/// What a Flatpak's file "deploy" says.
struct FlatpakDeploy {
    std::string origin;             ///< the remote that it is from
    std::int64_t installedSize = 0; ///< bytes
    std::string version = {};
};

/// Reads the bytes of such a file, a variant in the form of GLib; nothing where they are broken.
[[nodiscard]] std::optional<FlatpakDeploy> parseFlatpakDeploy(std::string_view bytes);

/// Whether a file is an AppImage by its first bytes.
[[nodiscard]] bool isAppImage(const std::string &path);

/// The folder that an application has for itself, by one of its program files; the file itself where it is in
/// a shared folder such as "bin". Empty where the program is in a folder of the system.
[[nodiscard]] std::string ownFolderOf(const std::string &program, const DesktopPlaces &places);

/// Whether a name can be that of a Flatpak or a snap, and so is harmless in a command: letters, digits, dots,
/// underscores and dashes, but none of the last at its start.
[[nodiscard]] bool isInstalledName(std::string_view name);

/// Adds what an entry says to an application: its name if `isMain`, and what files may be named after.
void addEntry(FoundApp &found, const DesktopEntry &entry, bool isMain);

} // namespace brimvale::linuxApps
