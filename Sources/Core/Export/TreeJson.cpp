#include "Core/Export/TreeJson.h"

#include "Base/Date.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace brimvale {

namespace {

/// A node whose object is still open, and the index of its next child.
struct OpenNode {
    const FSNode *node;
    std::size_t next;
    std::size_t end;
};

void writeMembers(JsonWriter &json, const FSNode &node, bool isRoot) {
    json.path("name", node.name);
    if (isRoot)
        json.path("path", node.path());
    json.member("isDirectory", node.isDirectory);
    json.member("size", node.size);
    json.member("logicalSize", node.logicalSizeLeft());
    json.member("fileCount", node.fileCount);
    json.member("dirCount", node.dirCountLeft());
    const std::optional<Date> modified = FSNode::dateOf(node.modified);
    json.member("modified", modified ? std::optional(iso8601(*modified)) : std::nullopt);
    json.member("isAggregate", node.isAggregate);
    json.member("unreadable", node.unreadable);
    json.member("isNotDescended", node.isNotDescended);
    json.member("isCloudProvider", node.isCloudProvider);
}

} // namespace

void writeTree(JsonWriter &json, const FSNode &root, const TreeLimits &limits) {
    std::vector<OpenNode> open;
    const auto enter = [&](const FSNode &node) {
        json.beginObject();
        writeMembers(json, node, &node == &root);
        const std::size_t count = limits.opensLevel(open.size()) ? limits.childrenToTell(node) : 0;
        if (count > 0) {
            json.key("children");
            json.beginArray();
        }
        open.push_back({&node, 0, count});
    };

    enter(root);
    while (!open.empty()) {
        OpenNode &innermost = open.back();
        if (innermost.next < innermost.end) {
            enter(*innermost.node->children()[innermost.next++]);
            continue;
        }
        if (innermost.end > 0)
            json.end();
        json.end();
        open.pop_back();
    }
}

} // namespace brimvale
