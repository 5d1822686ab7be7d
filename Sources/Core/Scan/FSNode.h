#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace brimvale {

/// One node of a scanned tree: a folder, a file large enough to be shown by itself, a folder that was
/// deliberately not entered, or the many small files of one folder together (an aggregate).
///
/// A node owns its children; its link to the parent is valid for as long as it is in the parent's children,
/// and null otherwise. Nodes are equal only to themselves. Nothing here recurses, so a tree may be of any
/// depth. One scanning worker writes a node; once scanned and sorted, the tree belongs to the main thread.
class FSNode {
public:
    /// A node that stands alone, such as the root of a scan. `path` is absolute and standardised.
    FSNode(std::string name, std::string path, bool isDirectory);

    /// A node inside `parent`, to be added to it with `adopt`: its path is composed from its parents' names.
    FSNode(std::string name, FSNode &parent, bool isDirectory);

    /// The aggregate that stands for `count` small files of `parent`; its path is the parent's.
    [[nodiscard]] static std::unique_ptr<FSNode> aggregate(FSNode &parent, std::int64_t count);

    ~FSNode();
    FSNode(const FSNode &) = delete;
    FSNode &operator=(const FSNode &) = delete;

    /// The last path component, as bytes; for the root the name shown, for an aggregate its count in words.
    const std::string name;
    const bool isDirectory; ///< also true for a folder that was not entered; false for an aggregate
    bool isAggregate = false;
    bool unreadable = false;      ///< could not be read, or not wholly
    bool isNotDescended = false;  ///< deliberately not entered; its sizes stay 0
    bool isCloudProvider = false; ///< not entered because a cloud provider owns it
    std::uint8_t marks = 0;       ///< what the outline that shows it remembers of it, as bits
    std::uint32_t row = 0;        ///< its place among its siblings in that outline, or a later one
    std::int64_t size = 0;        ///< allocated bytes at and beneath this node: what is shown and sorted on
    std::int64_t logicalSize = 0; ///< bytes as a reader sees them, likewise
    std::int64_t fileCount = 0;   ///< files at and beneath this node
    std::int64_t dirCount = 0;    ///< folders beneath this node

    /// The absolute path, for as long as the node lives.
    [[nodiscard]] std::string path() const;

    [[nodiscard]] FSNode *parent() const { return parent_; }
    [[nodiscard]] std::span<const std::unique_ptr<FSNode>> children() const { return children_; }

    /// What an outline discloses beneath this node: a folder's children; none for anything else.
    [[nodiscard]] std::span<const std::unique_ptr<FSNode>> outlineChildren() const {
        return isDirectory ? children() : std::span<const std::unique_ptr<FSNode>>{};
    }

    /// Appends a node that was made inside this one.
    void adopt(std::unique_ptr<FSNode> child);

    /// Appends many, and keeps no more memory than they need. `children` is left empty.
    void adopt(std::vector<std::unique_ptr<FSNode>> &children);

    /// Takes `child` out; the others keep their order. It then stands alone and keeps its path. Null when it
    /// is no child of this node. No node's figures change.
    [[nodiscard]] std::unique_ptr<FSNode> release(const FSNode &child);

    /// Drops every child that `isUnwanted` says yes to, with its subtree; answers whether there was one. No
    /// node's figures change.
    bool drop(const std::function<bool(const FSNode &)> &isUnwanted);

    /// Sorts the children of every folder at and beneath this node by falling size; equal ones keep their
    /// order.
    void sortRecursively();

private:
    FSNode *parent_ = nullptr;
    std::vector<std::unique_ptr<FSNode>> children_;
    std::unique_ptr<std::string> ownPath_; ///< of a node without a parent
};

} // namespace brimvale
