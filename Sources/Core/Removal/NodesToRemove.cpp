#include "Core/Removal/NodesToRemove.h"

#include "Core/Scan/OutermostNodes.h"

#include <memory>
#include <string>
#include <unordered_set>

namespace brimvale {

namespace {

/// The item as the scan found it. The root has no parent to recognise it by.
std::optional<ItemPin> pinOf(const FSNode &node, const FileURL &place) {
    const std::optional<FileIdentity> item = node.identity();
    const std::optional<FileIdentity> folder =
        node.parent() != nullptr ? node.parent()->identity() : std::nullopt;
    if (!item || !folder)
        return std::nullopt;
    return ItemPin{
        place,
        *folder,
        {.file = *item, .isFolder = node.isDirectory, .details = ItemDetails{.length = node.logicalSize}}};
}

} // namespace

std::vector<FSNode *> removableNodes(std::span<FSNode *const> nodes) {
    std::unordered_set<const FSNode *> taken;
    std::vector<FSNode *> removable;
    for (FSNode *node : nodes)
        if (!node->isAggregate && taken.insert(node).second)
            removable.push_back(node);
    return outermostNodes(removable);
}

std::vector<CleanupEntry> entriesOf(std::span<FSNode *const> nodes) {
    std::vector<CleanupEntry> entries;
    entries.reserve(nodes.size());
    for (const FSNode *node : nodes) {
        entries.push_back({.url = FileURL(node->path()), .size = node->size, .isFolder = node->isDirectory});
        entries.back().pin = pinOf(*node, entries.back().url);
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
            else if (child->isDirectory && gone.reachInto(url))
                waiting.push_back(child.get());
        }
    }
    return found;
}

std::vector<FSNode *> foldersAt(FSNode &root, const GonePaths &items) {
    if (items.contains(FileURL(root.path())))
        return {&root};
    std::vector<FSNode *> folders = goneNodes(root, items);
    std::erase_if(folders, [](const FSNode *node) { return !node->isDirectory; });
    return folders;
}

} // namespace brimvale
