#pragma once

#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// What is never removed, whoever asks. Absolute paths in their plain form, compared byte by byte.
struct GuardedPaths {
    /// Folders that everything else hangs on: they themselves stay, what lies in them may go.
    std::vector<std::string> structural;
    /// Whatever begins with one of these stays; each ends with a slash.
    std::vector<std::string> protectedPrefixes;
    /// What begins with one of these is no part of a protected place although its path says so.
    std::vector<std::string> openPrefixes;
};

/// The guarded paths of the host's system, for the host's home.
[[nodiscard]] GuardedPaths guardedPaths(const Host &host);

/// The paths of one system each.
namespace macOSCatalog {
GuardedPaths guardedPaths(const FileURL &home);
}

namespace linuxCatalog {
GuardedPaths guardedPaths(const FileURL &home);
}

} // namespace brimvale
