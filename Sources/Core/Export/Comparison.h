#pragma once

#include "Base/StopFlag.h"
#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// What became of an item between two scans.
struct TreeChange {
    enum class Kind {
        appeared, ///< with all it contains, but without what was moved into it
        gone,     ///< without what was moved out of it
        moved,    ///< the same item has another path; found only where both scans know identities
        changed   ///< a file, or the small files of a folder together
    };

    Kind kind = Kind::changed;
    std::string path;         ///< in the later scan; of what is gone in the earlier one
    std::string earlier = {}; ///< the path of what was moved
    bool isFolder = false;
    bool isAggregate = false; ///< the small files of the folder at `path`
    std::int64_t before = 0;  ///< allocated bytes
    std::int64_t after = 0;
    /// Of the later tree, in which it may no longer be; ask `TreeComparison::nodeOf`.
    const FSNode *node = nullptr;

    [[nodiscard]] std::int64_t growth() const { return after - before; }
};

/// "new", "gone", "moved" or "changed".
[[nodiscard]] std::string_view wordFor(TreeChange::Kind kind);

/// A difference of sizes with its sign: "+1.5 GB", "−20 MB".
[[nodiscard]] std::string signedSize(std::int64_t bytes);

/// What became of one node of the later tree.
struct NodeChange {
    enum class Kind { unchanged, appeared, moved, grew, shrank };

    Kind kind = Kind::unchanged;
    std::int64_t growth = 0;       ///< in allocated bytes; of what has appeared, all of them
    std::string_view earlier = {}; ///< the path of what was moved
};

/// The changes from one tree to another. Compares by names from the two roots down, whatever their paths are,
/// and then looks for gone items among the new ones by identity. Where one tree lists small files that the
/// other has as an aggregate, they are compared as an aggregate, too.
class TreeComparison {
public:
    /// Reads both trees and keeps pointers to nodes of the later one. `hasRead` is called as soon as the
    /// trees are not read any more. Once `stopped` is set, that is within a moment, and the result is of no
    /// use.
    TreeComparison(const FSNode &before, const FSNode &after, const StopFlag &stopped = {},
                   const std::function<void()> &hasRead = {});

    /// All changes, what has grown most first.
    [[nodiscard]] const std::vector<TreeChange> &changes() const { return changes_; }

    /// What became of a node of the later tree. What is inside a new or moved folder is new or was moved with
    /// it.
    [[nodiscard]] NodeChange of(const FSNode &node) const;

    /// The node of one of the changes in the later tree. Null for what is gone, and for nodes that left it.
    [[nodiscard]] const FSNode *nodeOf(const TreeChange &change) const;

    /// Drops all pointers to a node and its descendants. Call it before they leave the tree.
    void letGoOf(const FSNode &node);

private:
    class Pass;

    struct Earlier {
        NodeChange::Kind kind; ///< `unchanged` where only the sizes say what happened
        std::int64_t size;
        std::string path = {};
    };

    std::vector<TreeChange> changes_;
    std::unordered_map<const FSNode *, Earlier> nodes_; ///< those that differ from before
};

} // namespace brimvale
