#include "Core/Storage/CleanupEntries.h"

#include "Base/Bytes.h"
#include "Core/Removal/GonePaths.h"
#include "Platform/Dataless.h"
#include "Platform/FileAccess.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brimvale {

std::vector<std::string> CleanupEntries::paths(const std::vector<std::string> &roots, bool listsContents) {
    if (!listsContents)
        return roots;
    std::vector<std::string> paths;
    for (const std::string &root : roots)
        for (const std::string &name : names(root))
            paths.push_back(joinPath(root, name));
    return paths;
}

std::vector<std::string> CleanupEntries::names(const std::string &folder) {
    const NoMaterialization guard;
    std::vector<std::string> names = namesIn(folder).value_or(std::vector<std::string>());
    std::erase(names, ".DS_Store"); // how a window of the Finder looked
    return names;
}

std::vector<CleanupEntry> CleanupEntries::measured(const std::vector<std::string> &paths,
                                                   const std::vector<MeasuredItem> &items,
                                                   std::int64_t minimum) {
    std::vector<CleanupEntry> entries;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (items[i].bytes < minimum)
            continue;
        const FileURL url(paths[i]);
        entries.push_back({.url = url,
                           .size = items[i].bytes,
                           .modified = items[i].modified,
                           .isFolder = items[i].isFolder,
                           .pin = pinOf(url.standardized()),
                           .hasLinkedFiles = items[i].hasLinkedFiles});
    }
    sort(entries);
    return entries;
}

std::vector<std::string> CleanupEntries::incompletePaths(const std::vector<std::string> &paths,
                                                         const std::vector<MeasuredItem> &items) {
    std::vector<std::string> incomplete;
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (items[i].isIncomplete)
            incomplete.push_back(paths[i]);
    return incomplete;
}

void CleanupEntries::sort(std::vector<CleanupEntry> &entries) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CleanupEntry &a, const CleanupEntry &b) { return a.size > b.size; });
}

std::vector<CleanupEntry> CleanupEntries::outermost(const std::vector<CleanupEntry> &entries) {
    std::vector<FileURL> all;
    for (const CleanupEntry &entry : entries)
        all.push_back(entry.url);
    const GonePaths gone(std::move(all));
    std::unordered_set<FileURL> left(gone.outermost().begin(), gone.outermost().end());
    std::vector<CleanupEntry> outermost;
    for (const CleanupEntry &entry : entries)
        if (left.erase(entry.url) > 0)
            outermost.push_back(entry);
    return outermost;
}

bool CleanupEntries::hasUnreadableRoot(const std::vector<std::string> &roots) {
    return std::any_of(roots.begin(), roots.end(), [](const std::string &root) {
        return fileStatus(root).has_value() && !canListContents(root);
    });
}

std::int64_t CleanupEntries::totalSize(const std::vector<CleanupEntry> &entries) {
    std::int64_t total = 0;
    for (const CleanupEntry &entry : entries)
        total = checkedAdd(total, entry.size);
    return total;
}

std::int64_t CleanupEntries::sizeHere(const std::vector<CleanupEntry> &entries) {
    std::int64_t total = 0;
    for (const CleanupEntry &entry : entries)
        total = checkedAdd(total, entry.isElsewhere ? 0 : entry.size);
    return total;
}

void CleanupEntries::markElsewhere(std::vector<CleanupEntry> &entries, const FileURL &volume) {
    const std::string here = storageOf(volume.path());
    std::unordered_map<std::string, std::string> known; // most rows have the same parent
    const auto storage = [&](const std::string &folder) -> const std::string & {
        const auto [found, isNew] = known.try_emplace(folder);
        if (isNew)
            found->second = storageOf(folder);
        return found->second;
    };
    for (CleanupEntry &entry : entries) {
        const std::string &there = storage(entry.isFolder ? entry.url.path() : entry.url.parent().path());
        entry.isElsewhere = !here.empty() && !there.empty() && there != here;
    }
}

} // namespace brimvale
