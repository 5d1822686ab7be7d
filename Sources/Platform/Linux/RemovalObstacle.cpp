#include "Platform/RemovalObstacle.h"

#include "Platform/OpenedItem.h"

#include <fcntl.h>
#include <linux/stat.h>
#include <string>
#include <sys/stat.h>

namespace brimvale {

namespace {

/// The attributes of an entry of an open folder, or with an empty name those of the folder itself.
std::uint64_t attributesOf(const Folder &folder, const std::string &name) {
    struct statx status {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH;
    return statx(folder.descriptor(), name.c_str(), flags, STATX_TYPE, &status) == 0 ? status.stx_attributes
                                                                                     : 0;
}

} // namespace

// `statx` tells the flags of FS_IOC_GETFLAGS too, and needs no permission to read the item.
RemovalObstacle removalObstacle(const FileURL &item) {
    const Result<OpenedItem, int> found = OpenedItem::at(item);
    const auto *opened = std::get_if<OpenedItem>(&found);
    if (opened == nullptr)
        return RemovalObstacle::none;
    const std::uint64_t own = attributesOf(opened->folder(), opened->name());
    const std::uint64_t above = attributesOf(opened->folder(), "");
    if ((own & STATX_ATTR_IMMUTABLE) != 0)
        return RemovalObstacle::immutable;
    if ((own & STATX_ATTR_APPEND) != 0)
        return RemovalObstacle::appendOnly;
    if ((above & STATX_ATTR_IMMUTABLE) != 0)
        return RemovalObstacle::immutableParent;
    return (above & STATX_ATTR_APPEND) != 0 ? RemovalObstacle::appendOnlyParent : RemovalObstacle::none;
}

std::string_view commandAgainst(RemovalObstacle obstacle) {
    switch (obstacle) {
    case RemovalObstacle::immutable:
    case RemovalObstacle::immutableParent:
        return "chattr -i";
    case RemovalObstacle::appendOnly:
    case RemovalObstacle::appendOnlyParent:
        return "chattr -a";
    default:
        return "";
    }
}

} // namespace brimvale
