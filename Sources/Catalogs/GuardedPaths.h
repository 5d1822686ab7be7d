#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// What is never removed. Absolute paths in their plain form, compared byte by byte.
struct GuardedPaths {
    /// Folders that everything else depends on: they themselves stay, their contents may go.
    std::vector<std::string> structural;
    /// Whatever begins with one of these stays; each ends with a slash.
    std::vector<std::string> protectedPrefixes;
    /// What begins with one of these is no part of a protected place although its path says so.
    std::vector<std::string> openPrefixes;
};

} // namespace brimvale
