#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <string>

namespace brimvale {

/// The program that runs, as it is installed.
struct MainBundle {
    FileURL url;                        ///< the application's bundle; without one, the executable
    std::optional<std::string> version; ///< as people read it: "1.4.2"
    std::optional<std::string> build;   ///< the build number, as text
};

/// What the system tells about the running program's bundle; where there are no bundles, what it was built
/// with.
[[nodiscard]] MainBundle mainBundle();

/// Whether the program replaces its bundle by a newer one itself. It does not where applications are
/// installed by the system's package manager.
[[nodiscard]] bool canInstallItself();

} // namespace brimvale
