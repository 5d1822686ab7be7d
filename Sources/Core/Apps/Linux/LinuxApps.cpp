#include "Core/Apps/Linux/LinuxApps.h"

#include "Core/Apps/Linux/AppFinders.h"
#include "Core/Apps/Linux/IconSearch.h"
#include "Core/Apps/Linux/LastUse.h"

#include <utility>

namespace brimvale::linuxApps {

namespace {

void append(std::vector<FoundApp> &all, std::vector<FoundApp> &&more) {
    for (FoundApp &one : more)
        all.push_back(std::move(one));
}

} // namespace

std::vector<InstalledApp> installedApps(const DesktopPlaces &places, const UserSession &session) {
    const std::vector<DesktopEntry> entries = desktopEntries(places, session);
    std::vector<FoundApp> found = flatpakApps(places, entries);
    append(found, snapApps(places, entries));
    append(found, appImages(places, entries));
    std::vector<std::string> taken;
    for (const FoundApp &one : found)
        taken.insert(taken.end(), one.app.names.identifiers.begin(), one.app.names.identifiers.end());
    append(found, appsOfEntries(places, entries, taken));

    const IconSearch icons(places);
    const LastUse lastUse(places);
    std::vector<InstalledApp> apps;
    for (FoundApp &one : found) {
        one.app.iconPath = icons.fileOf(one.icon);
        one.app.lastUsed = lastUse.of(one.app);
        apps.push_back(std::move(one.app));
    }
    return apps;
}

} // namespace brimvale::linuxApps
