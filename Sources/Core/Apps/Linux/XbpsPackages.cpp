#include "Core/Apps/Linux/Packages.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostXbpsBytes = std::size_t{64} << 20;
constexpr std::string_view filesEnding = "-files.plist";

/// The dictionary that belongs to a key of a property list, with those inside it; empty where there is none.
std::string_view dictionaryOf(std::string_view list, const std::string &key) {
    constexpr std::string_view start = "<dict>";
    constexpr std::string_view end = "</dict>";
    const std::string wanted = "<key>" + key + "</key>";
    for (std::size_t at = list.find(wanted); at != std::string_view::npos; at = list.find(wanted, at + 1)) {
        const std::string_view inside = trimmed(list.substr(at + wanted.size()));
        if (!inside.starts_with(start))
            continue;
        std::size_t depth = 1;
        for (std::size_t next = inside.find("dict>", start.size()); next != std::string_view::npos;
             next = inside.find("dict>", next + 1)) {
            depth = inside.substr(next - 2).starts_with(end) ? depth - 1 : depth + 1;
            if (depth == 0)
                return inside.substr(0, next);
        }
    }
    return {};
}

/// The text or number that belongs to a key of a dictionary.
std::string_view valueOf(std::string_view dictionary, std::string_view key) {
    const std::string wanted = std::string("<key>").append(key).append("</key>");
    const std::size_t at = dictionary.find(wanted);
    if (at == std::string_view::npos)
        return {};
    const std::string_view element = trimmed(dictionary.substr(at + wanted.size()));
    const std::size_t start = element.find('>');
    return start == std::string_view::npos ? ""
                                           : element.substr(start + 1, element.find('<', start) - start - 1);
}

/// The package in the list of all that are installed.
Package xbpsPackage(const std::string &name, std::string_view list) {
    const std::string_view dictionary = dictionaryOf(list, name);
    Package package{.name = name, .size = sizeInBytes(valueOf(dictionary, "installed_size"))};
    const std::string_view full = valueOf(dictionary, "pkgver"); // "tool-1.2_1"
    if (full.size() > name.size() && full.starts_with(name))
        package.version = full.substr(name.size() + 1);
    package.removeCommand = "sudo xbps-remove -R " + name;
    return package;
}

/// Puts each path of a property list on a line of its own.
void linesOfTexts(std::string &list) {
    std::replace_if(
        list.begin(), list.end(), [](char one) { return one == '<' || one == '>'; }, '\n');
}

} // namespace

Owners xbpsOwners(const WantedPaths &wanted, const std::string &folder) {
    std::vector<std::string> lists;
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
        if (name.starts_with('.') && name.ends_with(filesEnding))
            lists.push_back(joinPath(folder, name));
    const std::unordered_map<std::string, std::string> found =
        listsWith(wanted, std::move(lists), linesOfTexts);
    if (found.empty())
        return {};
    const std::string all = contentsOfFile(joinPath(folder, "pkgdb-0.38.plist"), mostXbpsBytes).value_or("");
    Owners owners;
    for (const auto &[path, list] : found) {
        const std::size_t start = folder.size() + 2; // after "/."
        owners.emplace(path, xbpsPackage(list.substr(start, list.size() - filesEnding.size() - start), all));
    }
    return owners;
}

} // namespace brimvale::linuxApps
