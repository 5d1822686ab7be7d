#include "Core/Scan/ScanOptions.h"

#include "Catalogs/Catalog.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/Mounts.h"

#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

PathSet setOf(std::vector<std::string> paths) {
    return {std::move_iterator(paths.begin()), std::move_iterator(paths.end())};
}

} // namespace

ScanOptions ScanOptions::standard(const Host &host) {
    ScanOptions options;
    options.skippedPaths = defaultSkippedPaths(host);
    options.cloudProviderPaths = cloudProviderRoots(host);
    // A scan of the joined volume itself finds them by their other names.
    for (const std::string &root : cloudProviderRoots(host))
        if (std::optional<std::string> other = pathOnJoinedVolume(root, host.system))
            options.cloudProviderPaths.insert(*std::move(other));
    options.skippedPaths.insert(options.cloudProviderPaths.begin(), options.cloudProviderPaths.end());
    return options;
}

PathSet ScanOptions::defaultSkippedPaths(const Host &host) {
    PathSet paths;
    for (const std::string &path : catalogOf(host.system).skippedPaths)
        paths.insert(host.placeOf(path));
    paths.merge(setOf(pseudoMountPoints()));
    return paths;
}

PathSet ScanOptions::cloudProviderRoots(const Host &host) {
    return setOf(catalogOf(host.system).cloudProviderRoots(host.home));
}

SkipList::SkipList(const PathSet &paths) : paths_(paths) {
    for (const std::string &path : paths_)
        lastNames_.insert(std::string_view(path).substr(path.rfind('/') + 1));
}

bool SkipList::contains(const std::string &folderPath, std::string_view name) const {
    return lastNames_.contains(name) && paths_.contains(joinPath(folderPath, name));
}

} // namespace brimvale
