#pragma once

#include "Catalogs/Linux/CleanupSearch.h"

#include <map>
#include <string>
#include <vector>

namespace brimvale::linuxCatalog {

/// The libraries of Steam on this machine.
struct SteamLibraries {
    std::vector<std::string> installations = {};
    std::vector<std::string> libraries =
        {};                  ///< folders with "steamapps", those of the installations included
    bool areAllThere = true; ///< every library that Steam knows is mounted now
    std::map<std::string, std::string> games = {}; ///< the names of installed games, by their numbers
};

/// Reads the lists that Steam keeps. Libraries on volumes that may not answer are left out.
[[nodiscard]] SteamLibraries steamLibraries(CleanupSearch &search);

} // namespace brimvale::linuxCatalog
