#include "Catalogs/Linux/AppNames.h"

#include "Base/Text.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t desktopEntryLimit = 1'048'576; // bytes; the longest have translations of every line

constexpr const char *desktopEntryFolders[] = {"$DATA/applications",
                                               "$DATA/flatpak/exports/share/applications",
                                               "/usr/local/share/applications",
                                               "/var/lib/flatpak/exports/share/applications",
                                               "/usr/share/applications",
                                               "/var/lib/snapd/desktop/applications"};

/// The name in the first group of a desktop entry, untranslated; empty if there is none.
std::string nameInDesktopEntry(std::string_view entry) {
    bool isInGroup = false;
    while (!entry.empty()) {
        const std::string_view line = entry.substr(0, entry.find('\n'));
        if (line.starts_with('['))
            isInGroup = trimmed(line) == "[Desktop Entry]";
        else if (isInGroup && line.starts_with("Name="))
            return std::string(trimmed(line.substr(5)));
        entry.remove_prefix(std::min(line.size() + 1, entry.size()));
    }
    return "";
}

} // namespace

std::string AppNames::of(const std::string &id) {
    const auto [known, isNew] = known_.try_emplace(id, id);
    if (!isNew)
        return known->second;
    // A Snap package's entry has the name of the package before that of the program.
    for (const std::string &file : {id + ".desktop", id + "_" + id + ".desktop"})
        for (const char *folder : desktopEntryFolders)
            for (const std::string &path : places_.pathsOf(std::string(folder) + "/" + file)) {
                std::string name = nameInDesktopEntry(contentsOfFile(path, desktopEntryLimit).value_or(""));
                if (!name.empty())
                    return known->second = std::move(name);
            }
    return known->second;
}

} // namespace brimvale::linuxCatalog
