#include "Core/Apps/Linux/AppFinders.h"

#include "Platform/FileAccess.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace brimvale::linuxApps {

namespace {

/// The folders of a program's parts inside its own.
constexpr std::string_view innerFolders[] = {"bin",     "sbin",  "lib",   "lib64",
                                             "libexec", "share", "games", "usr"};

bool isInner(std::string_view name) {
    return std::find(std::begin(innerFolders), std::end(innerFolders), name) != std::end(innerFolders);
}

/// The entry of `folder` that contains `path`; empty where it is not inside.
std::string entryAround(const std::string &path, const std::string &folder) {
    if (path == folder || !isAtOrUnder(path, folder))
        return "";
    return path.substr(0, path.find('/', folder.size() + 1));
}

bool isInAny(const std::string &path, const std::vector<std::string> &folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string &folder) { return isAtOrUnder(path, folder); });
}

/// Whether other programs or the user have something in a folder too. A hidden folder of the home is one of
/// tools that keep the programs of many.
bool isShared(const std::string &folder, const DesktopPlaces &places) {
    const FileURL url(folder);
    return std::any_of(places.shared.begin(), places.shared.end(),
                       [&](const std::string &one) { return isAtOrUnder(one, folder); }) ||
           isInAny(folder, places.documents) ||
           (url.parent().path() == places.home && url.fileName().starts_with('.')) ||
           itemExists(joinPath(folder, ".git"));
}

/// The folder around a program, without its inner folders.
std::string nearestFolder(const std::string &program) {
    FileURL folder = FileURL(program).parent();
    while (isInner(folder.fileName()))
        folder = folder.parent();
    return folder.path();
}

} // namespace

std::string ownFolderOf(const std::string &program, const DesktopPlaces &places) {
    std::error_code error;
    const std::string file = std::filesystem::canonical(program, error).native();
    if (error)
        return "";
    for (const std::string &folder : places.ofApplications)
        if (std::string own = entryAround(file, folder); !own.empty())
            return own;
    if (!isInAny(file, places.aroundApplications))
        return "";
    std::string nearest = nearestFolder(file);
    return isShared(nearest, places) ? file : nearest;
}

} // namespace brimvale::linuxApps
