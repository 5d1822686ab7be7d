#pragma once

#include "Catalogs/AccessProbes.h"
#include "Catalogs/AppLocations.h"
#include "Catalogs/CleanupNotes.h"
#include "Catalogs/CleanupTarget.h"
#include "Catalogs/DesktopPlaces.h"
#include "Catalogs/GuardedPaths.h"
#include "Catalogs/JoinedFolders.h"
#include "Catalogs/KnownApps.h"
#include "Catalogs/ScanRoot.h"
#include "Catalogs/StorageCategory.h"
#include "Catalogs/Words.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Everything the program knows about a system, as data. Values that depend on a home folder or a host are
/// functions of it. Only the cleanup targets and storage
/// categories may look at the disk, and only for which places there are.
struct Catalog {
    Words words;

    /// The places offered for a scan, in menu order.
    std::vector<ScanRoot> scanRoots;
    /// Folders that a scan never enters: device and automount trees, the other volumes, the same volume by a
    /// second path. Absolute paths, as for a host whose root is "/".
    std::vector<std::string> skippedPaths;
    JoinedFolders joinedFolders;
    /// Folders of cloud providers, which would download their contents to list them.
    std::vector<std::string> (*cloudProviderRoots)(const FileURL &home);

    GuardedPaths (*guardedPaths)(const FileURL &home);
    /// Nothing on systems without such a permission.
    std::optional<AccessProbes> (*accessProbes)(const Host &host);

    AppRoots (*appRoots)(const Host &host);
    LeftoverRules (*leftoverRules)(const Host &host);
    /// Nothing on systems where all applications are bundles.
    std::optional<DesktopPlaces> (*desktopPlaces)(const Host &host);
    /// For applications of `desktopPlaces`. Null where there are none.
    DesktopLeftoverRules (*desktopLeftoverRules)(const Host &host) = nullptr;

    /// The places where data collects that programs create again by themselves, in the order shown; not yet
    /// measured.
    std::vector<CleanupTarget> (*cleanupTargets)(const Host &host);
    /// What to measure for the targets with these ids, in their order; reads the disk. Null where the roots
    /// of the targets say it.
    std::vector<CleanupFinding> (*cleanupFindings)(const Host &host,
                                                   const std::vector<std::string> &ids) = nullptr;
    /// Which of these programs are running. Null where no entry names one.
    std::vector<bool> (*areRunning)(const Host &host, const std::vector<ProgramSigns> &programs) = nullptr;
    /// The parts of the used space, in the order shown. `others` are the folders of other
    /// users, as places of the catalog.
    std::vector<StorageCategory> (*storageCategories)(const Host &host, std::vector<std::string> others);
    /// The folders to search for data outside all categories, the home folder last.
    std::vector<std::string> (*systemDataRoots)(const Host &host);
    /// Whether these also include the visible folders in the home that no category names.
    bool systemDataListsWholeHome = false;
    OtherUsers otherUsers;
    /// Folders among those of the system where administrators install programs of their own: these can be
    /// removed again.
    std::vector<std::string> administratorsFolders = {"/opt", "/usr/local"};
    /// The name of the installed system, for the root volume. Null where that volume has a name of its own.
    std::string (*nameOfDistribution)(const Host &host) = nullptr;
};

/// The catalog of a system. It lives as long as the program.
[[nodiscard]] const Catalog &catalogOf(System system);

} // namespace brimvale
