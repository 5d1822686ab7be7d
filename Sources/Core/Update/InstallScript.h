#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <string>

namespace brimvale {

/// The inputs of the install script. No path may contain a single quote.
struct Installation {
    FileURL staged;         ///< the new application, in a folder of its own that the script deletes
    FileURL current;        ///< the installed application
    std::string executable; ///< of both applications, as a path inside them
    std::int64_t process;   ///< the identifier of the process to wait for
    FileURL log;            ///< the script appends its messages to this file
};

/// A POSIX shell script that waits for the process to end, replaces the installed application with the new
/// one and opens it. Even if it fails or is interrupted, a working application is at `current` or at
/// `current` + ".old". It calls tools by their bare names, and does not check the paths: see
/// `prepareInstallation`.
[[nodiscard]] std::string installScript(const Installation &installation);

} // namespace brimvale
