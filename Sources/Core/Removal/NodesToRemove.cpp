#include "Core/Removal/NodesToRemove.h"

#include "Core/Scan/OutermostNodes.h"
#include "Core/Scan/UsualPath.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace brimvale {

namespace {

/// The item as the scan found it. The root has no parent to recognise it by.
std::optional<ItemPin> pinOf(const FSNode &node, const FileURL &place) {
    const std::optional<FileIdentity> item = node.identity();
    const std::optional<FileIdentity> folder =
        node.folder() != nullptr ? node.folder()->identity() : std::nullopt;
    if (!item || !folder)
        return std::nullopt;
    return ItemPin{
        place,
        *folder,
        {.file = *item, .isFolder = node.isDirectory, .details = ItemDetails{.length = node.logicalSize}}};
}

bool areImported(std::span<FSNode *const> nodes) {
    return !nodes.empty() && nodes.front()->isImported();
}

/// The nodes of an aggregate's files that are gone; the aggregate itself if it has no others.
std::vector<FSNode *> goneFiles(FSNode &aggregate, const FileURL &folder, const GonePaths &gone) {
    std::vector<FSNode *> files;
    if (!gone.reachInto(folder))
        return files;
    for (const std::unique_ptr<FSNode> &file : aggregate.largestSmallFiles())
        if (gone.contains(folder.appending(file->name)))
            files.push_back(file.get());
    if (static_cast<std::int64_t>(files.size()) == aggregate.fileCount)
        return {&aggregate};
    return files;
}

} // namespace

std::vector<FSNode *> removableNodes(std::span<FSNode *const> nodes) {
    if (areImported(nodes))
        return {};
    std::unordered_set<const FSNode *> taken;
    std::vector<FSNode *> removable;
    for (FSNode *node : nodes)
        if (!node->isAggregate && taken.insert(node).second)
            removable.push_back(node);
    return outermostNodes(removable);
}

std::vector<CleanupEntry> entriesOf(std::span<FSNode *const> nodes) {
    if (areImported(nodes))
        return {};
    std::vector<CleanupEntry> entries;
    entries.reserve(nodes.size());
    for (const FSNode *node : nodes) {
        entries.push_back({.url = FileURL(node->path()), .size = node->size, .isFolder = node->isDirectory});
        entries.back().pin = pinOf(*node, usualPath(entries.back().url));
        entries.back().hasLinkedFiles = node->hasLinkedFiles;
    }
    return entries;
}

std::vector<FSNode *> goneNodes(FSNode &root, const GonePaths &gone) {
    std::vector<FSNode *> found;
    std::vector<FSNode *> waiting{&root};
    while (!waiting.empty()) {
        const FSNode *folder = waiting.back();
        waiting.pop_back();
        const std::string path = folder->path();
        for (const std::unique_ptr<FSNode> &child : folder->children()) {
            // An aggregate has no path of its own.
            const FileURL url(child->isAggregate ? path : joinPath(path, child->name));
            if (gone.contains(url))
                found.push_back(child.get());
            else if (child->isAggregate)
                std::ranges::copy(goneFiles(*child, url, gone), std::back_inserter(found));
            else if (child->isDirectory && gone.reachInto(url))
                waiting.push_back(child.get());
        }
    }
    return found;
}

std::vector<FileURL> foldersMissing(FSNode &root, const GonePaths &gone) {
    std::unordered_map<FileURL, std::size_t> goneIn;
    for (const FileURL &item : gone.outermost())
        ++goneIn[item.parent()];
    std::vector<FileURL> folders;
    std::vector<const FSNode *> waiting{&root};
    while (!waiting.empty()) {
        const FSNode *folder = waiting.back();
        waiting.pop_back();
        const FileURL url(folder->path());
        const auto expected = goneIn.find(url);
        std::size_t found = 0;
        for (const std::unique_ptr<FSNode> &child : folder->children()) {
            if (child->isAggregate) {
                for (const FSNode *file : goneFiles(*child, url, gone))
                    found += static_cast<std::size_t>(file->fileCount);
                continue;
            }
            const FileURL place = url.appending(child->name);
            if (gone.contains(place))
                ++found;
            else if (child->isDirectory && gone.reachInto(place))
                waiting.push_back(child.get());
        }
        if (expected != goneIn.end() && found < expected->second && folder != &root &&
            !folder->isNotDescended)
            folders.push_back(url);
    }
    return folders;
}

std::vector<FSNode *> nodesAt(FSNode &root, const GonePaths &items) {
    if (items.contains(FileURL(root.path())))
        return {&root};
    return goneNodes(root, items);
}

std::vector<FSNode *> foldersAt(FSNode &root, const GonePaths &items) {
    std::vector<FSNode *> folders = nodesAt(root, items);
    std::erase_if(folders, [](const FSNode *node) { return !node->isDirectory; });
    return folders;
}

} // namespace brimvale
