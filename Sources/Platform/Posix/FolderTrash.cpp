#include "Platform/FolderTrash.h"

#include "Platform/FileOperation.h"
#include "Platform/Folder.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

namespace brimvale {

namespace {

/// "a", "a 2", "a 3" …
std::string numbered(const std::string &name, int attempt) {
    return attempt == 1 ? name : name + " " + std::to_string(attempt);
}

bool isTaken(const Folder &folder, const std::string &name) {
    struct stat status {};
    return fstatat(folder.descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

Result<TrashedItem> moveToFolderTrash(const OpenedItem &item, const FileURL &trash) {
    const auto failure = [&](int error) { return fileError(FileOperation::trash, item.place(), error); };
    if (!item.isStillThere())
        return failure(ESTALE);
    if (mkdir(trash.path().c_str(), 0700) != 0 && errno != EEXIST)
        return failure(errno);
    const Folder folder = Folder::at(trash.path(), Folder::Links::refuse);
    if (!folder.isOpen())
        return failure(errno);
    int attempt = 1;
    while (isTaken(folder, numbered(item.name(), attempt)))
        ++attempt;
    const std::string name = numbered(item.name(), attempt);
    if (renameat(item.folder().descriptor(), item.name().c_str(), folder.descriptor(), name.c_str()) != 0)
        return failure(errno);
    return TrashedItem{};
}

} // namespace brimvale
