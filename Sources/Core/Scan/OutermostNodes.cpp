#include "Core/Scan/OutermostNodes.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace brimvale {

namespace {

using NodeSet = std::unordered_set<const FSNode *>;

/// All ancestors of `nodes`: few, even where many nodes of the same folder are given.
NodeSet ancestorsOf(std::span<FSNode *const> nodes) {
    NodeSet folders;
    for (const FSNode *node : nodes) {
        const FSNode *folder = node->parent();
        while (folder != nullptr && folders.insert(folder).second)
            folder = folder->parent();
    }
    return folders;
}

bool isInOneOf(const NodeSet &folders, const FSNode *folder) {
    while (folder != nullptr && !folders.contains(folder))
        folder = folder->parent();
    return folder != nullptr;
}

} // namespace

std::vector<FSNode *> outermostNodes(std::span<FSNode *const> nodes) {
    const NodeSet ancestors = ancestorsOf(nodes);
    NodeSet holding;
    std::copy_if(nodes.begin(), nodes.end(), std::inserter(holding, holding.end()),
                 [&](const FSNode *node) { return ancestors.contains(node); });
    std::vector<FSNode *> outermost;
    outermost.reserve(nodes.size());
    const FSNode *folder = nullptr; // of the previous node; often the next one has the same
    bool isWithin = false;
    for (FSNode *node : nodes) {
        if (node->parent() != folder) {
            folder = node->parent();
            isWithin = isInOneOf(holding, folder);
        }
        if (!isWithin)
            outermost.push_back(node);
    }
    return outermost;
}

} // namespace brimvale
