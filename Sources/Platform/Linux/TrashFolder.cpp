#include "Platform/Linux/TrashFolder.h"

#include "Platform/Host.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

constexpr int passThrough = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t ownersOnly = 0700;

FileURL homeTrash() {
    const char *data = std::getenv("XDG_DATA_HOME");
    // The standard says to ignore relative paths.
    const FileURL dataFolder =
        data != nullptr && data[0] == '/' ? FileURL(data) : homeFolder().appending(".local/share");
    return dataFolder.standardized().appending("Trash");
}

/// Whether the folder at that path, or the ancestor in which it would be made, is at `place`.
bool isAt(const Place &place, FileURL path) {
    while (true) {
        const Descriptor folder(open(path.path().c_str(), passThrough));
        if (folder.isOpen()) {
            const std::optional<Place> found = placeOf(folder.number());
            return found && found->isBeside(place);
        }
        if (errno != ENOENT || path.path() == "/")
            return false;
        path = path.parent();
    }
}

/// Makes the folder and its missing ancestors.
void makeFolders(const FileURL &path) {
    std::vector<FileURL> missing;
    for (FileURL folder = path; mkdir(folder.path().c_str(), ownersOnly) != 0 && errno == ENOENT;
         folder = folder.parent())
        missing.push_back(folder);
    for (; !missing.empty(); missing.pop_back())
        mkdir(missing.back().path().c_str(), ownersOnly);
}

/// The folder `name`, made where it is missing. Accepted only if the user owns it and it is on the same mount
/// as its parent: a link or another user's folder could send our items anywhere. Otherwise not open, with
/// errno set.
Descriptor ownFolder(const Descriptor &parent, const std::string &name, const Place &place) {
    const bool isMade = mkdirat(parent.number(), name.c_str(), ownersOnly) == 0;
    const int error = errno;
    Descriptor folder(openat(parent.number(), name.c_str(), passThrough | O_NOFOLLOW));
    if (!folder.isOpen()) {
        if (!isMade && errno == ENOENT)
            errno = error; // the reason why it is missing
        return folder;
    }
    struct stat status {};
    const std::optional<Place> found = placeOf(folder.number());
    if (found && found->isBeside(place) && fstat(folder.number(), &status) == 0 && status.st_uid == geteuid())
        return folder;
    folder.close();
    errno = EPERM;
    return folder;
}

/// The user's folder in the Trash that an administrator made for everyone. That Trash must be a real folder
/// in which users cannot replace each other's files.
Descriptor ownFolderInShared(const WayUp &way, const std::string &user) {
    const Descriptor shared(openat(way.top.number(), ".Trash", passThrough | O_NOFOLLOW));
    struct stat status {};
    if (!shared.isOpen() || fstat(shared.number(), &status) != 0 || (status.st_mode & S_ISVTX) == 0)
        return {};
    return ownFolder(shared, user, way.place);
}

Descriptor openAtTop(const WayUp &way) {
    const std::string user = std::to_string(geteuid());
    Descriptor shared = ownFolderInShared(way, user);
    return shared.isOpen() ? std::move(shared) : ownFolder(way.top, ".Trash-" + user, way.place);
}

Descriptor openInHome(const FileURL &path) {
    makeFolders(path);
    return Descriptor(open(path.path().c_str(), passThrough));
}

} // namespace

WayUp WayUp::from(int folder) {
    WayUp way;
    const std::optional<Place> first = placeOf(folder);
    Descriptor top(openat(folder, ".", passThrough));
    if (!first || !top.isOpen())
        return way;
    way.place = *first;
    way.folders.push_back(first->identity);
    while (true) {
        Descriptor above(openat(top.number(), "..", passThrough));
        const std::optional<Place> place = above.isOpen() ? placeOf(above.number()) : std::nullopt;
        if (!place)
            return way;
        // The parent of "/" is "/" itself.
        if (!place->isBeside(way.place) || place->identity == way.folders.back())
            break;
        way.folders.push_back(place->identity);
        top = std::move(above);
    }
    way.top = std::move(top);
    return way;
}

std::string pathOf(int file) {
    std::error_code error;
    const std::filesystem::path link = "/proc/self/fd/" + std::to_string(file);
    std::string path = std::filesystem::read_symlink(link, error).native();
    return !error && path.starts_with('/') ? path : std::string();
}

TrashFolder TrashFolder::forItemsAt(const WayUp &way) {
    TrashFolder trash;
    const FileURL home = homeTrash();
    trash.isInHome = isAt(way.place, home);
    const Descriptor folder = trash.isInHome ? openInHome(home) : openAtTop(way);
    const std::optional<Place> place = folder.isOpen() ? placeOf(folder.number()) : std::nullopt;
    if (place) {
        trash.identity = place->identity;
        trash.files = ownFolder(folder, "files", way.place);
        if (trash.files.isOpen())
            trash.info = ownFolder(folder, "info", way.place);
    }
    if (!trash.isOpen())
        trash.error = errno;
    return trash;
}

} // namespace brimvale
