#include "Platform/Linux/TrashError.h"

#include "Base/Text.h"
#include "Platform/FileOperation.h"

#include <cerrno>
#include <linux/magic.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/vfs.h>

namespace brimvale {

namespace {

constexpr int unknownWriteError = 512; // of Cocoa's error domain

bool isOnOverlay(const Folder &folder) {
    struct statfs figures {};
    return fstatfs(folder.descriptor(), &figures) == 0 && figures.f_type == OVERLAYFS_SUPER_MAGIC;
}

/// The reasons that need other words than for a removal; empty for all others.
std::string_view ownReason(int errorNumber, const Folder &parent) {
    switch (errorNumber) {
    case EXDEV:
        return isOnOverlay(parent) ? "it is in a lower layer of the file system, which can’t move it"
                                   : "its file system can’t move it to where the Trash is";
    case EINVAL: // the only use of it here
        return "it is in the Trash already";
    case EBUSY:
        return "it is in use or a volume is mounted there";
    case EIO:
        return "the disk reports an error";
    case EMFILE:
    case ENFILE:
        return "too many files are open";
    case ENOMEM:
        return "there isn’t enough memory";
    case EFBIG:
        return "the limit on the size of files is too low";
    default:
        return {};
    }
}

} // namespace

FileError trashError(const OpenedItem &item, int errorNumber) {
    const std::string_view reason = ownReason(errorNumber, item.folder());
    if (reason.empty())
        return fileError(FileOperation::trash, item.place(), errorNumber);
    return {FileError::Domain::cocoa, unknownWriteError,
            "“" + displayText(item.name()) + "” couldn’t be moved to the trash because " +
                std::string(reason) + ".",
            std::make_shared<const FileError>(FileError::posix(errorNumber))};
}

bool meansNoTrash(int errorNumber) {
    switch (errorNumber) {
    case EACCES:
    case EPERM:
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return true;
    default:
        return false;
    }
}

} // namespace brimvale
