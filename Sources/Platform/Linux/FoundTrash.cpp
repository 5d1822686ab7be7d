#include "Platform/Linux/FoundTrash.h"

#include "Platform/Folder.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/TrashFolder.h"
#include "Platform/Mounts.h"
#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/OwnTrash.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

constexpr int onlyToReach = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// A subfolder that belongs to the user; not open where it is a link, a mount point or another user's.
Descriptor openOwn(const Descriptor &parent, const std::string &name, const Place &place) {
    Descriptor folder(openat(parent.number(), name.c_str(), onlyToReach | O_NOFOLLOW));
    return folder.isOpen() && isOwnFolder(folder, place) ? std::move(folder) : Descriptor();
}

/// Nothing can be put back from there, or deleted.
bool isReadOnly(const Descriptor &folder) {
    return faccessat(folder.number(), ".", W_OK, AT_EACCESS) != 0 && errno == EROFS;
}

FoundTrash opened(Descriptor folder, std::string base, bool isInHome) {
    FoundTrash trash;
    const std::optional<Place> place = folder.isOpen() ? placeOf(folder.number()) : std::nullopt;
    if (!place || !isOwnFolder(folder, *place) || isReadOnly(folder) || !isConfined(folder))
        return trash;
    trash.files = openOwn(folder, "files", *place);
    trash.info = openOwn(folder, "info", *place);
    trash.folder = std::move(folder);
    trash.base = std::move(base);
    trash.isInHome = isInHome;
    return trash;
}

/// The Trashes in the home folder: the user's; root's own, where the home is another user's; and those of
/// programs that are kept apart as snaps.
std::vector<FileURL> homeTrashes(const Host &host) {
    std::vector<FileURL> paths = {usualHomeTrash(), host.home.appending(".local/share/Trash")};
    const FileURL own = accountHome().appending(".local/share/Trash");
    if (geteuid() == 0 && isAtOrUnder(own.path(), host.root))
        paths.push_back(own);
    const FileURL snaps = host.home.appending("snap");
    for (const std::string &snap : namesIn(snaps.path()).value_or(std::vector<std::string>()))
        for (const std::string &version :
             namesIn(snaps.appending(snap).path()).value_or(std::vector<std::string>()))
            if (version != "current") // a link to another one
                paths.push_back(snaps.appending(snap).appending(version).appending(".local/share/Trash"));
    return paths;
}

FoundTrash openedHome(const FileURL &path) {
    return opened(Descriptor(open(path.path().c_str(), onlyToReach)), path.parent().path(), true);
}

/// Those at the top of a volume, first that in the Trash of all users.
std::vector<FoundTrash> openedAt(const Descriptor &top, const std::string &path) {
    std::vector<FoundTrash> found;
    const std::optional<Place> place = top.isOpen() ? placeOf(top.number()) : std::nullopt;
    if (!place)
        return found;
    const std::string user = std::to_string(geteuid());
    if (const Descriptor shared = sharedTrashAt(top); shared.isOpen())
        found.push_back(opened(openOwn(shared, user, *place), path, false));
    found.push_back(opened(openOwn(top, ".Trash-" + user, *place), path, false));
    std::erase_if(found, [](const FoundTrash &trash) { return !trash.isOpen(); });
    return found;
}

std::optional<FileIdentity> identityOf(const Descriptor &folder) {
    const std::optional<Place> place = folder.isOpen() ? placeOf(folder.number()) : std::nullopt;
    return place ? std::optional(place->identity) : std::nullopt;
}

/// All that an item on this way may be in.
std::vector<FoundTrash> candidatesOn(const WayUp &way) {
    std::vector<FoundTrash> candidates;
    for (const FileURL &path : homeTrashes(Host::current()))
        candidates.push_back(openedHome(path));
    for (FoundTrash &trash : openedAt(way.top, way.top.isOpen() ? pathOf(way.top.number()) : ""))
        candidates.push_back(std::move(trash));
    return candidates;
}

