#pragma once

#include "Catalogs/Catalog.h"

namespace brimvale::linuxCatalog {

[[nodiscard]] const Catalog &catalog();

// Its longer parts, each in a file of its own.
[[nodiscard]] Words words();
[[nodiscard]] GuardedPaths guardedPaths(const FileURL &home);
[[nodiscard]] AppRoots appRoots(const Host &host);
[[nodiscard]] LeftoverRules leftoverRules(const Host &host);
[[nodiscard]] std::vector<CleanupTarget> cleanupTargets(const Host &host);
[[nodiscard]] std::vector<CleanupFinding> cleanupFindings(const Host &host,
                                                          const std::vector<std::string> &ids);
[[nodiscard]] std::optional<DesktopPlaces> desktopPlaces(const Host &host);
[[nodiscard]] DesktopLeftoverRules desktopLeftoverRules(const Host &host);
[[nodiscard]] std::vector<StorageCategory> storageCategories(const Host &host,
                                                             std::vector<std::string> others);
[[nodiscard]] std::vector<std::string> systemDataRoots(const Host &host);

} // namespace brimvale::linuxCatalog
