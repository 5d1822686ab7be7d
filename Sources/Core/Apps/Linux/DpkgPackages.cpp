#include "Core/Apps/Linux/Packages.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <charconv>
#include <unordered_set>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostStatusBytes = std::size_t{64} << 20;
constexpr std::string_view listEnding = ".list";
constexpr std::int64_t bytesOfUnit = 1024; // of Installed-Size

/// The value of a field in a paragraph of the status file; empty where it has none.
std::string_view fieldOf(std::string_view paragraph, std::string_view name) {
    for (std::size_t at = 0; at < paragraph.size();) {
        const std::size_t end = std::min(paragraph.find('\n', at), paragraph.size());
        const std::string_view line = paragraph.substr(at, end - at);
        if (line.size() > name.size() && line.starts_with(name) && line[name.size()] == ':')
            return trimmed(line.substr(name.size() + 1));
        at = end + 1;
    }
    return {};
}

/// A version as people know it, without the number in front that only dpkg needs.
std::string shownVersion(std::string_view version) {
    const std::size_t epoch = version.find(':');
    return std::string(epoch == std::string_view::npos ? version : version.substr(epoch + 1));
}

Package describedBy(std::string_view paragraph) {
    const std::string_view priority = fieldOf(paragraph, "Priority");
    const auto isYes = [&](std::string_view field) { return fieldOf(paragraph, field) == "yes"; };
    Package package{.name = std::string(fieldOf(paragraph, "Package")),
                    .version = shownVersion(fieldOf(paragraph, "Version")),
                    .isOfSystem = priority == "required" || priority == "important" || isYes("Essential") ||
                                  isYes("Protected") || isYes("Important")};
    const std::string_view size = fieldOf(paragraph, "Installed-Size");
    std::int64_t units = 0;
    const auto [end, error] = std::from_chars(size.data(), size.data() + size.size(), units);
    if (error == std::errc() && units > 0 && units < (std::int64_t{1} << 40))
        package.size = units * bytesOfUnit;
    package.removeCommand = "sudo apt remove " + package.name;
    return package;
}

/// The packages of the status file that are wanted, by name. One for two architectures is described once.
std::unordered_map<std::string, Package> packagesIn(const std::string &status,
                                                    const std::unordered_set<std::string> &wanted) {
    std::unordered_map<std::string, Package> packages;
    for (std::size_t at = 0; at < status.size();) {
        const std::size_t end = std::min(status.find("\n\n", at), status.size());
        const std::string_view paragraph = std::string_view(status).substr(at, end - at);
        at = end + 2;
        const std::string name(fieldOf(paragraph, "Package"));
        if (wanted.contains(name) && fieldOf(paragraph, "Status").ends_with(" installed"))
            packages.emplace(name, describedBy(paragraph));
    }
    return packages;
}

/// The package of a list such as "NAME.list" or "NAME:amd64.list".
std::string packageOf(const std::string &list) {
    const std::string name = list.substr(list.rfind('/') + 1);
    return name.substr(0, std::min(name.find(':'), name.size() - listEnding.size()));
}

/// The names of packages by the wanted paths that are in their lists.
std::unordered_map<std::string, std::string> namesOfOwners(const WantedPaths &wanted,
                                                           const std::string &info) {
    std::vector<std::string> lists;
    for (const std::string &name : namesIn(info).value_or(std::vector<std::string>()))
        if (name.ends_with(listEnding))
            lists.push_back(joinPath(info, name));
    std::unordered_map<std::string, std::string> owners = listsWith(wanted, std::move(lists));
    for (auto &[path, owner] : owners)
        owner = packageOf(owner);
    return owners;
}

} // namespace

Owners dpkgOwners(const WantedPaths &wanted, const std::string &folder) {
    const std::unordered_map<std::string, std::string> names =
        namesOfOwners(wanted, joinPath(folder, "info"));
    if (names.empty())
        return {};
    std::unordered_set<std::string> needed;
    for (const auto &[path, name] : names)
        needed.insert(name);
    const std::unordered_map<std::string, Package> packages =
        packagesIn(contentsOfFile(joinPath(folder, "status"), mostStatusBytes).value_or(""), needed);
    Owners owners;
    for (const auto &[path, name] : names)
        if (const auto package = packages.find(name); package != packages.end())
            owners.emplace(path, package->second);
    return owners;
}

} // namespace brimvale::linuxApps
