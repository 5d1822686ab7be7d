#pragma once

#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// Folders that a scan never enters: device and automount trees, the other volumes, the same volume under a
/// second name. Absolute paths.
[[nodiscard]] std::vector<std::string> skippedPaths(const Host &host);

/// Folders whose contents a cloud provider keeps: listing them would make it download them.
[[nodiscard]] std::vector<std::string> cloudProviderRoots(const Host &host);

/// The lists of one system each.
namespace macOSCatalog {
std::vector<std::string> skippedPaths();
std::vector<std::string> cloudProviderRoots(const FileURL &home);
} // namespace macOSCatalog

namespace linuxCatalog {
std::vector<std::string> skippedPaths();
std::vector<std::string> cloudProviderRoots(const FileURL &home);
} // namespace linuxCatalog

} // namespace brimvale
