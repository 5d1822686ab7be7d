#include "Core/Apps/Linux/AppFinders.h"

#include "Base/Text.h"
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

/// Whether a folder is named after a program: "pycharm-2024.1" after "pycharm.sh".
bool isNamedAfter(std::string folder, std::string program) {
    program = program.substr(0, program.find_first_of("-_.", 1));
    for (std::string *name : {&folder, &program})
        std::transform(name->begin(), name->end(), name->begin(), lowered);
    constexpr std::size_t telling = 3; // shorter names are in many others
    return program.size() < telling ? folder == program : folder.find(program) != std::string::npos;
}

/// Whether other programs or the user have something in a folder too. A hidden folder of the home is one of
/// tools that keep the programs of many, and any other one there is the user's, for "Games" or "Projects",
/// unless it is named after the program.
bool isShared(const std::string &folder, const std::string &program, const DesktopPlaces &places) {
    const FileURL url(folder);
    const bool isAtTop = url.parent().path() == places.home;
    const std::string name(url.fileName()), programName(FileURL(program).fileName());
    return std::any_of(places.shared.begin(), places.shared.end(),
                       [&](const std::string &one) { return isAtOrUnder(one, folder); }) ||
           isInAny(folder, places.documents) ||
           (isAtTop && (name.starts_with('.') || !isNamedAfter(name, programName))) ||
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
    return isShared(nearest, file, places) ? file : nearest;
}

} // namespace brimvale::linuxApps
