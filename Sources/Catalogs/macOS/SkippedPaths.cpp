#include "Catalogs/SkippedPaths.h"

namespace brimvale::macOSCatalog {

std::vector<std::string> skippedPaths() {
    return {
        "/dev",
        "/net",
        "/home",
        "/.vol",
        "/Volumes",
        // Scanning "/" reaches the other system volumes, and the data volume a second time, through here.
        "/System/Volumes",
        // The same trees once more when the data volume itself is scanned.
        "/System/Volumes/Data/Volumes",
        "/System/Volumes/Data/dev",
        "/System/Volumes/Data/net",
        "/System/Volumes/Data/home",
        "/System/Volumes/Data/.vol",
        "/System/Volumes/Update/mnt1",
        "/System/Volumes/VM/.snapshots",
    };
}

std::vector<std::string> cloudProviderRoots(const FileURL &home) {
    return {home.appending("Library/CloudStorage").path(), home.appending("Library/Mobile Documents").path()};
}

} // namespace brimvale::macOSCatalog
