#include "Catalogs/StorageCategories.h"

#include <utility>

namespace brimvale {

// Other systems have no lists of their own yet.

std::vector<StorageCategory> storageCategories(const Host &host, std::vector<std::string> others) {
    return macOSCatalog::storageCategories(host.home, std::move(others));
}

std::vector<std::string> systemDataRoots(const Host &host) {
    return macOSCatalog::systemDataRoots(host.home);
}

OtherUsers otherUsers(const Host & /*host*/) {
    return macOSCatalog::otherUsers();
}

} // namespace brimvale
