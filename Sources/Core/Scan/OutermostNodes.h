#pragma once

#include "Core/Scan/FSNode.h"

#include <span>
#include <vector>

namespace brimvale {

/// The given nodes, in their order, without those that are inside another one of them. Use it before adding
/// up figures, because a folder's figures already include its descendants. All nodes are from one tree, none
/// given twice.
[[nodiscard]] std::vector<FSNode *> outermostNodes(std::span<FSNode *const> nodes);

} // namespace brimvale
