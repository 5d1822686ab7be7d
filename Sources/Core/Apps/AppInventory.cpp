#include "Core/Apps/AppInventory.h"

#include "Catalogs/Catalog.h"
#include "Core/Apps/Linux/LinuxApps.h"
#include "Core/Text/Collation.h"
#include "Platform/Bundle.h"
#include "Platform/Dataless.h"
#include "Platform/Folder.h"
#include "Platform/LastUsed.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <queue>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brimvale::AppInventory {

namespace {

namespace fs = std::filesystem;

constexpr int levelsSearched = 3;

/// The folder's path with all links resolved; the path itself where that fails.
std::string placeOf(const std::string &folder) {
    std::error_code error;
    const fs::path place = fs::canonical(folder, error);
    return error ? folder : place.native();
}

bool isFolder(const std::string &path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// The names in a folder that are not hidden, in byte order.
std::vector<std::string> visibleNames(const std::string &path) {
    std::vector<std::string> names;
    Folder folder = Folder::at(path, Folder::Links::follow);
    while (const char *name = folder.nextName())
        if (name[0] != '.')
            names.emplace_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

struct FoundBundle {
    std::string path;
    std::string root;  ///< the searched folder
    std::string place; ///< the path without links
    bool isLink;
};

/// The bundles in these folders, each once: by the path found first, but not by a link to it if it is also
/// found itself.
std::vector<FoundBundle> eachOnce(const std::vector<std::string> &searched) {
    std::vector<FoundBundle> found;
    std::unordered_map<std::string, std::size_t> byPlace;
    for (const std::string &root : searched)
        for (std::string &path : bundles(root, levelsSearched)) {
            const FileURL url(path);
            const std::string place = placeOf(path);
            const bool isLink = place != joinPath(placeOf(url.parent().path()), url.fileName());
            const auto [known, isNew] = byPlace.try_emplace(place, found.size());
            if (isNew)
                found.push_back({std::move(path), root, place, isLink});
            else if (found[known->second].isLink && !isLink)
                found[known->second] = {std::move(path), root, place, false};
        }
    return found;
}

/// Whether a place without links is in one of the system's folders.
bool isInSystem(const std::string &place, const AppRoots &roots) {
    return std::any_of(roots.system.begin(), roots.system.end(), [&](const std::string &root) {
        return isAtOrUnder(place, root) || isAtOrUnder(place, placeOf(root));
    });
}

/// The first of these texts that is not empty.
std::string firstText(const std::optional<std::string> &first, const std::optional<std::string> &second,
                      std::string_view third) {
    if (first && !first->empty())
        return *first;
    return second && !second->empty() ? *second : std::string(third);
}

void sortByName(std::vector<InstalledApp> &apps) {
    std::stable_sort(apps.begin(), apps.end(), [](const InstalledApp &a, const InstalledApp &b) {
        return compareAsInFinder(a.name, b.name) < 0;
    });
}

} // namespace

std::vector<std::string> user(const Host &host) {
    return catalogOf(host.system).appRoots(host).user;
}

std::vector<InstalledApp> scan(bool includeSystem, const Host &host) {
    const Catalog &catalog = catalogOf(host.system);
    std::vector<InstalledApp> apps = scan(includeSystem, catalog.appRoots(host));
    const std::optional<DesktopPlaces> places = catalog.desktopPlaces(host);
    if (!places)
        return apps;
    for (InstalledApp &app : linuxApps::installedApps(*places))
        if (includeSystem || !app.isSystemApp)
            apps.push_back(std::move(app));
    sortByName(apps);
    return apps;
}

std::vector<InstalledApp> scan(bool includeSystem, const AppRoots &roots) {
    const NoMaterialization guard;
    std::vector<std::string> searched = roots.user;
    if (includeSystem)
        searched.insert(searched.end(), roots.system.begin(), roots.system.end());

    std::vector<InstalledApp> apps;
    for (const FoundBundle &bundle : eachOnce(searched))
        if (std::optional<InstalledApp> app =
                describe(bundle.path, roots.isSystem(bundle.root) || isInSystem(bundle.place, roots)))
            apps.push_back(*std::move(app));
    sortByName(apps);
    return apps;
}

std::vector<std::string> bundles(const std::string &root, int maxDepth) {
    const NoMaterialization guard;
    std::vector<std::string> found;
    std::queue<std::pair<std::string, int>> waiting;
    // Breadth first, so a folder with several links to it is entered where it is searched deepest.
    std::unordered_set<std::string> entered = {placeOf(root)};
    waiting.emplace(root, 0);
    while (!waiting.empty()) {
        const auto [folder, depth] = std::move(waiting.front());
        waiting.pop();
        for (const std::string &name : visibleNames(folder)) {
            std::string path = joinPath(folder, name);
            if (!isFolder(path))
                continue;
            if (name.ends_with(".app"))
                found.push_back(std::move(path));
            else if (depth < maxDepth && entered.insert(placeOf(path)).second)
                waiting.emplace(std::move(path), depth + 1);
        }
    }
    return found;
}

std::optional<InstalledApp> describe(const std::string &path, bool isSystem) {
    const NoMaterialization guard;
    const FileURL url(path);
    const std::optional<BundleInfo> info = bundleInfo(url);
    if (!info)
        return std::nullopt;
    std::error_code error;
    return InstalledApp{
        .url = url,
        .name = firstText(info->displayName, info->name, deletingPathExtension(url.fileName())),
        .bundleID = info->identifier,
        .version = info->shortVersion ? info->shortVersion : info->version,
        .isSystemApp = isSystem,
        .isMASApp = fs::exists(url.appending("Contents/_MASReceipt/receipt").path(), error),
        .lastUsed = lastUsedDate(url),
        .pin = pinOf(url),
    };
}

} // namespace brimvale::AppInventory
