#pragma once

#include "Catalogs/AppLocations.h"
#include "Core/Apps/InstalledApp.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The application bundles on this machine, searched again on each call. Unreadable ones are left out
/// silently. Reads only folder listings and Info.plist files, and never makes a cloud provider download
/// anything; still, call it off the main thread.
namespace AppInventory {

/// The folders that are always searched, in order.
[[nodiscard]] std::vector<std::string> user(const Host &host = Host::current());

/// The applications in the user's folders and, if asked, the system's, in the order of the Finder; those with
/// the same name in the order found. A bundle that can be reached twice (overlapping folders, links) is
/// listed once: by the path found first, but by a link to it only if it is not found itself. What a link
/// leads to in the system's folders is an application of the system.
[[nodiscard]] std::vector<InstalledApp> scan(bool includeSystem, const Host &host = Host::current());
[[nodiscard]] std::vector<InstalledApp> scan(bool includeSystem, const AppRoots &roots);

/// The paths of the bundles in the folder `root` and up to `maxDepth` levels of folders below it. Links are
/// followed, each folder once. Hidden folders and the contents of bundles are not searched.
[[nodiscard]] std::vector<std::string> bundles(const std::string &root, int maxDepth);

/// The application at `path`; nothing where there is no bundle.
[[nodiscard]] std::optional<InstalledApp> describe(const std::string &path, bool isSystem);

} // namespace AppInventory

} // namespace brimvale
