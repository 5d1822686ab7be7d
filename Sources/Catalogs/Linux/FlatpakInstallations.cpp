#include "Catalogs/Linux/FlatpakInstallations.h"

#include "Base/KeyFile.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t installationFileLimit = 65'536; // bytes

void addInstallation(std::vector<FlatpakInstallation> &installations, FlatpakInstallation added) {
    if (std::none_of(installations.begin(), installations.end(),
                     [&](const FlatpakInstallation &one) { return one.folder == added.folder; }))
        installations.push_back(std::move(added));
}

/// Adds the installations in a file: each has its name in the heading of its group.
void addInstallationsIn(const std::string &file, const Places &places,
                        std::vector<FlatpakInstallation> &installations) {
    constexpr std::string_view heading = "Installation \"";
    const KeyFile settings(contentsOfFile(file, installationFileLimit).value_or(""));
    for (const std::string &group : settings.groups())
        if (const std::string path = settings.text(group, "Path");
            group.starts_with(heading) && path.starts_with('/')) {
            const std::string name = group.substr(heading.size());
            addInstallation(installations,
                            {places.placed(path), "--installation=" + name.substr(0, name.find('"'))});
        }
}

} // namespace

std::vector<FlatpakInstallation> flatpakInstallations(const Places &places) {
    std::vector<FlatpakInstallation> installations;
    for (const auto &[place, option] : {std::pair("$FLATPAK_USER_DIR", "--user"),
                                        {"$DATA/flatpak", "--user"},
                                        {"$FLATPAK_SYSTEM_DIR", "--system"},
                                        {"/var/lib/flatpak", "--system"}})
        for (std::string &folder : places.pathsOf(place))
            addInstallation(installations, {std::move(folder), option});
    for (const std::string &file : places.pathsOf("/etc/flatpak/installations.d/*"))
        if (file.ends_with(".conf"))
            addInstallationsIn(file, places, installations);
    return installations;
}

} // namespace brimvale::linuxCatalog
