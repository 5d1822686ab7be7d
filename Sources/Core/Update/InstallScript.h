#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <string>

namespace brimvale {

/// What the install script works with. No path may hold a single quote.
struct Installation {
    FileURL staged;         ///< the new application, in a folder of its own, which goes with the installation
    FileURL current;        ///< the application that is installed
    std::string executable; ///< of both, as a path inside them
    std::int64_t process;   ///< the identifier of the process to wait for
    FileURL log;            ///< the file that the script adds its remarks to
};

/// A script for a POSIX shell that puts the new application in the place of the installed one and opens it,
/// once the process has ended. However it fails, and wherever it is interrupted, a working application is at
/// `current` or beside it, at `current` + ".old". It calls its tools by their bare names, and does not check
/// the paths: see `prepareInstallation`.
[[nodiscard]] std::string installScript(const Installation &installation);

} // namespace brimvale
