#include "Catalogs/Linux/Catalog.h"

namespace brimvale::linuxCatalog {

/// What the package manager installs is the package manager's to remove. Bundles are what users put down by
/// themselves, where their makers say.
AppRoots appRoots(const FileURL &home) {
    return {.user = {"/Applications", home.appending("Applications").path()}, .system = {}};
}

/// The base directories of the desktops (freedesktop.org), and those of sandboxed applications.
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
