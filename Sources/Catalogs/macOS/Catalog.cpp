#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

namespace {

std::vector<ScanRoot> scanRoots() {
    return {
        {"Home folder", "~"},
        {"Applications", "/Applications"},
        {"User Library", "~/Library"},
        {"System Library", "/Library"},
        {"Whole data volume", "/System/Volumes/Data"},
        {"System volume", "/"},
    };
}

std::vector<std::string> skippedPaths() {
    return {
        "/dev",
        "/net",
        "/home",
        "/.vol",
        "/Volumes",
        // From "/", this leads to the other system volumes, and to the data volume a second time.
        "/System/Volumes",
        // The same trees again when the data volume itself is scanned.
        "/System/Volumes/Data/Volumes",
        "/System/Volumes/Data/dev",
        "/System/Volumes/Data/net",
        "/System/Volumes/Data/home",
        "/System/Volumes/Data/.vol",
        "/System/Volumes/Update/mnt1",
        "/System/Volumes/VM/.snapshots",
    };
}

/// Those of /usr/share/firmlinks that may be removed from or are measured. The others are inside /System and
/// protected by both names.
JoinedFolders joinedFolders() {
    return {.volume = "/System/Volumes/Data",
            .names = {"/Applications", "/Library", "/Users", "/Volumes", "/cores", "/opt", "/private",
                      "/usr/libexec/cups", "/usr/local", "/usr/share/snmp"}};
}

std::vector<std::string> cloudProviderRoots(const FileURL &home) {
    return {home.appending("Library/CloudStorage").path(), home.appending("Library/Mobile Documents").path()};
}

std::optional<AccessProbes> accessProbes(const Host &host) {
    // The permission protects the privacy databases of the system and of the user.
    const std::string database = "/Library/Application Support/com.apple.TCC/TCC.db";
    return AccessProbes{.files = {FileURL(host.placeOf(database)), FileURL(host.placeOf("~" + database))},
                        .folder = host.home.appending("Library/Messages")};
}

std::vector<std::string> systemDataRoots(const Host &host) {
    return {host.placeOf("~/Library"), host.placeOf("/Library"), host.placeOf("/private/var"),
            host.home.path()};
}

} // namespace

const Catalog &catalog() {
    static const Catalog catalog = {
        .words = words(),
        .scanRoots = scanRoots(),
        .skippedPaths = skippedPaths(),
        .joinedFolders = joinedFolders(),
        .cloudProviderRoots = cloudProviderRoots,
        .guardedPaths = guardedPaths,
        .accessProbes = accessProbes,
        .appRoots = appRoots,
        .leftoverRules = leftoverRules,
        .desktopPlaces = [](const Host & /*host*/) { return std::optional<DesktopPlaces>(); },
        .cleanupTargets = cleanupTargets,
        .storageCategories = storageCategories,
        .systemDataRoots = systemDataRoots,
        .otherUsers = {.homes = "/Users", .shared = "Shared"},
    };
    return catalog;
}

} // namespace brimvale::macOSCatalog
