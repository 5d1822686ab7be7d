#pragma once

#include "Core/Scan/FSNode.h"

#include <algorithm>
#include <vector>

namespace brimvale {

/// Sorted siblings lie anywhere in memory, so that a loop over very many of them does little but wait for it.
/// These ask for the next ones ahead of time, which takes a half to two thirds off. `nodes` is not empty.
///
/// They are inlined before anything else is: GCC drops a call of a function that seems to do nothing.

/// For a loop over the nodes in which the one at `index` is at hand.
[[gnu::always_inline]] inline void prefetchNodes(const std::vector<FSNode *> &nodes, std::size_t index) {
    __builtin_prefetch(nodes[std::min(index + 16, nodes.size() - 1)]);
}

/// For a loop that reads their names too.
[[gnu::always_inline]] inline void prefetchNames(const std::vector<FSNode *> &nodes, std::size_t index) {
    prefetchNodes(nodes, index);
    __builtin_prefetch(nodes[std::min(index + 8, nodes.size() - 1)]->name.data());
}

} // namespace brimvale
