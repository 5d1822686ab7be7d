#pragma once

#include "Catalogs/AccessProbes.h"
#include "Catalogs/AppLocations.h"
#include "Catalogs/CleanupTarget.h"
#include "Catalogs/GuardedPaths.h"
#include "Catalogs/ScanRoot.h"
#include "Catalogs/StorageCategory.h"
#include "Catalogs/Words.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Everything that the program knows about a system as data. What depends on a home folder is a function of
/// it; none of them looks at the disk.
struct Catalog {
    Words words;

    /// The places offered for a scan, in the order of the menu.
    std::vector<ScanRoot> scanRoots;
    /// Folders that a scan never enters: device and automount trees, the other volumes, the same volume under
    /// a second name. Absolute paths.
    std::vector<std::string> skippedPaths;
    /// Folders whose contents a cloud provider keeps: listing them would make it download them.
    std::vector<std::string> (*cloudProviderRoots)(const FileURL &home);

    GuardedPaths (*guardedPaths)(const FileURL &home);
    /// Nothing where there is no such permission, so that none can be missing.
    std::optional<AccessProbes> (*accessProbes)(const FileURL &home);

    AppRoots (*appRoots)(const FileURL &home);
    LeftoverRules (*leftoverRules)(const FileURL &home);

    /// The places where data collects that comes back on its own, in the order in which they are shown; not
    /// yet measured.
    std::vector<CleanupTarget> (*cleanupTargets)(const FileURL &home);
    /// The parts of the used space, in the order in which they are shown. `others` are the folders of other
    /// users.
    std::vector<StorageCategory> (*storageCategories)(const FileURL &home, std::vector<std::string> others);
    /// The folders whose contents are looked through for what no category accounts for, the home folder last.
    std::vector<std::string> (*systemDataRoots)(const FileURL &home);
    OtherUsers otherUsers;
};

/// The catalog of a system. It lives as long as the program.
[[nodiscard]] const Catalog &catalogOf(System system);

} // namespace brimvale
