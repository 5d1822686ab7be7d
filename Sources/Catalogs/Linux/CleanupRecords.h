#pragma once

#include "Catalogs/CleanupTarget.h"
#include "Catalogs/Linux/CleanupSearch.h"

#include <string>
#include <vector>

namespace brimvale::linuxCatalog {

/// A command that frees space in a tool's own way.
struct CleanupCommand {
    std::string command;
    std::vector<std::string> places; ///< of what the tool keeps; the command is shown where one exists
};

/// One cleanup target: what it says, and where its entries are.
struct CleanupRecord {
    CleanupTarget target;
    std::vector<CleanupPlaces> places = {};
    /// Adds entries that need a look of their own; null for none.
    void (*find)(CleanupSearch &search) = nullptr;
    std::vector<std::string> alsoLooksIn = {}; ///< the places of `find`
    std::vector<CleanupCommand> commands = {};
    bool takesTheRest = false; ///< it is searched after the others
};

// Caches and stores of developer tools
[[nodiscard]] CleanupRecord packageCaches();
[[nodiscard]] CleanupRecord buildCaches();
[[nodiscard]] CleanupRecord packageStores();
[[nodiscard]] CleanupRecord headlessBrowsers();
[[nodiscard]] CleanupRecord androidEmulators();
[[nodiscard]] CleanupRecord languageModels();

// Applications on the desktop
[[nodiscard]] CleanupRecord browserCaches();
[[nodiscard]] CleanupRecord webAppCaches();
[[nodiscard]] CleanupRecord thumbnails();
[[nodiscard]] CleanupRecord applicationCaches();
[[nodiscard]] CleanupRecord removedAppData();
[[nodiscard]] CleanupRecord gameCaches();
[[nodiscard]] CleanupRecord windowsPrograms();
[[nodiscard]] CleanupRecord trashedItems();

// The system
[[nodiscard]] CleanupRecord logFiles();
[[nodiscard]] CleanupRecord crashReports();
[[nodiscard]] CleanupRecord systemPackages();
[[nodiscard]] CleanupRecord temporaryFiles();
[[nodiscard]] CleanupRecord containerStores();
[[nodiscard]] CleanupRecord virtualMachines();
[[nodiscard]] CleanupRecord oldVersions();

// What needs a look of its own
void findWebAppCaches(CleanupSearch &search);
void findAndroidDevices(CleanupSearch &search);
void findRemovedAppData(CleanupSearch &search);
void findGameCaches(CleanupSearch &search);
void findRemovedGames(CleanupSearch &search);
void findRotatedLogs(CleanupSearch &search);
void findCoreFiles(CleanupSearch &search);
void findOldKernels(CleanupSearch &search);
void findOldSnaps(CleanupSearch &search);
void findSavedSnaps(CleanupSearch &search);
void findTrashesOfVolumes(CleanupSearch &search);
void findUnusedRuntimes(CleanupSearch &search);

} // namespace brimvale::linuxCatalog
