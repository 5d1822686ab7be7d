#pragma once

#include "Base/Date.h"
#include "Core/Scan/FileTally.h"
#include "Core/Scan/NodeContents.h"
#include "Core/Scan/NodeMemory.h"
#include "Core/Scan/PackedText.h"
#include "Core/Scan/SkipReason.h"
#include "Platform/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// One node of a scanned tree: a folder, a file large enough to be shown, a folder that was skipped, or an
/// aggregate that stands for the many small files of one folder. The largest small files of a scan have
/// nodes, too; their aggregate owns them, beside its children, of which it has none. A node owns its
/// children. `parent` is valid while the node is among the parent's children, and null otherwise. Nodes are
/// equal only to themselves. Nothing here recurses, so a tree may have any depth.
/// One thread of the scan writes a node. Once scanned and sorted, only the main thread changes it, and
/// `ScanSession` announces that before; until then other threads may read all but `marks` and `row`.
class FSNode {
public:
    /// A node that stands alone, such as the root of a scan. `path` is absolute and standardised.
    FSNode(std::string_view name, std::string path, bool isDirectory);

    /// A node in `parent`; add it with `adopt`. Its path is composed from its ancestors' names.
    FSNode(std::string_view name, FSNode &parent, bool isDirectory);

    /// The aggregate that stands for `count` small files of `parent`; its path is the parent's.
    [[nodiscard]] static std::unique_ptr<FSNode> aggregate(FSNode &parent, std::int64_t count);

    ~FSNode();
    FSNode(const FSNode &) = delete;
    FSNode &operator=(const FSNode &) = delete;

    static void *operator new(std::size_t bytes) { return NodeMemory::take(bytes); }
    static void operator delete(void *node) { NodeMemory::giveBack(node); }

    /// The last path component, as bytes. For the root, the displayed name; for an aggregate, its count in
    /// words, which changes when it loses files. Any other name stays.
    PackedText name;
    // These share a byte, so that a node stays small; only one thread writes them, and none while others
    // read.
    const bool isDirectory : 1;       ///< also true for a skipped folder; false for an aggregate
    bool isAggregate : 1 = false;     ///< set by `markAggregate`
    bool isNotDescended : 1 = false;  ///< skipped; its sizes stay 0
    bool hasLinkedFiles : 1 = false;  ///< a file that has several names, or a folder with such files
    bool holdsUnreadable : 1 = false; ///< a folder in which something could not be read, at any depth
    bool isCloudProvider : 1 = false; ///< skipped because a cloud provider has its contents

private:
    bool mayBeOutOfOrder_ : 1 = false;  ///< of a folder with descendants that have left or were replaced
    bool isMarkedImported_ : 1 = false; ///< of the root of a tree

public:
    bool unreadable = false; ///< could not be read, at least in part; other walks may set it
    std::uint8_t marks = 0;  ///< state bits of the outline that shows it
    SkipReason skipReason = SkipReason::managed; ///< of a skipped folder, and of a mount point
    std::uint32_t modified = 0;   ///< when the file was changed, in seconds since 1970; 0 if unknown. Of a
                                  ///< folder or an aggregate: the newest of its files
    std::uint32_t row = 0;        ///< its position among its siblings in the outline, or a later one
    std::uint32_t device = 0;     ///< of `identity`; here it takes no memory of its own
    std::int64_t size = 0;        ///< allocated bytes of this node and its descendants; shown and sorted by
    std::int64_t logicalSize = 0; ///< the same for the length in bytes
    std::int64_t fileCount = 0;   ///< files, this node and its descendants

    /// Folders among its descendants.
    [[nodiscard]] std::int64_t dirCount() const { return contents_.dirCount(); }
    void setDirCount(std::int64_t count) { contents_.setDirCount(count); }

    /// Of an aggregate: what it stands for.
    [[nodiscard]] const FileTally &smallFiles() const;
    void setSmallFiles(FileTally files);
    /// Takes one of them off.
    void subtractSmallFile(FileType type, FileAge age, std::int64_t bytes);

    /// Whether the true size may be larger, because not everything could be read.
    [[nodiscard]] bool isAtLeast() const { return unreadable || holdsUnreadable; }

    /// The length and the folders of what is still there. Removals leave `logicalSize` and `dirCount` as the
    /// scan found them.
    [[nodiscard]] std::int64_t logicalSizeLeft() const;
    [[nodiscard]] std::int64_t dirCountLeft() const;

