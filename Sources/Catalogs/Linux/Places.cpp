#include "Catalogs/Linux/Places.h"

#include "Platform/Confinement.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

struct BaseFolder {
    const char *name;     ///< in places of the catalog
    const char *variable; ///< in the environment
    const char *usual;    ///< in the home
};

constexpr BaseFolder knownBaseFolders[] = {{"$DATA", "XDG_DATA_HOME", ".local/share"},
                                           {"$CONFIG", "XDG_CONFIG_HOME", ".config"},
                                           {"$CACHE", "XDG_CACHE_HOME", ".cache"},
                                           {"$STATE", "XDG_STATE_HOME", ".local/state"}};

/// The usual names, in the home, of folders that the settings do not mention.
constexpr std::pair<std::string_view, const char *> usualUserFolders[] = {
    {"XDG_DESKTOP_DIR", "Desktop"},     {"XDG_DOCUMENTS_DIR", "Documents"}, {"XDG_DOWNLOAD_DIR", "Downloads"},
    {"XDG_MUSIC_DIR", "Music"},         {"XDG_PICTURES_DIR", "Pictures"},   {"XDG_PUBLICSHARE_DIR", "Public"},
    {"XDG_TEMPLATES_DIR", "Templates"}, {"XDG_VIDEOS_DIR", "Videos"}};

/// The folder that a variable of the environment names, if it does. It never names one on a disk in a folder.
std::vector<std::string> folderInEnvironment(const std::string &variable, const Host &host) {
    const char *chosen = std::getenv(variable.c_str());
    if (chosen == nullptr || chosen[0] != '/' || host.home != homeFolder() || confinement())
        return {};
    return {FileURL(chosen).standardized().path()};
}

/// The folder that the environment names and the usual one: a program that was started from the desktop does
/// not see what a shell sets.
std::vector<std::string> baseFoldersOf(const BaseFolder &folder, const Host &host) {
    std::vector<std::string> folders = folderInEnvironment(folder.variable, host);
    std::string usual = host.home.appending(folder.usual).path();
    if (folders.empty() || folders.front() != usual)
        folders.push_back(std::move(usual));
    return folders;
}

std::vector<std::string> sortedNames(const std::string &folder) {
    std::vector<std::string> names = namesIn(folder).value_or(std::vector<std::string>());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

Places::Places(const Host &host) : host_(host), userFolders_(userDirectories(host.home)) {
    for (const BaseFolder &one : knownBaseFolders)
        baseFolders_[one.name] = baseFoldersOf(one, host);
}

std::string Places::placed(const std::string &path) const {
    const bool isThere =
        isAtOrUnder(path, host_.home.path()) || (host_.root != "/" && isAtOrUnder(path, host_.root));
    return isThere ? path : host_.placeOf(path);
}

std::vector<std::string> Places::userFolder(std::string_view variable) const {
    if (const auto named = userFolders_.byKey.find(variable); named != userFolders_.byKey.end())
        return named->second ? std::vector{placed(named->second->path())} : std::vector<std::string>();
    for (const auto &[key, name] : usualUserFolders)
        if (key == variable)
            return {host_.home.appending(name).path()};
    return {};
}

/// What a variable at the start of a place stands for.
std::vector<std::string> Places::startsOf(std::string_view variable) const {
    if (const auto base = baseFolders_.find(variable); base != baseFolders_.end())
        return base->second;
    const std::string name(variable.substr(1));
    return name.starts_with("XDG_") ? userFolder(name) : folderInEnvironment(name, host_);
}

/// The paths of a place as they are written, with "*".
std::vector<std::string> Places::writtenPathsOf(std::string_view place) const {
    if (!place.starts_with('$'))
        return {placed(std::string(place))};
    const std::size_t end = std::min(place.find('/'), place.size());
    std::vector<std::string> paths = startsOf(place.substr(0, end));
    for (std::string &path : paths)
        path += place.substr(end);
    return paths;
}

std::vector<std::string> Places::pathsOf(std::string_view place) const {
    std::vector<std::string> paths;
    for (const std::string &path : writtenPathsOf(place))
        addListed("", path, paths);
    return paths;
}

std::vector<std::string> Places::foldersOf(std::string_view place) const {
    std::vector<std::string> folders = writtenPathsOf(place);
    for (std::string &folder : folders)
        folder = folder.substr(0, (folder + "/").find("/*/"));
    return folders;
}

/// Adds the paths that `rest`, which begins with a slash or is empty, stands for in a folder.
void Places::addListed(const std::string &folder, const std::string &rest, std::vector<std::string> &paths) {
    const std::size_t star = (rest + "/").find("/*/");
    if (star == std::string::npos) {
        paths.push_back(folder + rest);
        return;
    }
    const std::string listed = folder + rest.substr(0, star);
    for (const std::string &name : sortedNames(listed))
        addListed(joinPath(listed, name), rest.substr(star + 2), paths);
}

/// Whether a link at a path was made by the user: it is in the home, but not where applications in a sandbox
/// write, which could show any folder as theirs.
bool Places::mayBeLink(const std::string &path) const {
    const FileURL &home = host_.home;
    return isAtOrUnder(path, home.path()) && !path.starts_with(home.appending(".var/app/").path()) &&
           !path.starts_with(home.appending("snap/").path());
}

/// Where a path leads that may be a link; empty where nothing is or a link does not count.
std::string Places::realPath(const std::string &path) const {
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status)
        return "";
    if (status->kind != FileKind::other)
        return path;
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error).native();
    return error || !mayBeLink(path) ? "" : real;
}

std::vector<std::string> Places::take(const std::vector<std::string> &places) {
    std::vector<std::string> taken;
    for (const std::string &place : places)
        for (const std::string &path : pathsOf(place)) {
            std::string real = realPath(path);
            if (real.empty() || isAtOrUnder(host_.home.path(), real))
                continue;
            const std::optional<FileStatus> status = fileStatus(real);
            if (status && taken_.insert(status->identity).second)
                taken.push_back(std::move(real));
        }
    return taken;
}

} // namespace brimvale::linuxCatalog
