// What Flatpak and Snap applications left behind, and the runtimes that no application uses.

#include "Catalogs/Linux/CleanupRecords.h"
#include "Catalogs/Linux/FlatpakInstallations.h"

#include "Base/KeyFile.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t flatpakFileLimit = 1'048'576; // bytes

using Names = std::set<std::string, std::less<>>;
using Installations = std::vector<FlatpakInstallation>;

std::vector<std::string> namesInside(const std::string &folder) {
    return namesIn(folder).value_or(std::vector<std::string>());
}

/// Whether all applications are known: an installation that cannot be listed has some, and one that the
/// settings name but that is not there may be on a disk that is not connected.
bool listApps(const Installations &installations, Names &apps) {
    for (const FlatpakInstallation &one : installations) {
        const std::string inside = joinPath(one.folder, "app");
        if (one.option.starts_with("--installation=") && !fileStatus(one.folder))
            return false;
        if (!fileStatus(inside)) {
            if (fileStatus(one.folder) && !namesIn(one.folder))
                return false; // perhaps it is there
            continue;
        }
        const std::optional<std::vector<std::string>> names = namesIn(inside);
        if (!names)
            return false;
        apps.insert(names->begin(), names->end());
    }
    return true;
}

/// What the applications and their runtimes need.
struct NeededRuntimes {
    Names runtimes;   ///< "ID/ARCH/BRANCH"
    Names extensions; ///< ids, also of those whose id goes on after a dot
};

/// Adds what a file "metadata" names.
void addNeeds(const std::string &metadata, NeededRuntimes &needed) {
    constexpr std::string_view extension = "Extension ";
    const KeyFile file(contentsOfFile(metadata, flatpakFileLimit).value_or(""));
    for (const std::string &group : file.groups()) {
        for (const char *key : {"runtime", "sdk"})
            if (const std::optional<std::string_view> runtime = file.raw(group, key))
                needed.runtimes.emplace(*runtime);
        if (group.starts_with(extension))
            needed.extensions.emplace(group.substr(extension.size()));
    }
}

bool isNeeded(const std::string &id, const std::string &runtime, const NeededRuntimes &needed) {
    const auto isOf = [&](const std::string &one) { return id == one || id.starts_with(one + "."); };
    // Translations and debugging symbols belong to a runtime by its name.
    const bool isPartOfOther =
        std::any_of(needed.runtimes.begin(), needed.runtimes.end(), [&](const std::string &one) {
            return id.starts_with(one.substr(0, one.find('/')) + ".");
        });
    return needed.runtimes.contains(runtime) || isPartOfOther ||
           std::any_of(needed.extensions.begin(), needed.extensions.end(), isOf);
}

/// The runtimes of an installation: "ID/ARCH/BRANCH".
std::vector<std::string> runtimesIn(const std::string &installation) {
    std::vector<std::string> runtimes;
    const std::string folder = joinPath(installation, "runtime");
    for (const std::string &id : namesInside(folder))
        for (const std::string &arch : namesInside(joinPath(folder, id)))
            for (const std::string &branch : namesInside(joinPath(folder, id + "/" + arch)))
                runtimes.push_back(std::string(id).append("/").append(arch).append("/").append(branch));
    return runtimes;
}

NeededRuntimes neededRuntimes(const Installations &installations) {
    NeededRuntimes needed;
    for (const FlatpakInstallation &one : installations)
        for (const std::string &app : namesInside(joinPath(one.folder, "app")))
            addNeeds(joinPath(one.folder, "app/" + app + "/current/active/metadata"), needed);
    const Names used = needed.runtimes;
    for (const FlatpakInstallation &one : installations)
        for (const std::string &runtime : used)
            addNeeds(joinPath(one.folder, "runtime/" + runtime + "/active/metadata"), needed);
    return needed;
}

void addRemovedSnaps(CleanupSearch &search) {
    Names installed;
    for (const std::string &folder : search.places().pathsOf("/var/lib/snapd/snaps"))
        for (const std::string &file : namesInside(folder))
            installed.insert(file.substr(0, file.rfind('_')));
    if (installed.empty()) // or they cannot be listed
        return;
    for (const std::string &folder : search.places().take({"~/snap/*"}))
        if (const std::string name(FileURL(folder).fileName()); !installed.contains(name))
            search.add(folder);
}

} // namespace

void findRemovedAppData(CleanupSearch &search) {
    Names apps;
    if (listApps(flatpakInstallations(search.places()), apps))
        for (const std::string &folder : search.places().take({"~/.var/app/*"}))
            if (const std::string id(FileURL(folder).fileName()); !apps.contains(id))
                search.add(folder);
    addRemovedSnaps(search);
}

void findUnusedRuntimes(CleanupSearch &search) {
    const Installations installations = flatpakInstallations(search.places());
    const NeededRuntimes needed = neededRuntimes(installations);
    for (const FlatpakInstallation &one : installations)
        for (const std::string &runtime : runtimesIn(one.folder)) {
            const std::string id = runtime.substr(0, runtime.find('/'));
            const std::string branch = runtime.substr(runtime.rfind('/') + 1);
            if (!isNeeded(id, runtime, needed))
                search.add(joinPath(one.folder, "runtime/" + runtime),
                           {.name = id + " " + branch,
                            .keptBecause = "Remove it with Flatpak.",
                            .command = "flatpak uninstall --unused"});
        }
}

} // namespace brimvale::linuxCatalog
