#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// The systems that have catalogs.
enum class System { macOS, linux };

/// Selects the catalog, the home folder and the external tools.
struct Host {
    System system;
    FileURL home;
    Tools tools;
    /// The folder that catalogs take for "/" when they measure: tests measure a sample of a disk there. What
    /// must not be removed does not depend on it.
    std::string root = "/";

    /// Where a place of a catalog is: "~" stands for the home folder, and other paths are in `root`.
    [[nodiscard]] std::string placeOf(std::string_view path) const;

    /// The current host: the system selected with `useSystem`, else the one the program was built for; the
    /// user's home, read again on each call; the platform's tools; "/" or what was given to `useRoot`.
    /// Thread-safe.
    [[nodiscard]] static Host current();

    /// The system of `current`, without reading the rest.
    [[nodiscard]] static System currentSystem();

    /// Selects another system's catalogs for the whole program; without a value, its own again.
    static void useSystem(std::optional<System> system);

    /// Gives the hosts from `current` this root, for the whole program. Only tests do.
    static void useRoot(std::string folder);
};

/// The system that the program was built for.
[[nodiscard]] System platformSystem();

/// The current user's home folder: $HOME when it is an absolute path, else `accountHome`.
[[nodiscard]] FileURL homeFolder();

/// The home folder that the user database has for the current user, whatever $HOME says; "/" if it has none.
[[nodiscard]] FileURL accountHome();

} // namespace brimvale
