#include "Platform/RemovalObstacle.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

unsigned flagsOf(const std::string &path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? status.st_flags : 0;
}

/// The system answers EPERM, not EACCES, when it keeps this program from listing a folder of the user.
bool isKeptPrivate(const std::string &path) {
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    const bool isRefused = folder < 0 && errno == EPERM;
    if (folder >= 0)
        close(folder);
    return isRefused;
}

/// The system also answers EPERM when it keeps this program from changing an application. Nothing is written.
bool isKeptUnchanged(const std::string &path) {
    const std::size_t end = (path + "/").find(".app/");
    if (end == std::string::npos)
        return false;
    const std::string list = path.substr(0, end) + ".app/Contents/Info.plist";
    const int file = open(list.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    const bool isRefused = file < 0 && errno == EPERM;
    if (file >= 0)
        close(file);
    return isRefused;
}

} // namespace

RemovalObstacle removalObstacle(const FileURL &item) {
    const std::string parent = item.parent().path();
    const unsigned own = flagsOf(item.path());
    const unsigned above = flagsOf(parent);
    if (((own | above) & SF_RESTRICTED) != 0 || (own & SF_NOUNLINK) != 0)
        return RemovalObstacle::restricted;
    if ((own & SF_IMMUTABLE) != 0)
        return RemovalObstacle::immutable;
    if ((own & SF_APPEND) != 0)
        return RemovalObstacle::appendOnly;
    if ((above & SF_IMMUTABLE) != 0)
        return RemovalObstacle::immutableParent;
    if ((above & SF_APPEND) != 0)
        return RemovalObstacle::appendOnlyParent;
    if ((own & (UF_IMMUTABLE | UF_APPEND)) != 0)
        return RemovalObstacle::locked;
    // An administrator's removal unlocks the item itself, but not its parent folder.
    if ((above & UF_IMMUTABLE) != 0)
        return RemovalObstacle::immutableParent;
    if ((above & UF_APPEND) != 0)
        return RemovalObstacle::appendOnlyParent;
    if (isKeptPrivate(item.path()) || isKeptPrivate(parent))
        return RemovalObstacle::privacyProtection;
    return isKeptUnchanged(item.path()) ? RemovalObstacle::appManagement : RemovalObstacle::none;
}

std::string_view commandAgainst(RemovalObstacle obstacle) {
    switch (obstacle) {
    case RemovalObstacle::immutable:
    case RemovalObstacle::immutableParent:
        return "chflags noschg,nouchg";
    case RemovalObstacle::appendOnly:
    case RemovalObstacle::appendOnlyParent:
        return "chflags nosappnd,nouappnd";
    default:
        return "";
    }
}

} // namespace brimvale
