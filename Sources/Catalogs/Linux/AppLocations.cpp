#include "Catalogs/Linux/Catalog.h"

namespace brimvale::linuxCatalog {

/// Packages are removed with the package manager. Bundles are applications that users install by themselves,
/// in the folders that their makers suggest.
AppRoots appRoots(const Host &host) {
    return {.user = {host.placeOf("/Applications"), host.placeOf("~/Applications")}, .system = {}};
}

/// The base directories of desktops (freedesktop.org), and those of sandboxed applications.
LeftoverRules leftoverRules(const Host &host) {
    const auto user = [&](const char *folder) { return host.home.appending(folder).path(); };
    return {
        .exactRules =
            {
                {user(".local/share"), "Application Support"},
                {user(".cache"), "Cache"},
                {user(".var/app"), "Sandbox container"},
                {user(".config"), "Preferences"},
                {user(".local/state"), "Saved state"},
            },
        .scanRules = {{user(".config/autostart"), "Login item"}},
    };
}

} // namespace brimvale::linuxCatalog
