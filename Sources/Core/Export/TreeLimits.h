#pragma once

#include "Core/Scan/FSNode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace brimvale {

/// How much of a sorted tree is printed.
struct TreeLimits {
    static constexpr std::int64_t unlimited = std::numeric_limits<std::int64_t>::max();

    std::int64_t depth = unlimited; ///< levels below the root
    std::int64_t top = unlimited;   ///< children per node, the largest first

    /// Whether children are printed for a node `level` levels below the root.
    [[nodiscard]] bool opensLevel(std::size_t level) const {
        return static_cast<std::int64_t>(level) < depth;
    }

    /// The number of children of such a node that are printed one by one.
    [[nodiscard]] std::size_t childrenToTell(const FSNode &node) const {
        return static_cast<std::size_t>(std::min(top, static_cast<std::int64_t>(node.children().size())));
    }
};

} // namespace brimvale
