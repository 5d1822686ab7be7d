#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Scan/SumLimit.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What a list says about one entry. Others wrote it, so every figure may be anything.
struct TreeEntry {
    std::string name = {}; ///< of the root its path
    bool isDirectory = false;
    bool isAggregate = false;
    bool isUnreadable = false;
    bool isCloudProvider = false;
    bool isLinkedFile = false; ///< has other names
    std::optional<SkipReason> skipReason = {};
    std::int64_t size = 0;
    std::int64_t logicalSize = 0;
    std::int64_t fileCount = 0;
    std::int64_t dirCount = 0;
    std::uint32_t modified = 0; ///< as in `FSNode`; that of a folder follows from its entries
};

/// Puts together a tree from the entries of a list, in the order of `visitTree`. Figures are treated as those
/// of a scan: what is negative, or more than a volume holds, makes an entry unreadable and counts as nothing.
/// So no sum overflows.
class TreeAssembly {
public:
    /// What is wrong with the name of an entry; nothing where a file can have it.
    [[nodiscard]] static std::optional<std::string_view> faultOfName(std::string_view name);

    /// Opens a folder in the innermost open one. The first is the root. Its figures count when it is closed.
    FSNode &open(const TreeEntry &folder);

    /// Adds what has no entries of its own to the innermost open folder.
    void add(TreeEntry entry);

    /// Closes the innermost folder. `own` is what no entry in it counts.
    void close(const TreeEntry &own);

    /// The innermost open folder; null before the root and after its end.
    [[nodiscard]] FSNode *innermost() const { return innermost_; }

    /// Whether the root has been closed.
    [[nodiscard]] bool isComplete() const { return root_ != nullptr && innermost_ == nullptr; }

    /// The tree, sorted and marked as imported.
    [[nodiscard]] std::unique_ptr<FSNode> finish();

    /// The entries that could not be read.
    [[nodiscard]] std::int64_t unreadable() const { return unreadable_; }

private:
    void count(FSNode &node, const TreeEntry &entry);
    [[nodiscard]] bool admits(const TreeEntry &entry);

    std::unique_ptr<FSNode> root_;
    FSNode *innermost_ = nullptr;
    SumLimit sums_;
    std::int64_t counted_ = 0; ///< files and folders that entries claim
    std::int64_t unreadable_ = 0;
};

} // namespace brimvale
