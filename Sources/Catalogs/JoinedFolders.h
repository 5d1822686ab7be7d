#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// Folders with two names. macOS keeps what the user changes on a volume of its own, and shows the folders of
/// that volume among those of the system ("firmlinks"): "/System/Volumes/Data/Users" is "/Users".
struct JoinedFolders {
    std::string volume;             ///< where the volume is mounted; empty if there is none
    std::vector<std::string> names; ///< the usual names; the others are these inside `volume`
};

} // namespace brimvale
