#include "Support/SampleTree.h"

#include <algorithm>

namespace brimvale::testing {

std::shared_ptr<FSNode> makeRoot() {
    return std::make_shared<FSNode>("root", "/root", true);
}

FSNode &add(FSNode &parent, const std::string &name, std::int64_t size, bool isDirectory) {
    parent.adopt(std::make_unique<FSNode>(name, parent, isDirectory));
    FSNode &node = *parent.children().back();
    node.size = size;
    node.fileCount = isDirectory ? 0 : 1;
    for (FSNode *folder = &parent; folder != nullptr; folder = folder->parent()) {
        folder->size += node.size;
        folder->fileCount += node.fileCount;
    }
    return node;
}

FSNode &addFolder(FSNode &parent, const std::string &name, std::int64_t size) {
    return add(parent, name, size, true);
}

FSNode &addAggregate(FSNode &parent, std::int64_t count, std::int64_t size) {
    parent.adopt(FSNode::aggregate(parent, count));
    parent.children().back()->size = size;
    return *parent.children().back();
}

FSNode *descendant(FSNode &folder, std::initializer_list<std::string_view> names) {
    FSNode *found = &folder;
    for (const std::string_view name : names) {
        const auto children = found->children();
        const auto child = std::find_if(children.begin(), children.end(),
                                        [&](const auto &one) { return one->name == name; });
        if (child == children.end())
            return nullptr;
        found = child->get();
    }
    return found;
}

std::vector<FSNode *> everythingBeneath(FSNode &root) {
    std::vector<FSNode *> nodes{&root};
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (const auto &child : nodes[i]->children())
            nodes.push_back(child.get());
    nodes.erase(nodes.begin());
    return nodes;
}

std::vector<std::string> namesOf(const std::vector<FSNode *> &nodes) {
    std::vector<std::string> names;
    for (const FSNode *node : nodes)
        names.push_back(node->name);
    return names;
}

std::vector<std::string> namesIn(const FSNode &folder) {
    std::vector<std::string> names;
    for (const auto &child : folder.children())
        names.push_back(child->name);
    return names;
}

} // namespace brimvale::testing
