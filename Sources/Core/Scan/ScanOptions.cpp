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

SkipReason reasonFor(UnwalkedMount mount) {
    switch (mount) {
    case UnwalkedMount::otherMachine:
        return SkipReason::otherMachine;
    case UnwalkedMount::program:
        return SkipReason::program;
    case UnwalkedMount::image:
        return SkipReason::image;
    case UnwalkedMount::container:
        return SkipReason::container;
    }
    return SkipReason::managed;
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
    options.unseenPaths = currentUnseenPaths(host);
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

std::unordered_map<std::string, SkipReason> ScanOptions::currentUnseenPaths(const Host &host) {
    std::unordered_map<std::string, SkipReason> paths;
    for (const auto &[path, mount] : unwalkedMounts(host.home.path()))
        paths.emplace(path, reasonFor(mount));
    return paths;
}

SkipList::SkipList(const ScanOptions &options) : paths_(options.skippedPaths), unseen_(options.unseenPaths) {
    for (const std::string &path : paths_)
        lastNames_.insert(std::string_view(path).substr(path.rfind('/') + 1));
    for (const auto &[path, reason] : unseen_)
        foldersOfUnseen_.insert(FileURL(path).parent().path());
}

bool SkipList::hasUnseen(const std::string &folderPath) const {
    return foldersOfUnseen_.contains(folderPath);
}

std::optional<SkipReason> SkipList::unseen(const std::string &path) const {
    const auto found = unseen_.find(path);
    return found != unseen_.end() ? std::optional(found->second) : std::nullopt;
}

bool SkipList::contains(const std::string &folderPath, std::string_view name) const {
    return lastNames_.contains(name) && paths_.contains(joinPath(folderPath, name));
}

} // namespace brimvale
