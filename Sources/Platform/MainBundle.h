#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <string>

namespace brimvale {

/// The installed program that is running.
struct MainBundle {
    FileURL url;                           ///< the application's bundle; without one, the executable
    std::optional<std::string> identifier; ///< of the bundle; nothing without one
    std::optional<std::string> version;    ///< as people read it: "1.4.2"
    std::optional<std::string> build;      ///< the build number, as text
};

/// The system's figures for the running program's bundle; on systems without bundles, the values of the
/// build.
[[nodiscard]] MainBundle mainBundle();

/// Whether the program installs its own updates. False where the system's package manager does that.
[[nodiscard]] bool canInstallItself();

} // namespace brimvale
