#include "Platform/Linux/SafeMove.h"

#include "Platform/Posix/OpenFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

bool isItem(const OpenedItem &item, int folder, const std::string &name) {
    const std::optional<ItemIdentity> found = identityOfEntry(folder, name.c_str());
    return found && found->isSameAs(item.identity());
}

int moveFolderOntoEmpty(const OpenedItem &item, int folder, const std::string &name) {
    if (mkdirat(folder, name.c_str(), 0700) != 0)
        return errno;
    if (renameat(item.folder().descriptor(), item.name().c_str(), folder, name.c_str()) == 0)
        return 0;
    const int error = errno;
    unlinkat(folder, name.c_str(), AT_REMOVEDIR);
    return error == ENOTEMPTY ? EEXIST : error;
}

/// Removes one of several names of a file. The last one stays, because another program may have put its own
/// file there.
void removeExtraName(int folder, const std::string &name) {
    struct stat status {};
    if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && status.st_nlink > 1)
        unlinkat(folder, name.c_str(), 0);
}

int moveByLink(const OpenedItem &item, int folder, const std::string &name) {
    if (linkat(item.folder().descriptor(), item.name().c_str(), folder, name.c_str(), 0) != 0)
        return errno;
    if (isItem(item, folder, name) && item.isStillThere()) {
        if (unlinkat(item.folder().descriptor(), item.name().c_str(), 0) == 0)
            return 0;
        const int error = errno;
        removeExtraName(folder, name);
        return error;
    }
    removeExtraName(folder, name);
    return ESTALE;
}

} // namespace

int moveByReserving(const OpenedItem &item, int folder, const std::string &name) {
    return item.isFolder() ? moveFolderOntoEmpty(item, folder, name) : moveByLink(item, folder, name);
}

int moveUnlessThere(const OpenedItem &item, int folder, const std::string &name) {
    if (!item.isStillThere())
        return ESTALE;
    const int from = item.folder().descriptor();
    if (renameat2(from, item.name().c_str(), folder, name.c_str(), RENAME_NOREPLACE) != 0)
        return errno == EINVAL || errno == ENOSYS ? moveByReserving(item, folder, name) : errno;
    if (isItem(item, folder, name))
        return 0;
    // Another item took the name at the last moment; that one goes back.
    const bool isBack = renameat2(folder, name.c_str(), from, item.name().c_str(), RENAME_NOREPLACE) == 0;
    return isBack ? ESTALE : 0;
}

} // namespace brimvale
