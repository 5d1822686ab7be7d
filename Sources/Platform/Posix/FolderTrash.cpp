#include "Platform/FolderTrash.h"

#include "Platform/Confinement.h"
#include "Platform/FileOperation.h"
#include "Platform/Folder.h"
#include "Platform/Host.h"
#include "Platform/Posix/FolderRoute.h"
#include "Platform/Posix/SafeMove.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <variant>

namespace brimvale {

namespace {

/// "a", "a 2", "a 3" …
std::string numbered(const std::string &name, int attempt) {
    return attempt == 1 ? name : name + " " + std::to_string(attempt);
}

/// Opens the folder, and makes it where it is missing. The errno on failure.
Result<Folder, int> openedTrash(const FileURL &trash) {
    FolderRoute way;
    if (const int error = way.go(trash.parent().path()); error != 0)
        return error;
    if (!isWithinConfinement(way.takeAncestors()))
        return EXDEV;
    const std::string name(trash.fileName());
    if (mkdirat(way.folder().descriptor(), name.c_str(), 0700) != 0 && errno != EEXIST)
        return errno;
    Folder folder = way.folder().subfolder(name.c_str());
    if (!folder.isOpen())
        return errno;
    return folder;
}

} // namespace

std::optional<FileURL> folderTrash() {
    return confinement() && Host::currentSystem() == System::macOS
               ? std::optional(homeFolder().appending(".Trash"))
               : std::nullopt;
}

Result<TrashedItem> moveToFolderTrash(const OpenedItem &item, const FileURL &trash) {
    const auto failure = [&](int error) { return fileError(FileOperation::trash, item.place(), error); };
    const Result<Folder, int> opened = openedTrash(trash);
    if (const int *error = std::get_if<int>(&opened))
        return failure(*error);
    const int folder = std::get<Folder>(opened).descriptor();
    for (int attempt = 1;; ++attempt) {
        const std::string name = numbered(item.name(), attempt);
        const int error = moveUnlessThere(item, folder, name);
        if (error == 0)
            return TrashedItem{.now = pinOfMoved(item, trash.appending(name))};
        if (error != EEXIST)
            return failure(error);
    }
}

bool isFolderTrash(const Folder &folder) {
    const std::optional<FileURL> trash = folderTrash();
    return trash && folder.identity() == Folder::at(trash->path(), Folder::Links::refuse).identity();
}

} // namespace brimvale
