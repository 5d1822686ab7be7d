#include "Core/Apps/Linux/AppFinders.h"

#include "Core/Apps/Linux/EntrySearch.h"
#include "Platform/FileContents.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostDeployBytes = 16 << 20;

/// The folder of an installed Flatpak as an application, named by its identifier.
FoundApp flatpakIn(const std::string &folder, const std::string &id, const FlatpakInstallation &of) {
    const FileURL url(folder);
    FoundApp found{InstalledApp{.url = url,
                                .name = id,
                                .bundleID = id,
                                .version = {},
                                .lastUsed = {},
                                .pin = pinOf(url),
                                .kind = AppKind::flatpak}};
    const std::string deploy = joinPath(folder, "current/active/deploy");
    if (const auto said = parseFlatpakDeploy(contentsOfFile(deploy, mostDeployBytes).value_or(""))) {
        found.app.origin = said->origin;
        found.app.knownSize = said->installedSize;
        if (!said->version.empty())
            found.app.version = said->version;
    }
    found.app.names.identifiers = {id};
    // Without a question, but not with "--noninteractive": that would also forbid to ask for the password.
    found.app.removal = RemovedByCommand{"flatpak", {"uninstall", of.option, "-y", id}};
    return found;
}

} // namespace

std::vector<FoundApp> flatpakApps(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries) {
    std::vector<FoundApp> apps;
    for (const FlatpakInstallation &installation : places.flatpaks) {
        const std::string all = joinPath(installation.folder, "app");
        std::vector<std::string> ids = namesIn(all).value_or(std::vector<std::string>());
        std::sort(ids.begin(), ids.end());
        for (const std::string &id : ids) {
            const std::string folder = joinPath(all, id);
            if (!isInstalledName(id) || !folderIdentity(joinPath(folder, "current/active")))
                continue;
            FoundApp found = flatpakIn(folder, id, installation);
            for (const DesktopEntry &entry : entries)
                if (entry.flatpak == id && !entry.name.empty())
                    addEntry(found, entry, entry.id == id || found.app.name == id);
            apps.push_back(std::move(found));
        }
    }
    return apps;
}

} // namespace brimvale::linuxApps
