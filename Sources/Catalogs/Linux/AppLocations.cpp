#include "Catalogs/Linux/Catalog.h"

namespace brimvale::linuxCatalog {

/// Packages are removed with the package manager. Bundles are applications that users install by themselves,
/// in the folders that their makers suggest.
AppRoots appRoots(const FileURL &home) {
    return {.user = {"/Applications", home.appending("Applications").path()}, .system = {}};
}

/// The base directories of desktops (freedesktop.org), and those of sandboxed applications.
LeftoverRules leftoverRules(const FileURL &home) {
    const auto user = [&](const char *folder) { return home.appending(folder).path(); };
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
