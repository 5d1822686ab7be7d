#pragma once

#include "Views/Browse/Outline/OutlineMarks.h"

#include <QString>
#include <chrono>
#include <cstdint>
#include <vector>

namespace brimvale {

/// One pass of a name filter over a tree, in slices so that the window stays responsive. The result is in the
/// marks of the nodes. The tree must not change during the pass.
class OutlineFilter {
public:
    /// A pass over all descendants of `root`. It marks the nodes whose names contain `text`, ignoring case,
    /// with their descendants and ancestors. An aggregate has no name of its own.
    OutlineFilter(FSNode &root, const QString &text, OutlineMark::Filter marks);

    /// Continues for about this long; returns whether the pass is done.
    [[nodiscard]] bool advance(std::chrono::microseconds time);

    /// The number of matching names so far.
    [[nodiscard]] std::int64_t matches() const { return matches_; }

private:
    [[nodiscard]] bool hasMatchingName(const FSNode &node) const;
    void visit(FSNode &node);

    QString text_;
    OutlineMark::Filter marks_;
    std::vector<FSNode *> nodes_; ///< all nodes found: those visited, then those waiting
    std::size_t next_ = 0;
    std::int64_t matches_ = 0;
};

} // namespace brimvale
