#pragma once

#include "Views/Browse/Outline/OutlineMarks.h"

#include <QString>
#include <chrono>
#include <cstdint>
#include <vector>

namespace brimvale {

/// One pass of a name filter over a tree, made in slices so that the window stays alive meanwhile. It leaves
/// its outcome in the marks of the nodes. The tree must stay as it is for as long as the pass takes.
class OutlineFilter {
public:
    /// A pass over everything beneath `root` that marks the nodes whose names contain `text`, in whatever
    /// case, all that they hold, and the folders around them. An aggregate has no name of its own.
    OutlineFilter(FSNode &root, const QString &text, OutlineMark::Filter marks);

    /// Goes on for about this long; answers whether the pass is done.
    [[nodiscard]] bool advance(std::chrono::microseconds time);

    /// How many names have matched so far.
    [[nodiscard]] std::int64_t matches() const { return matches_; }

private:
    [[nodiscard]] bool hasMatchingName(const FSNode &node) const;
    void visit(FSNode &node);

    QString text_;
    OutlineMark::Filter marks_;
    std::vector<FSNode *> nodes_; ///< all that are known of: those visited, then those to come
    std::size_t next_ = 0;
    std::int64_t matches_ = 0;
};

} // namespace brimvale
