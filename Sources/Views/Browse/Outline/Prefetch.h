#pragma once

#include "Core/Scan/FSNode.h"

#include <algorithm>
#include <span>

namespace brimvale {

/// Sorted siblings are scattered in memory, so a loop over many of them mostly waits for it. These functions
/// request the next nodes in advance, which saves a half to two thirds of the time. `nodes` is not empty.
///
/// They are always inlined, because GCC drops a call of a function that seems to do nothing.

/// For a loop over the nodes that is at `index`.
[[gnu::always_inline]] inline void prefetchNodes(std::span<FSNode *const> nodes, std::size_t index) {
    const auto *next = reinterpret_cast<const char *>(nodes[std::min(index + 16, nodes.size() - 1)]);
    __builtin_prefetch(next);
    __builtin_prefetch(next + 64); // a node takes two cache lines
}

/// For a loop that also reads their names.
[[gnu::always_inline]] inline void prefetchNames(std::span<FSNode *const> nodes, std::size_t index) {
    prefetchNodes(nodes, index);
    __builtin_prefetch(nodes[std::min(index + 8, nodes.size() - 1)]->name.place());
}

/// For a loop that also asks whether they have children.
[[gnu::always_inline]] inline void prefetchContents(std::span<FSNode *const> nodes, std::size_t index) {
    prefetchNodes(nodes, index);
    __builtin_prefetch(nodes[std::min(index + 8, nodes.size() - 1)]->placeOfContents());
}

} // namespace brimvale
