#include "Platform/PutBack.h"

#include "Platform/Posix/FolderRoute.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brimvale {

PlaceToPutBack::PlaceToPutBack(FileURL path, std::vector<FileIdentity> ancestors,
                               std::vector<std::string> missing, Folder folder)
    : path_(std::move(path)), ancestors_(std::move(ancestors)), missing_(std::move(missing)),
      folder_(std::move(folder)) {}

Result<PlaceToPutBack, int> PlaceToPutBack::at(const FileURL &oldPlace) {
    if (!oldPlace.namesEntry())
        return EINVAL;
    std::vector<std::string> missing; // the innermost first
    FolderRoute route;
    FileURL parent = oldPlace.parent();
    int error = route.go(parent.path());
    while (error == ENOENT && parent.namesEntry()) {
        missing.emplace_back(parent.fileName());
        parent = parent.parent();
        route = FolderRoute();
        error = route.go(parent.path());
    }
    if (error != 0)
        return error;
    std::reverse(missing.begin(), missing.end());
    FileURL path(route.path());
    for (const std::string &name : missing)
        path = FileURL(joinPath(path.path(), name));
    path = FileURL(joinPath(path.path(), oldPlace.fileName()));
    return PlaceToPutBack(std::move(path), route.takeAncestors(), std::move(missing), route.takeFolder());
}

} // namespace brimvale
