#pragma once

#include "Core/Find/FileFilter.h"
#include "Core/Find/FileSums.h"
#include "Views/Browse/Outline/OutlineMarks.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace brimvale {

/// What a filter has found in a tree.
struct FilterResult {
    /// The folders and files that it accepts, and their bytes, where none is counted twice.
    FileFigures matches;
    std::int64_t unsearched = 0; ///< small files without nodes that it may accept
};

/// One pass of a filter over a tree, in slices so that the window stays responsive. The result is in the
/// marks of the nodes. The tree must not change during the pass.
class OutlineFilter {
public:
    /// A pass over all descendants of `root`. It marks the nodes that the filter accepts, with their
    /// descendants and ancestors. An aggregate has no name of its own; it leads to its files with nodes.
    OutlineFilter(FSNode &root, FileFilter filter, OutlineMark::Filter marks);

    /// Continues for about this long; returns whether the pass is done.
    [[nodiscard]] bool advance(std::chrono::microseconds time);

    [[nodiscard]] const FilterResult &result() const { return result_; }

private:
    [[nodiscard]] bool accepts(const FSNode &node) const;
    void visit(FSNode &node);
    void visitFilesOf(FSNode &aggregate);
    void addMatch(const FSNode &node);

    FileFilter filter_;
    OutlineMark::Filter marks_;
    std::vector<FSNode *> nodes_; ///< all nodes found: those visited, then those waiting
    std::size_t next_ = 0;
    FilterResult result_;
};

} // namespace brimvale
