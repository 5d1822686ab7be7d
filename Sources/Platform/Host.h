#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <optional>

namespace brimvale {

/// The systems that there are catalogs for.
enum class System { macOS, linux };

/// For whom the program looks: which system's catalogs hold, whose home, which external tools.
struct Host {
    System system;
    FileURL home;
    Tools tools;

    /// The host in force: the system put in force with `useSystem`, else the one the program was built for;
    /// the user's home, read afresh; the platform's tools. Thread-safe.
    [[nodiscard]] static Host current();

    /// The system of `current`, without asking for the rest.
    [[nodiscard]] static System currentSystem();

    /// Puts another system's catalogs in force for the whole program, or, with nothing, its own again.
    static void useSystem(std::optional<System> system);
};

/// The system that the program was built for.
[[nodiscard]] System platformSystem();

/// The current user's home folder: $HOME when it is an absolute path, else the user database's entry.
[[nodiscard]] FileURL homeFolder();

} // namespace brimvale
