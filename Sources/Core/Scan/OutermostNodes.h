#pragma once

#include "Core/Scan/FSNode.h"

#include <span>
#include <vector>

namespace brimvale {

/// Those of `nodes`, in their order, that lie within no other of them: what counts where figures are added
/// up, since a folder's already hold those of everything beneath it. Nodes of one tree, none of them twice.
[[nodiscard]] std::vector<FSNode *> outermostNodes(std::span<FSNode *const> nodes);

} // namespace brimvale
