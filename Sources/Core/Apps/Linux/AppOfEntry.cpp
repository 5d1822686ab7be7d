#include "Core/Apps/Linux/AppFinders.h"

#include <algorithm>

namespace brimvale::linuxApps {

namespace {

void addNew(std::vector<std::string> &texts, const std::string &text) {
    if (!text.empty() && std::find(texts.begin(), texts.end(), text) == texts.end())
        texts.push_back(text);
}

} // namespace

bool isInstalledName(std::string_view name) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    return !name.empty() && name.front() != '-' && name.front() != '.' &&
           name.find_first_not_of(allowed) == std::string_view::npos;
}

void addEntry(FoundApp &found, const DesktopEntry &entry, bool isMain) {
    if (isMain) {
        found.app.name = entry.name;
        found.icon = entry.icon;
    }
    AppNames &names = found.app.names;
    addNew(names.identifiers, entry.id);
    addNew(names.windowClasses, entry.windowClass);
    addNew(names.names, entry.name);
    for (const std::string &category : entry.categories)
        addNew(names.categories, category);
    if (entry.flatpak.empty()) { // whose commands are inside its sandbox
        const std::string program = entry.program();
        addNew(names.programs, program.substr(program.rfind('/') + 1));
    }
}

} // namespace brimvale::linuxApps
