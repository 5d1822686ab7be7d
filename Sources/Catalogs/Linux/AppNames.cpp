#include "Catalogs/Linux/AppNames.h"

#include "Base/KeyFile.h"
#include "Platform/FileContents.h"

#include <cstddef>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t desktopEntryLimit = 1'048'576; // bytes; the longest have translations of every line

constexpr const char *desktopEntryFolders[] = {"$DATA/applications",
                                               "$DATA/flatpak/exports/share/applications",
                                               "/usr/local/share/applications",
                                               "/var/lib/flatpak/exports/share/applications",
                                               "/usr/share/applications",
                                               "/var/lib/snapd/desktop/applications"};

} // namespace

std::string AppNames::of(const std::string &id) {
    const auto [known, isNew] = known_.try_emplace(id, id);
    if (!isNew)
        return known->second;
    // A Snap package's entry has the name of the package before that of the program.
    for (const std::string &file : {id + ".desktop", id + "_" + id + ".desktop"})
        for (const char *folder : desktopEntryFolders)
            for (const std::string &path : places_.pathsOf(std::string(folder) + "/" + file)) {
                const KeyFile entry(contentsOfFile(path, desktopEntryLimit).value_or(""));
                std::string name = entry.text("Desktop Entry", "Name");
                if (!name.empty())
                    return known->second = std::move(name);
            }
    return known->second;
}

} // namespace brimvale::linuxCatalog
