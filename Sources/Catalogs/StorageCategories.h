#pragma once

#include "Catalogs/StorageCategory.h"
#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// Where other people's files are.
struct OtherUsers {
    std::string homes;  ///< the folder that holds one home folder a user
    std::string shared; ///< the name of the folder in it that all of them share
};

/// The parts of the used space, in the order in which they are shown. `others` are the folders of other
/// users.
[[nodiscard]] std::vector<StorageCategory> storageCategories(const Host &host,
                                                             std::vector<std::string> others);

/// The folders whose contents are looked through for what no category accounts for, the home folder last.
[[nodiscard]] std::vector<std::string> systemDataRoots(const Host &host);

[[nodiscard]] OtherUsers otherUsers(const Host &host);

/// Those of one system.
namespace macOSCatalog {
std::vector<StorageCategory> storageCategories(const FileURL &home, std::vector<std::string> others);
std::vector<std::string> systemDataRoots(const FileURL &home);
OtherUsers otherUsers();
} // namespace macOSCatalog

} // namespace brimvale
