#include "Catalogs/Linux/Catalog.h"

#include "Catalogs/Linux/RunningPrograms.h"
#include "Catalogs/Linux/SystemName.h"

namespace brimvale::linuxCatalog {

namespace {

/// Cloud folders are either plain files that a client synchronises, or a FUSE mount, which a scan of their
/// parent does not enter.
std::vector<std::string> cloudProviderRoots(const FileURL & /*home*/) {
    return {};
}

/// A program may read whatever its user may read.
std::optional<AccessProbes> accessProbes(const Host & /*host*/) {
    return std::nullopt;
}

} // namespace

const Catalog &catalog() {
    static const Catalog catalog = {
        .words = words(),
        .scanRoots = {{"Home folder", "~"},
                      {"Applications", "/opt"},
                      {"User data", "~/.local/share"},
                      {"System", "/usr"},
                      {"Variable data", "/var"},
                      {"Whole system", "/"}},
        .skippedPaths = {"/dev", "/proc", "/run", "/sys"},
        .joinedFolders = {},
        .cloudProviderRoots = cloudProviderRoots,
        .guardedPaths = guardedPaths,
        .accessProbes = accessProbes,
        .appRoots = appRoots,
        .leftoverRules = leftoverRules,
        .desktopPlaces = desktopPlaces,
        .desktopLeftoverRules = desktopLeftoverRules,
        .cleanupTargets = cleanupTargets,
        .cleanupFindings = cleanupFindings,
        .areRunning = areRunning,
        .storageCategories = storageCategories,
        .systemDataRoots = systemDataRoots,
        .systemDataListsWholeHome = true,
        .otherUsers = {.homes = "/home", .shared = ""},
        .nameOfDistribution = distributionName,
    };
    return catalog;
}

} // namespace brimvale::linuxCatalog
