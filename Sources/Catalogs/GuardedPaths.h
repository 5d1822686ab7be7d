#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// Paths that are never removed. Absolute and standardised, compared byte by byte.
struct GuardedPaths {
    /// Folders that the system or the user depends on: they stay, but their contents may be removed.
    std::vector<std::string> structural;
    /// Every path that begins with one of these is protected; each ends with a slash.
    std::vector<std::string> protectedPrefixes;
    /// Exceptions: paths that begin with one of these are not protected by the prefixes.
    std::vector<std::string> openPrefixes;
};

} // namespace brimvale
