#include "Platform/FileRemoval.h"

#include "Platform/FileOperation.h"
#include "Platform/Linux/TreeRemoval.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace brimvale {

namespace {

/// 0, or the errno of the failure.
int remove(const OpenedItem &item, RemovalProgress &progress) {
    if (progress.cancelled.isSet())
        return ECANCELED;
    if (!item.isStillThere())
        return ESTALE;
    // A folder that may not be removed itself stays complete: this fails before anything in it is removed.
    if (unlinkat(item.folder().descriptor(), item.name().c_str(), item.isFolder() ? AT_REMOVEDIR : 0) != 0)
        return item.isFolder() && errno == ENOTEMPTY ? TreeRemoval(item, progress).run() : errno;
    ++progress.entriesRemoved;
    return 0;
}

} // namespace

std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) {
    RemovalProgress unwatched;
    const int error = remove(item, progress != nullptr ? *progress : unwatched);
    return error == 0 ? std::nullopt : std::optional(fileError(FileOperation::remove, item.place(), error));
}

} // namespace brimvale
