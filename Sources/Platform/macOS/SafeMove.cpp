#include "Platform/Posix/SafeMove.h"

#include "Platform/Posix/OpenFile.h"

#include <cerrno>
#include <cstdio>
#include <optional>

namespace brimvale {

int moveUnlessThere(const OpenedItem &item, int folder, const std::string &name) {
    if (!item.isStillThere())
        return ESTALE;
    const int from = item.folder().descriptor();
    if (renameatx_np(from, item.name().c_str(), folder, name.c_str(), RENAME_EXCL) != 0)
        return errno; // also ENOTSUP, where the file system cannot rename without replacing
    const std::optional<ItemIdentity> moved = identityOfEntry(folder, name.c_str());
    if (!moved || moved->isSameAs(item.identity()))
        return 0;
    // Another item took the name at the last moment; that one goes back.
    const bool isBack = renameatx_np(folder, name.c_str(), from, item.name().c_str(), RENAME_EXCL) == 0;
    return isBack ? ESTALE : 0;
}

} // namespace brimvale
