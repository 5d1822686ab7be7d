#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <optional>

namespace brimvale {

/// The systems that have catalogs.
enum class System { macOS, linux };

/// Selects the catalog, the home folder and the external tools.
struct Host {
    System system;
    FileURL home;
    Tools tools;

    /// The current host: the system selected with `useSystem`, else the one the program was built for; the
    /// user's home, read again on each call; the platform's tools. Thread-safe.
    [[nodiscard]] static Host current();

    /// The system of `current`, without reading the rest.
    [[nodiscard]] static System currentSystem();

    /// Selects another system's catalogs for the whole program; without a value, its own again.
    static void useSystem(std::optional<System> system);
};

/// The system that the program was built for.
[[nodiscard]] System platformSystem();

/// The current user's home folder: $HOME when it is an absolute path, else `accountHome`.
[[nodiscard]] FileURL homeFolder();

/// The home folder that the user database has for the current user, whatever $HOME says; "/" if it has none.
[[nodiscard]] FileURL accountHome();

} // namespace brimvale
