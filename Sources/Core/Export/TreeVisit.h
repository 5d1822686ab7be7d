#pragma once

#include "Core/Scan/FSNode.h"

#include <cstddef>
#include <vector>

namespace brimvale {

/// Visits a node and its descendants in order, without recursion: `enter(node)` for each, a folder before
/// what it contains, and `leave(node)` for each folder after that. A folder that was skipped counts as one.
template<class Enter, class Leave>
void visitTree(const FSNode &root, Enter enter, Leave leave) {
    struct Open {
        const FSNode *folder;
        std::size_t next = 0;
    };
    std::vector<Open> open;
    const auto visit = [&](const FSNode &node) {
        enter(node);
        if (node.isDirectory)
            open.push_back({&node});
    };
    visit(root);
    while (!open.empty()) {
        Open &innermost = open.back();
        if (innermost.next < innermost.folder->children().size()) {
            visit(*innermost.folder->children()[innermost.next++]);
            continue;
        }
        leave(*innermost.folder);
        open.pop_back();
    }
}

} // namespace brimvale
