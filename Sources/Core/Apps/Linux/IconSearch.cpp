#include "Core/Apps/Linux/IconSearch.h"

#include "Base/FileURL.h"
#include "Base/KeyFile.h"
#include "Platform/FileAccess.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostIndexBytes = 1 << 20;

/// The folders of a theme that have icons of applications, the best size first. Some themes have the size
/// before the kind, others the kind before the size.
constexpr const char *sizes[] = {"64x64", "128x128", "48x48", "256x256", "scalable", "512x512", "32x32",
                                 "64",    "48",      "96",    "128",     "256",      "32"};

std::string_view withoutEnding(std::string_view name) {
    for (const std::string_view ending : {".png", ".svg"})
        if (name.ends_with(ending))
            return name.substr(0, name.size() - ending.size());
    return {};
}

/// The theme that the user has chosen for the desktop, as far as a file says so.
std::string chosenTheme(const DesktopPlaces &places) {
    for (const std::string &config : places.config) {
        const auto chosen = [&](const char *file, const char *group, const char *key) {
            return KeyFile(contentsOfFile(joinPath(config, file), mostIndexBytes).value_or(""))
                .text(group, key);
        };
        for (std::string theme : {chosen("kdeglobals", "Icons", "Theme"),
                                  chosen("gtk-4.0/settings.ini", "Settings", "gtk-icon-theme-name"),
                                  chosen("gtk-3.0/settings.ini", "Settings", "gtk-icon-theme-name")})
            if (!theme.empty() && theme.find('/') == std::string::npos)
                return theme;
    }
    return "Adwaita";
}

std::vector<std::string> themeFolders(const DesktopPlaces &places) {
    std::vector<std::string> folders = places.icons;
    for (const std::string &data : places.data)
        folders.push_back(joinPath(data, "icons"));
    return folders;
}

/// The names in a text with commas.
std::vector<std::string> inherited(const std::string &list) {
    std::vector<std::string> names;
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        names.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

} // namespace

IconSearch::IconSearch(const DesktopPlaces &places) : places_(places) {
    addTheme("hicolor");
    std::vector<std::string> waiting = {chosenTheme(places)};
    std::set<std::string> added = {"hicolor", ""};
    while (!waiting.empty()) {
        const std::string theme = std::move(waiting.front());
        waiting.erase(waiting.begin());
        if (!added.insert(theme).second)
            continue;
        addTheme(theme);
        for (const std::string &folder : themeFolders(places)) {
            const KeyFile index(
                contentsOfFile(joinPath(folder, theme + "/index.theme"), mostIndexBytes).value_or(""));
            for (std::string &parent : inherited(index.text("Icon Theme", "Inherits")))
                waiting.push_back(std::move(parent));
        }
    }
    for (const std::string &data : places.data)
        addFolder(joinPath(data, "pixmaps"));
}

void IconSearch::addTheme(const std::string &theme) {
    for (const std::string &folder : themeFolders(places_)) {
        const std::string themeFolder = joinPath(folder, theme);
        if (!folderIdentity(themeFolder))
            continue;
        for (const char *size : sizes) {
            addFolder(joinPath(themeFolder, std::string(size) + "/apps"));
            addFolder(joinPath(themeFolder, std::string("apps/") + size));
        }
    }
}

void IconSearch::addFolder(const std::string &folder) {
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
        if (const std::string_view icon = withoutEnding(name); !icon.empty())
            files_.try_emplace(std::string(icon), joinPath(folder, name));
}

std::string IconSearch::fileOf(std::string_view icon) const {
    if (icon.starts_with('/')) {
        std::string path = places_.placed(icon);
        return !withoutEnding(path).empty() && itemExists(path) ? path : "";
    }
    const std::string_view plain = withoutEnding(icon);
    for (const std::string_view name : {icon, plain})
        if (const auto file = files_.find(std::string(name)); !name.empty() && file != files_.end())
            return file->second;
    return "";
}

} // namespace brimvale::linuxApps
