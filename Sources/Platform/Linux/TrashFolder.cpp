#include "Platform/Linux/TrashFolder.h"

#include "Platform/Confinement.h"
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

FileURL trashIn(const FileURL &dataFolder) {
    return dataFolder.standardized().appending("Trash");
}

/// A folder as far as it can be reached now.
struct Reached {
    Descriptor folder;   ///< the folder, or its nearest ancestor that can be opened
    bool isKnown = true; ///< whether the rest of the path is missing; otherwise it only cannot be opened now

    [[nodiscard]] static Reached at(FileURL path) {
        Reached reached;
        while (true) {
            reached.folder = Descriptor(open(path.path().c_str(), passThrough));
            if (reached.folder.isOpen())
                return reached;
            reached.isKnown = reached.isKnown && errno == ENOENT;
            if (path.path() == "/")
                return reached;
            path = path.parent();
        }
    }

    [[nodiscard]] bool isBeside(const Place &place) const {
        const std::optional<Place> found = folder.isOpen() ? placeOf(folder.number()) : std::nullopt;
        return found && found->isBeside(place);
    }
};

bool belongsToOrdinaryUser(const Descriptor &folder) {
    struct stat status {};
    return folder.isOpen() && fstat(folder.number(), &status) == 0 && status.st_uid != 0;
}

/// Whether we are root, and what we make for this Trash would be in the home of another user.
bool isInHomeOfAnother(const FileURL &trash, const Reached &reached) {
    if (geteuid() != 0)
        return false;
    const FileURL home = homeFolder();
    return belongsToOrdinaryUser(reached.folder) ||
           (isAtOrUnder(trash.path(), home.path()) && belongsToOrdinaryUser(Reached::at(home).folder));
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
/// as its parent. Otherwise not open, with errno set.
Descriptor ownFolder(const Descriptor &parent, const std::string &name, const Place &place) {
    const bool isMade = mkdirat(parent.number(), name.c_str(), ownersOnly) == 0;
    const int error = errno;
    Descriptor folder(openat(parent.number(), name.c_str(), passThrough | O_NOFOLLOW));
    if (!folder.isOpen()) {
        if (!isMade && errno == ENOENT)
            errno = error; // the reason why it is missing
        return folder;
    }
    if (isOwnFolder(folder, place))
        return folder;
    folder.close();
    errno = EPERM;
    return folder;
}

Descriptor openAtTop(const WayUp &way) {
    const std::string user = std::to_string(geteuid());
    const Descriptor all = sharedTrashAt(way.top);
    Descriptor shared = all.isOpen() ? ownFolder(all, user, way.place) : Descriptor();
    return shared.isOpen() ? std::move(shared) : ownFolder(way.top, ".Trash-" + user, way.place);
}

Descriptor openInHome(const FileURL &path) {
    makeFolders(path);
    return Descriptor(open(path.path().c_str(), passThrough));
}

} // namespace

FileURL usualHomeTrash() {
    const char *data = std::getenv("XDG_DATA_HOME");
    // The standard says to ignore relative paths.
    return trashIn(data != nullptr && data[0] == '/' ? FileURL(data)
                                                     : homeFolder().appending(".local/share"));
}

bool isOwnFolder(const Descriptor &folder, const Place &place) {
    struct stat status {};
    const std::optional<Place> found = placeOf(folder.number());
    return found && found->isBeside(place) && fstat(folder.number(), &status) == 0 &&
           status.st_uid == geteuid();
}

Descriptor sharedTrashAt(const Descriptor &top) {
    Descriptor shared(openat(top.number(), ".Trash", passThrough | O_NOFOLLOW));
    struct stat status {};
    const bool isRight = shared.isOpen() && fstat(shared.number(), &status) == 0 &&
                         (status.st_mode & S_ISVTX) != 0 &&
                         // Its owner may move our folder away.
                         (status.st_uid == 0 || status.st_uid == geteuid());
    return isRight ? std::move(shared) : Descriptor();
}

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

bool isConfined(const Descriptor &folder) {
    return isWithinConfinement(WayUp::from(folder.number()).folders);
}

TrashFolder TrashFolder::forItemsAt(const WayUp &way) {
    TrashFolder trash;
    FileURL home = usualHomeTrash();
    Reached reached = Reached::at(home);
    const bool isUsuallyInHome = reached.isBeside(way.place);
    if (isInHomeOfAnother(home, reached)) {
        home = trashIn(accountHome().appending(".local/share"));
        reached = Reached::at(home);
        trash.isInstead = isUsuallyInHome;
    }
    trash.isInHome = reached.isKnown && reached.isBeside(way.place);
    trash.isInstead = trash.isInstead || (isUsuallyInHome && !trash.isInHome);
    // Before a folder is made: a link on the way may lead out of a confinement.
    if (!isConfined(trash.isInHome ? reached.folder : way.top)) {
        trash.error = EXDEV;
        return trash;
    }
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
