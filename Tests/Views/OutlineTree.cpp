#include "Views/OutlineTree.h"

#include <QTest>

namespace brimvale::testing {

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

FSNode &addFolder(FSNode &parent, const std::string &name) {
    return add(parent, name, 0, true);
}

FSNode &addAggregate(FSNode &parent, std::int64_t count, std::int64_t size) {
    parent.adopt(FSNode::aggregate(parent, count));
    parent.children().back()->size = size;
    return *parent.children().back();
}

std::shared_ptr<FSNode> makeRoot() {
    return std::make_shared<FSNode>("root", "/root", true);
}

void detach(OutlineModel &model, FSNode &node) {
    FSNode *parent = node.parent();
    model.aboutToRemove(node);
    const std::unique_ptr<FSNode> released = parent->release(node);
    for (FSNode *folder = parent; folder != nullptr; folder = folder->parent()) {
        folder->size -= released->size;
        folder->fileCount -= released->fileCount;
    }
    model.removed();
}

bool waitUntilFiltered(const OutlineModel &model) {
    return QTest::qWaitFor([&] { return !model.isFiltering(); }, 20'000);
}

std::vector<std::string> namesOf(const std::vector<FSNode *> &nodes) {
    std::vector<std::string> names;
    for (const FSNode *node : nodes)
        names.push_back(node->name);
    return names;
}

std::vector<std::string> rowsIn(const QAbstractItemModel &model, const QModelIndex &folder) {
    std::vector<std::string> names;
    for (int row = 0; row < model.rowCount(folder); ++row)
        names.push_back(model.index(row, 0, folder).data().toString().toStdString());
    return names;
}

std::vector<FSNode *> everythingBeneath(FSNode &root) {
    std::vector<FSNode *> nodes{&root};
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (const auto &child : nodes[i]->children())
            nodes.push_back(child.get());
    nodes.erase(nodes.begin());
    return nodes;
}

} // namespace brimvale::testing
