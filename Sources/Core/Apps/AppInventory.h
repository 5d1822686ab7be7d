#pragma once

#include "Catalogs/AppLocations.h"
#include "Core/Apps/InstalledApp.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The application bundles on this machine, found afresh at every call. What cannot be read is left out
/// without a word. Reads listings and dictionaries only, and never makes a cloud provider download anything;
/// call it off the main thread all the same.
namespace AppInventory {

/// The folders that are always searched, in order.
[[nodiscard]] std::vector<std::string> user(const Host &host = Host::current());

/// The applications in the user's folders and, if asked, in the system's, in the order of the Finder; those
/// of the same name in the order in which they were found. A bundle that can be reached in two ways
/// (overlapping folders, a link to a folder) is listed once, as it was reached first; a link to a bundle is
/// listed too.
[[nodiscard]] std::vector<InstalledApp> scan(bool includeSystem, const Host &host = Host::current());
[[nodiscard]] std::vector<InstalledApp> scan(bool includeSystem, const AppRoots &roots);

/// The paths of the bundles in the folder `root` and up to `maxDepth` levels of folders below it. Links are
/// followed, each folder once; what lies in a bundle or is hidden is not looked at.
[[nodiscard]] std::vector<std::string> bundles(const std::string &root, int maxDepth);

/// The application at `path`; nothing where there is no bundle.
[[nodiscard]] std::optional<InstalledApp> describe(const std::string &path, bool isSystem);

} // namespace AppInventory

} // namespace brimvale