    /// Notes for all ancestors that this node is about to leave the tree: takes its size and files off their
    /// figures, and its length and folders off what is left of them, and finds the newest of their other
    /// files.
    void subtractFromAncestors() const;

    /// Makes an aggregate of a node that has neither identity nor children yet.
    void markAggregate();

    /// Marks it as skipped.
    void markSkipped(bool belongsToCloudProvider, SkipReason reason = SkipReason::managed) {
        isNotDescended = true;
        isCloudProvider = belongsToCloudProvider;
        skipReason = reason;
    }

    /// Whether another volume is mounted here, which the scan did not enter. It is not marked as skipped.
    [[nodiscard]] bool isOtherVolume() const { return skipReason == SkipReason::otherVolume; }

    /// Whether the tree was read from a file: nothing in it is on this disk, so nothing is removed or shown
    /// there, even where a path is the same.
    [[nodiscard]] bool isImported() const;
    /// Marks the tree of this root so, for ever.
    void markImported() { isMarkedImported_ = true; }

    /// Which entry of the disk this is, as the scan found it; nothing for an aggregate and for an entry whose
    /// status was not read.
    [[nodiscard]] std::optional<FileIdentity> identity() const;
    void setIdentity(const FileIdentity &identity);

    /// The absolute path, for as long as the node lives.
    [[nodiscard]] std::string path() const;

    [[nodiscard]] FSNode *parent() const { return parent_; }
    /// The folder that contains it: the parent, or that of the aggregate if this is one of its small files.
    [[nodiscard]] FSNode *folder() const {
        return parent_ != nullptr && parent_->isAggregate ? parent_->parent_ : parent_;
    }
    [[nodiscard]] std::span<const std::unique_ptr<FSNode>> children() const {
        return isAggregate ? std::span<const std::unique_ptr<FSNode>>{} : contents_.children();
    }
    /// The small files of an aggregate that have nodes, in no order; none of any other node.
    [[nodiscard]] std::span<const std::unique_ptr<FSNode>> largestSmallFiles() const {
        return isAggregate ? contents_.children() : std::span<const std::unique_ptr<FSNode>>{};
    }

    /// The rows of an outline below this node: a folder's children; none for anything else.
    [[nodiscard]] std::span<const std::unique_ptr<FSNode>> outlineChildren() const {
        return isDirectory ? children() : std::span<const std::unique_ptr<FSNode>>{};
    }

    /// Where its children are in memory, to request it in advance.
    [[nodiscard]] const void *placeOfContents() const { return contents_.place(); }

    /// Appends a node that was made for this parent.
    void adopt(std::unique_ptr<FSNode> child);

    /// Appends many nodes without spare memory. `children` is left empty.
    void adopt(std::vector<std::unique_ptr<FSNode>> &children);

    /// Takes `child` out; the others keep their order. It has no parent then, and keeps its path. Null when
    /// it is no child of this node. No figures change.
    [[nodiscard]] std::unique_ptr<FSNode> release(const FSNode &child);

    /// Exchanges the figures, the state and the children with a folder that stands alone and has lost
    /// nothing, and updates the figures of all ancestors. Names, paths and marks stay.
    void swapContents(FSNode &other);

    /// Drops every child for which `isUnwanted` is true, with its subtree; returns whether there was one. No
    /// figures change.
    bool drop(const std::function<bool(const FSNode &)> &isUnwanted);

    /// Sorts the children of this node and of every folder below it by size, the largest first; equal ones
    /// keep their order.
    void sortRecursively();

    /// A file's date as `modified` holds it: to the second, from 1970 to 2106; 0 if there is none.
    [[nodiscard]] static std::uint32_t secondsOf(const std::optional<Date> &date);
    /// The date that `modified` holds; nothing for 0.
    [[nodiscard]] static std::optional<Date> dateOf(std::uint32_t seconds);

    /// Whether a removal or another scan below has changed the size of a child since the children were
    /// sorted.
    [[nodiscard]] bool mayBeOutOfOrder() const { return mayBeOutOfOrder_; }

private:
    void findNewestInAncestors(std::uint32_t earlier, const FSNode *leaving) const;
    [[nodiscard]] const std::string *ownPath() const;
    void setOwnPath(std::string path);

    union {
        std::uint64_t inode_ = 0; ///< of `identity`; 0 where it is not known
        FileTally smallFiles_;    ///< of an aggregate, which has no identity
    };
    FSNode *parent_ = nullptr;
    NodeContents contents_;
};

} // namespace brimvale
