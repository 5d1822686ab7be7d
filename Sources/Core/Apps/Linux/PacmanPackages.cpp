#include "Core/Apps/Linux/Packages.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostFileBytes = std::size_t{64} << 20;

/// The line after a heading such as "%NAME%"; empty where there is none.
std::string_view lineAfter(std::string_view description, std::string_view heading) {
    const std::size_t at = description.find(heading);
    if (at == std::string_view::npos || at + heading.size() >= description.size())
        return {};
    const std::string_view rest = description.substr(at + heading.size() + 1);
    return rest.substr(0, rest.find('\n'));
}

Package packageIn(std::string_view description) {
    Package package{.name = std::string(lineAfter(description, "%NAME%")),
                    .version = std::string(lineAfter(description, "%VERSION%")),
                    .size = sizeInBytes(lineAfter(description, "%SIZE%"))};
    package.removeCommand = "sudo pacman -Rs " + package.name;
    return package;
}

} // namespace

Owners pacmanOwners(const WantedPaths &wanted, const std::string &folder) {
    Owners owners;
    std::vector<std::string> packages = namesIn(folder).value_or(std::vector<std::string>());
    std::sort(packages.begin(), packages.end());
    for (const std::string &name : packages) {
        const std::string of = joinPath(folder, name);
        const std::vector<std::string> found =
            wanted.in(contentsOfFile(joinPath(of, "files"), mostFileBytes).value_or(""));
        if (found.empty())
            continue;
        const Package package = packageIn(contentsOfFile(joinPath(of, "desc"), mostFileBytes).value_or(""));
        for (const std::string &path : found)
            if (!package.name.empty())
                owners.emplace(path, package);
    }
    return owners;
}

} // namespace brimvale::linuxApps
