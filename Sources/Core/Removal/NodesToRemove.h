#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/FSNode.h"

#include <span>
#include <vector>

namespace brimvale {

/// Those of the nodes that can be removed by themselves, in their order and each once: no aggregate, and no
/// node that goes with another one. All are of one tree.
[[nodiscard]] std::vector<FSNode *> removableNodes(std::span<FSNode *const> nodes);

/// The nodes as items to be removed, with the sizes that the scan has measured.
[[nodiscard]] std::vector<CleanupEntry> entriesOf(std::span<FSNode *const> nodes);

/// The nodes of a tree whose items are gone, without those inside another one. Where the root itself is gone
/// it stays, and these are its children. Looks only into folders that something is gone from.
[[nodiscard]] std::vector<FSNode *> goneNodes(FSNode &root, const GonePaths &gone);

} // namespace brimvale
