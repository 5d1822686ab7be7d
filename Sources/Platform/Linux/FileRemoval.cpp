#include "Platform/FileRemoval.h"

#include "Platform/Linux/FileOperation.h"
#include "Platform/Linux/Place.h"
#include "Platform/Linux/TreeRemoval.h"

#include <cerrno>
#include <string>
#include <utility>

namespace brimvale {

namespace {

/// 0, or the errno of the failure.
int remove(const FileURL &item, RemovalProgress &progress) {
    if (!item.namesEntry())
        return EINVAL;
    Descriptor parent = openParentFolder(item);
    if (!parent.isOpen())
        return errno;
    if (progress.cancelled.isSet())
        return ECANCELED;
    const std::string name(item.fileName());
    // Removes anything but a folder at once; the system refuses folders here.
    if (unlinkat(parent.number(), name.c_str(), 0) == 0) {
        ++progress.entriesRemoved;
        return 0;
    }
    return errno == EISDIR ? TreeRemoval(std::move(parent), name, progress).run() : errno;
}

} // namespace

std::optional<FileError> removeItem(const FileURL &item, RemovalProgress *progress) {
    RemovalProgress unwatched;
    const int error = remove(item, progress != nullptr ? *progress : unwatched);
    return error == 0 ? std::nullopt : std::optional(fileError(FileOperation::remove, item, error));
}

} // namespace brimvale
