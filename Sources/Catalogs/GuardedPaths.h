#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// A guarded place with a reason of its own.
struct GuardedPlace {
    std::string place;
    std::string predicate; ///< the rest of the sentence that begins with the path of the refused item
};

/// Paths that are never removed. Absolute and standardised, compared byte by byte.
struct GuardedPaths {
    /// Folders that the system or the user depends on: they stay, but their contents may be removed.
    std::vector<std::string> structural;
    /// Every path that begins with one of these is protected; each ends with a slash.
    std::vector<std::string> protectedPrefixes;
    /// Exceptions: paths that begin with one of these are not protected by the prefixes.
    std::vector<std::string> openPrefixes;
    /// Folders that are protected with everything inside, without exceptions.
    std::vector<GuardedPlace> trees = {};
    /// The same for folders of these names, wherever they are; each is one or several components.
    std::vector<GuardedPlace> namesOfTrees = {};
    /// Folders of these names stay, wherever they are, but their contents may be removed.
    std::vector<GuardedPlace> structuralNames = {};
    /// Folders in which every entry stays, but the contents of the entries may be removed.
    std::vector<GuardedPlace> foldersOfEntries = {};
    /// The same, but only entries that are folders stay.
    std::vector<GuardedPlace> foldersOfFolders = {};
};

} // namespace brimvale
