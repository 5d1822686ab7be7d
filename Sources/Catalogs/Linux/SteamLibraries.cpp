#include "Catalogs/Linux/SteamLibraries.h"

#include "Catalogs/Linux/CleanupRecords.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"
#include "Platform/Mounts.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t steamFileLimit = 4'194'304; // bytes; a list of libraries names every game

/// Numbers from here on are those of programs that the user has added: Steam has no list of these.
constexpr std::size_t digitsOfOwnPrograms = 10;

/// The next text in quotes, after which the reading goes on; nothing at the end.
std::optional<std::string> nextQuoted(std::string_view &rest) {
    const std::size_t start = rest.find('"');
    if (start == std::string_view::npos)
        return std::nullopt;
    std::string word;
    std::size_t at = start + 1;
    for (; at < rest.size() && rest[at] != '"'; ++at) {
        if (rest[at] == '\\' && at + 1 < rest.size())
            ++at;
        word += rest[at];
    }
    rest.remove_prefix(std::min(at + 1, rest.size()));
    return word;
}

/// The values of a key in a file of Steam, which is pairs of quoted texts in braces.
std::vector<std::string> valuesIn(const std::string &file, std::string_view key) {
    const std::string text = contentsOfFile(file, steamFileLimit).value_or("");
    std::vector<std::string> values;
    std::string_view rest = text;
    while (const std::optional<std::string> word = nextQuoted(rest))
        if (*word == key)
            if (std::optional<std::string> value = nextQuoted(rest))
                values.push_back(*std::move(value));
    return values;
}

void addGamesIn(const std::string &library, std::map<std::string, std::string> &games) {
    const std::string folder = joinPath(library, "steamapps");
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
        if (!fitsPattern(name, "appmanifest_*.acf"))
            continue;
        constexpr std::size_t before = std::string_view("appmanifest_").size();
        const std::string number(deletingPathExtension(std::string_view(name).substr(before)));
        const std::vector<std::string> names = valuesIn(joinPath(folder, name), "name");
        games[number] = names.empty() ? number : names.front();
    }
}

void addLibrary(SteamLibraries &found, const std::string &path) {
    if (std::find(found.libraries.begin(), found.libraries.end(), path) != found.libraries.end())
        return;
    found.libraries.push_back(path);
    addGamesIn(path, found.games);
}

std::shared_ptr<const ProgramSigns> steamSigns(const CleanupSearch &search) {
    return search.signsOf(
        {.name = "Steam", .processes = {"steam"}, .locks = {"~/.steampid", "~/.steam/steam.pid"}});
}

bool isGameNumber(const std::string &name) {
    return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

SteamLibraries steamLibraries(CleanupSearch &search) {
    SteamLibraries found;
    found.installations = search.find(
        {"$DATA/Steam", "~/.steam/steam", "~/.steam/root", "~/.steam/debian-installation",
         "~/.var/app/com.valvesoftware.Steam/.local/share/Steam",
         "~/.var/app/com.valvesoftware.Steam/data/Steam", "~/snap/steam/common/.local/share/Steam"});
    MountPoints mounts;
    for (const std::string &installation : found.installations) {
        addLibrary(found, installation);
        for (const std::string &path :
             valuesIn(joinPath(installation, "steamapps/libraryfolders.vdf"), "path")) {
            const std::string library = path.starts_with('/') ? search.places().placed(path) : "";
            const bool isThere =
                !library.empty() && !mounts.mayBlock(library) && fileStatus(joinPath(library, "steamapps"));
            found.areAllThere = found.areAllThere && isThere;
            if (isThere && folderIdentity(library) != folderIdentity(installation))
                addLibrary(found, library);
        }
    }
    return found;
}

void findGameCaches(CleanupSearch &search) {
    const SteamLibraries steam = steamLibraries(search);
    const auto program = steamSigns(search);
    for (const std::string &library : steam.libraries)
        for (const auto &[folder, what] :
             {std::pair("shadercache", "shaders"), {"downloading", "download"}, {"temp", "temporary files"}})
            for (const std::string &inside : search.find({library + "/steamapps/" + folder}))
                for (const std::string &name : namesIn(inside).value_or(std::vector<std::string>())) {
                    const auto game = steam.games.find(name);
                    const std::string title = game == steam.games.end() ? "" : game->second + ": " + what;
                    search.add(joinPath(inside, name), {.name = title, .program = program});
                }
    for (const std::string &installation : steam.installations)
        for (const char *folder : {"appcache/httpcache", "logs", "depotcache"})
            for (const std::string &path : search.find({joinPath(installation, folder)}))
                search.add(path,
                           {.name = "Steam: " + std::string(FileURL(path).fileName()), .program = program});
}

/// Windows folders of games that were removed in Steam. Without a look at every library, a game may only be
/// on a disk that is not connected.
void findRemovedGames(CleanupSearch &search) {
    const SteamLibraries steam = steamLibraries(search);
    if (!steam.areAllThere)
        return;
    const auto program = steamSigns(search);
    for (const std::string &library : steam.libraries)
        for (const std::string &folder : search.find({library + "/steamapps/compatdata"}))
            for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
                if (isGameNumber(name) && name != "0" && name.size() < digitsOfOwnPrograms &&
                    !steam.games.contains(name))
                    search.add(joinPath(folder, name), {.name = "Removed game " + name, .program = program});
}

} // namespace brimvale::linuxCatalog
