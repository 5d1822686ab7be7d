#include "Platform/FileRemoval.h"

#include "Platform/FileOperation.h"
#include "Platform/Posix/TreeRemoval.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

std::optional<FileError> failure(const OpenedItem &item, int error, std::string entry = "") {
    if (error == 0)
        return std::nullopt;
    FileError failed = fileError(FileOperation::remove, item.place(), error);
    failed.entry = std::move(entry);
    return failed;
}

std::optional<FileError> removeTree(const OpenedItem &item, RemovalProgress &progress) {
    TreeRemoval removal(item, progress);
    const int error = removal.run();
    return failure(item, error, removal.failedEntry());
}

std::optional<FileError> remove(const OpenedItem &item, RemovalProgress &progress) {
    if (progress.cancelled.isSet())
        return failure(item, ECANCELED);
    if (!item.isStillThere())
        return failure(item, ESTALE);
    // A folder that may not be removed itself stays complete: this fails before anything in it is removed.
    if (unlinkat(item.folder().descriptor(), item.name().c_str(), item.isFolder() ? AT_REMOVEDIR : 0) != 0)
        return item.isFolder() && errno == ENOTEMPTY ? removeTree(item, progress) : failure(item, errno);
    ++progress.entriesRemoved;
    return std::nullopt;
}

} // namespace

std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) {
    RemovalProgress unwatched;
    return remove(item, progress != nullptr ? *progress : unwatched);
}

} // namespace brimvale
