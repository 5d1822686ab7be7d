#pragma once

#include "Catalogs/Catalog.h"

namespace brimvale::macOSCatalog {

[[nodiscard]] const Catalog &catalog();

// Its longer parts, each in a file of its own.
[[nodiscard]] Words words();
[[nodiscard]] GuardedPaths guardedPaths(const FileURL &home);
[[nodiscard]] AppRoots appRoots(const FileURL &home);
[[nodiscard]] LeftoverRules leftoverRules(const FileURL &home);
[[nodiscard]] std::vector<CleanupTarget> cleanupTargets(const FileURL &home);
[[nodiscard]] std::vector<StorageCategory> storageCategories(const FileURL &home,
                                                             std::vector<std::string> others);

} // namespace brimvale::macOSCatalog
