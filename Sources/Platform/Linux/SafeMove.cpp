#include "Platform/Linux/SafeMove.h"

#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/WriteBit.h"

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
    const int from = item.folder().descriptor();
    const int error = renameReadOnlyToo(
        item, [&] { return renameat(from, item.name().c_str(), folder, name.c_str()) == 0 ? 0 : errno; });
    if (error == 0)
        return 0;
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

int renameReadOnlyToo(const OpenedItem &item, const std::function<int()> &rename) {
    const int error = rename();
    if (error != EACCES || !item.isFolder())
        return error;
    const Folder own = item.folder().subfolder(item.name().c_str());
    WriteBit writeBit;
    if (own.identity() != item.identity().file || !writeBit.add(own))
        return error;
    const int errorAgain = rename();
    writeBit.takeBack(own);
    return errorAgain;
}

int moveByReserving(const OpenedItem &item, int folder, const std::string &name) {
    return item.isFolder() ? moveFolderOntoEmpty(item, folder, name) : moveByLink(item, folder, name);
}

int moveUnlessThere(const OpenedItem &item, int folder, const std::string &name) {
    if (!item.isStillThere())
        return ESTALE;
    const int from = item.folder().descriptor();
    const int error = renameReadOnlyToo(item, [&] {
        const char *newName = name.c_str();
        return renameat2(from, item.name().c_str(), folder, newName, RENAME_NOREPLACE) == 0 ? 0 : errno;
    });
    if (error != 0)
        return error == EINVAL || error == ENOSYS ? moveByReserving(item, folder, name) : error;
    if (isItem(item, folder, name))
        return 0;
    // Another item took the name at the last moment; that one goes back.
    const bool isBack = renameat2(folder, name.c_str(), from, item.name().c_str(), RENAME_NOREPLACE) == 0;
    return isBack ? ESTALE : 0;
}

} // namespace brimvale
