#pragma once

#include "Catalogs/DesktopPlaces.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimvale::linuxApps {

/// A package of the distribution.
struct Package {
    std::string name;
    std::string version = {};
    std::optional<std::int64_t> size = {}; ///< bytes installed, as its manager says
    bool isOfSystem = false;               ///< the computer or its desktop needs it
    std::string removeCommand = {};        ///< for a terminal
};

/// Packages by the paths that they own.
using Owners = std::unordered_map<std::string, Package>;

/// Which packages own these files, or have something in these folders; paths as programs on the host name
/// them. Paths of no package are missing. Reads the databases of all package managers that are there.
[[nodiscard]] Owners ownersOf(const std::vector<std::string> &paths, const DesktopPlaces &places);

/// The paths that are looked for in the packages' lists of files.
class WantedPaths {
public:
    explicit WantedPaths(const std::vector<std::string> &paths);

    /// The wanted paths that are in a list with one path a line, or contain one of them. The paths in the
    /// list may begin without a slash.
    [[nodiscard]] std::vector<std::string> in(std::string_view list) const;

private:
    void addEntriesIn(std::string_view list, std::vector<std::string> &found) const;

    std::unordered_map<std::string, std::string> entries_; ///< desktop entries, which most lists do not have
    std::vector<std::string> others_;
};

/// The wanted paths with the list that has each. `lists` are files with the paths of one package each, read
/// several at a time; `toLines` makes their text one with a path a line, where it is not.
[[nodiscard]] std::unordered_map<std::string, std::string>
listsWith(const WantedPaths &wanted, std::vector<std::string> lists,
          void (*toLines)(std::string &) = nullptr);

/// A size as the databases write it: bytes in decimal, or in hexadecimal after "0x". Nothing for any other
/// text.
[[nodiscard]] std::optional<std::int64_t> sizeInBytes(std::string_view text);

// The databases, one each.
[[nodiscard]] Owners apkOwners(const WantedPaths &wanted, const std::string &database);
[[nodiscard]] Owners dpkgOwners(const WantedPaths &wanted, const std::string &folder);
[[nodiscard]] Owners pacmanOwners(const WantedPaths &wanted, const std::string &folder);
[[nodiscard]] Owners portageOwners(const WantedPaths &wanted, const std::string &folder);
[[nodiscard]] Owners xbpsOwners(const WantedPaths &wanted, const std::string &folder);
[[nodiscard]] Owners rpmOwners(const std::vector<std::string> &paths, const PackageDatabases &databases);

} // namespace brimvale::linuxApps
