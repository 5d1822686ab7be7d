#include "Catalogs/Linux/FlatpakInstallations.h"

#include "Base/Text.h"
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
    constexpr std::string_view heading = "[Installation \"", pathKey = "Path=/";
    const std::string text = contentsOfFile(file, installationFileLimit).value_or("");
    std::string option;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.starts_with(heading)) {
            const std::string_view name = line.substr(heading.size());
            option = "--installation=" + std::string(name.substr(0, name.find('"')));
        } else if (line.starts_with(pathKey) && !option.empty()) {
            addInstallation(installations,
                            {places.placed(std::string(line.substr(pathKey.size() - 1))), option});
        }
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