bool mayHoldTrash(const Mount &mount) {
    // A container's files are seen twice: in layers, and merged.
    const bool isMerged = mount.type == "overlay" && mount.point != "/";
    return !isMerged && mount.type != "squashfs" && !isAtOrUnder(mount.point, "/dev") &&
           !isAtOrUnder(mount.point, "/sys") && !isAtOrUnder(mount.point, "/proc");
}

/// Whether there is such a folder that the user may not use; or it is missing, and the user may not make it.
bool isBarred(const Descriptor &parent, const std::string &name, const Place &place) {
    if (faccessat(parent.number(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0)
        return !openOwn(parent, name, place).isOpen();
    return errno != ENOENT || faccessat(parent.number(), ".", W_OK | X_OK, AT_EACCESS) != 0;
}

} // namespace

FoundTrash FoundTrash::around(int files) {
    const Descriptor above(openat(files, "..", onlyToReach));
    const Descriptor itself(openat(files, ".", onlyToReach));
    const std::optional<FileIdentity> wanted = identityOf(above), holder = identityOf(itself);
    if (!wanted || !holder)
        return {};
    for (FoundTrash &trash : candidatesOn(WayUp::from(files)))
        if (trash.isOpen() && identityOf(trash.folder) == wanted && identityOf(trash.files) == holder)
            return std::move(trash);
    return {};
}

std::vector<FoundTrash> FoundTrash::all(const Host &host) {
    std::vector<FoundTrash> found;
    for (const FileURL &path : homeTrashes(host))
        found.push_back(openedHome(path));
    for (const std::string &top : topsWithTrash(host))
        for (FoundTrash &trash : openedAt(Descriptor(open(top.c_str(), onlyToReach)), top))
            found.push_back(std::move(trash));
    std::vector<FileIdentity> known;
    std::erase_if(found, [&](const FoundTrash &trash) {
        const std::optional<FileIdentity> identity = identityOf(trash.folder);
        if (!identity || std::find(known.begin(), known.end(), *identity) != known.end())
            return true;
        known.push_back(*identity);
        return false;
    });
    return found;
}

bool haveTrash(const WayUp &way) {
    const std::vector<FoundTrash> candidates = candidatesOn(way);
    return std::any_of(candidates.begin(), candidates.end(), [&](const FoundTrash &trash) {
        const std::optional<FileIdentity> identity = identityOf(trash.folder);
        return identity && std::find(way.folders.begin(), way.folders.end(), *identity) != way.folders.end();
    });
}

std::vector<std::string> topsWithTrash(const Host &host) {
    const std::vector<std::string> pseudo = pseudoMountPoints();
    MountPoints mounts;
    std::vector<std::string> tops;
    for (const Mount &mount : currentMounts())
        if (isAtOrUnder(mount.point, host.root) && mayHoldTrash(mount) && !mounts.mayBlock(mount.point) &&
            std::find(pseudo.begin(), pseudo.end(), mount.point) == pseudo.end())
            tops.push_back(mount.point);
    return tops;
}

std::vector<std::string> trashFoldersAt(const std::string &top) {
    const Descriptor folder(open(top.c_str(), onlyToReach));
    const std::optional<Place> place = folder.isOpen() ? placeOf(folder.number()) : std::nullopt;
    if (!place)
        return {};
    const std::string user = std::to_string(geteuid());
    std::vector<std::string> paths;
    if (const Descriptor shared = sharedTrashAt(folder); shared.isOpen() && !isBarred(shared, user, *place))
        paths.push_back(joinPath(joinPath(top, ".Trash"), user));
    if (!isBarred(folder, ".Trash-" + user, *place))
        paths.push_back(joinPath(top, ".Trash-" + user));
    return paths;
}

bool isOwnTrash(const Folder &folder) {
    return FoundTrash::around(folder.descriptor()).isOpen();
}

} // namespace brimvale
