#include "Core/Apps/Linux/AppFinders.h"

#include "Base/Text.h"
#include "Core/Apps/Linux/EntrySearch.h"
#include "Core/Apps/Linux/Packages.h"
#include "Core/Apps/Linux/SoftwareLinks.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>
#include <variant>

namespace brimvale::linuxApps {

namespace {

constexpr std::string_view steamAddress = "steam://rungameid/";
constexpr std::size_t mostManifestBytes = 65'536;

/// An entry with what has been found out about its program.
struct Candidate {
    const DesktopEntry *entry;
    std::string program;     ///< its file; empty where there is none
    std::string realProgram; ///< the same without links
    std::string ownFolder;   ///< empty for a program of the system
};

/// The applications so far, by what identifies them.
using Apps = std::map<std::string, FoundApp>;

const std::string *wordStartingWith(const DesktopEntry &entry, std::string_view start) {
    const auto word = std::find_if(entry.command.begin(), entry.command.end(),
                                   [&](const std::string &one) { return one.starts_with(start); });
    return word == entry.command.end() ? nullptr : &*word;
}

/// Empty where there is nothing.
std::string placeWithoutLinks(const std::string &path) {
    std::error_code error;
    return path.empty() ? "" : std::filesystem::canonical(path, error).native();
}

std::vector<Candidate> candidatesAmong(const std::vector<DesktopEntry> &entries, const DesktopPlaces &places,
                                       const std::vector<std::string> &taken) {
    std::vector<Candidate> candidates;
    for (const DesktopEntry &entry : entries) {
        if (!entry.isListed || !entry.flatpak.empty() || !entry.snap.empty() ||
            std::find(taken.begin(), taken.end(), entry.id) != taken.end())
            continue;
        std::string program = programFile(entry.program(), places);
        std::string folder = program.empty() ? "" : ownFolderOf(program, places);
        std::string real = placeWithoutLinks(program);
        candidates.push_back({&entry, std::move(program), std::move(real), std::move(folder)});
    }
    return candidates;
}

Owners ownersOfCandidates(const std::vector<Candidate> &candidates, const DesktopPlaces &places) {
    std::vector<std::string> paths;
    for (const Candidate &one : candidates) {
        paths.push_back(places.pathOnHost(one.entry->path));
        for (const std::string &path : one.entry->replaced)
            paths.push_back(places.pathOnHost(path));
        for (const std::string &path : {one.ownFolder, one.realProgram})
            if (!one.ownFolder.empty())
                paths.push_back(places.pathOnHost(path));
    }
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    return ownersOf(paths, places);
}

/// The package of an entry: the owner of its file, of a file that it replaces, or of what is in its own
/// folder.
const Package *ownerOf(const Candidate &candidate, const Owners &owners, const DesktopPlaces &places) {
    std::vector<std::string> paths = {candidate.entry->path};
    paths.insert(paths.end(), candidate.entry->replaced.begin(), candidate.entry->replaced.end());
    if (!candidate.ownFolder.empty())
        paths.insert(paths.end(), {candidate.ownFolder, candidate.realProgram});
    for (const std::string &path : paths)
        if (const auto owner = owners.find(places.pathOnHost(path)); owner != owners.end())
            return &owner->second;
    return nullptr;
}

FoundApp appAt(const std::string &path, AppKind kind, const DesktopEntry &entry) {
    const FileURL url(path);
    return {InstalledApp{.url = url,
                         .name = entry.name,
                         .bundleID = entry.id,
                         .version = {},
                         .lastUsed = {},
                         .pin = pinOf(url),
                         .kind = kind},
            entry.icon};
}

/// Whether an id, or its part after the last dot, is this name in any case.
bool isNamed(const std::string &id, const std::string &name) {
    const auto isSame = [&](std::string_view text) {
        return std::equal(text.begin(), text.end(), name.begin(), name.end(),
                          [](char a, char b) { return lowered(a) == lowered(b); });
    };
    return isSame(id) || isSame(std::string_view(id).substr(id.rfind('.') + 1));
}

/// Adds an entry to the application that `key` stands for. The entry with `main` as its id names it, or else
/// the one with the shortest id.
void addToApp(Apps &apps, const std::string &key, const std::string &main, FoundApp &&made,
              const Candidate &candidate) {
    const DesktopEntry &entry = *candidate.entry;
    FoundApp &found = apps.try_emplace(key, std::move(made)).first->second;
    const std::string &id = *found.app.bundleID;
    const bool isMain = isNamed(entry.id, main) || (!isNamed(id, main) && entry.id.size() <= id.size());
    addEntry(found, entry, isMain);
    if (isMain) {
        found.app.bundleID = entry.id;
        if (found.app.kind == AppKind::package)
            found.app.url = FileURL(entry.path);
    }
    if (!candidate.program.empty())
        found.app.names.files.push_back(candidate.program);
}

void addPackage(Apps &apps, const Candidate &candidate, const Package &package) {
    FoundApp made = appAt(candidate.entry->path, AppKind::package, *candidate.entry);
    made.app.isSystemApp = package.isOfSystem;
    made.app.origin = package.name;
    made.app.knownSize = package.size;
    made.app.removal = RemovedInTerminal{package.removeCommand};
    if (!package.version.empty())
        made.app.version = package.version;
    addToApp(apps, "package " + package.name, package.name, std::move(made), candidate);
}

/// What a game of Steam takes, from the file that Steam keeps about it.
std::optional<std::int64_t> sizeOfGame(std::string_view number, const DesktopPlaces &places) {
    constexpr std::string_view key = "\"SizeOnDisk\"";
    for (const std::string &data : places.ownData) {
        const std::string manifest =
            contentsOfFile(joinPath(data, "Steam/steamapps/appmanifest_" + std::string(number) + ".acf"),
                           mostManifestBytes)
                .value_or("");
        const std::size_t start = manifest.find_first_of("0123456789", manifest.find(key));
        std::int64_t bytes = 0;
        if (manifest.find(key) != std::string::npos && start != std::string::npos &&
            std::from_chars(manifest.data() + start, manifest.data() + manifest.size(), bytes).ec ==
                std::errc())
            return bytes;
    }
    return std::nullopt;
}

/// What another program has added; false for any other entry.
bool addFromOtherProgram(Apps &apps, const Candidate &candidate, const DesktopPlaces &places) {
    const DesktopEntry &entry = *candidate.entry;
    const std::string program = entry.program();
    const auto add = [&](AppKind kind, const std::string &remover, std::optional<std::int64_t> size) {
        FoundApp made = appAt(entry.path, kind, entry);
        made.app.removal = RemovedElsewhere{remover};
        made.app.knownSize = size;
        made.app.names.identifiers = {entry.id};
        apps.try_emplace("entry " + entry.id, std::move(made));
        return true;
    };
    if (const std::string *game = wordStartingWith(entry, steamAddress))
        return add(AppKind::steamGame, "Steam",
                   sizeOfGame(std::string_view(*game).substr(steamAddress.size()), places));
    if (wordStartingWith(entry, "--app-id=") != nullptr || wordStartingWith(entry, "--app=") != nullptr)
        return add(AppKind::webApp, "the browser", 0);
    const std::string_view name = std::string_view(program).substr(program.rfind('/') + 1);
    if (name.starts_with("wine") || entry.id.starts_with("wine-"))
        return add(AppKind::windowsProgram, "Wine", 0);
    return false;
}

/// A program of the maker that removes the application, in its folder; empty where there is none.
std::string uninstallerIn(const std::string &folder) {
    std::vector<std::string> names = namesIn(folder).value_or(std::vector<std::string>());
    std::sort(names.begin(), names.end());
    for (const std::string &name : names) {
        std::string small(name);
        std::transform(small.begin(), small.end(), small.begin(), lowered);
        if (small.starts_with("uninstall") || small.starts_with("unins"))
            return joinPath(folder, name);
    }
    return "";
}

void addByHand(Apps &apps, const Candidate &candidate) {
    constexpr std::string_view toolbox = "/JetBrains/Toolbox/apps/";
    FoundApp made = appAt(candidate.ownFolder, AppKind::byHand, *candidate.entry);
    if (candidate.ownFolder.find(toolbox) != std::string::npos)
        made.app.removal = RemovedElsewhere{"JetBrains Toolbox"};
    else
        made.app.removal = RemovedAsItem{uninstallerIn(candidate.ownFolder)};
    addToApp(apps, candidate.ownFolder, "", std::move(made), candidate);
}

/// The entry of a package whose manager is not known: in a folder of the system, with a program that exists.
void addUnknown(Apps &apps, const Candidate &candidate, const DesktopPlaces &places) {
    const bool isOwn =
        std::any_of(places.ownData.begin(), places.ownData.end(),
                    [&](const std::string &folder) { return isAtOrUnder(candidate.entry->path, folder); });
    if (isOwn || candidate.program.empty())
        return;
    FoundApp made = appAt(candidate.entry->path, AppKind::package, *candidate.entry);
    made.app.removal = RemovedInTerminal{};
    addToApp(apps, "entry " + candidate.entry->id, candidate.entry->id, std::move(made), candidate);
}

void addLink(InstalledApp &app, const SoftwareLinks &links) {
    if (auto *way = std::get_if<RemovedInTerminal>(&app.removal); way != nullptr && app.bundleID)
        way->softwareLink = links.of(*app.bundleID);
}

} // namespace

std::vector<FoundApp> appsOfEntries(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries,
                                    const std::vector<std::string> &taken) {
    const std::vector<Candidate> candidates = candidatesAmong(entries, places, taken);
    const Owners owners = ownersOfCandidates(candidates, places);
    Apps apps;
    for (const Candidate &candidate : candidates) {
        if (const Package *package = ownerOf(candidate, owners, places))
            addPackage(apps, candidate, *package);
        else if (addFromOtherProgram(apps, candidate, places))
            continue;
        else if (!candidate.ownFolder.empty())
            addByHand(apps, candidate);
        else
            addUnknown(apps, candidate, places);
    }
    const SoftwareLinks links(places, entries);
    std::vector<FoundApp> found;
    for (auto &[key, app] : apps) {
        addLink(app.app, links);
        found.push_back(std::move(app));
    }
    return found;
}

} // namespace brimvale::linuxApps
