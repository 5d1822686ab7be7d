#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/FSNode.h"

#include <span>
#include <vector>

namespace brimvale {

/// The nodes that can be removed, in order, each once: without aggregates, and without descendants of other
/// given nodes. All nodes must be from one tree. None of an imported one.
[[nodiscard]] std::vector<FSNode *> removableNodes(std::span<FSNode *const> nodes);

/// The nodes as entries to remove, with the sizes from the scan, and pinned to the items that it found. None
/// where the nodes are of an imported tree.
[[nodiscard]] std::vector<CleanupEntry> entriesOf(std::span<FSNode *const> nodes);

/// The nodes of a tree whose items are gone, without their descendants. The root itself always stays; if it
/// is gone, all its children are returned. Visits only folders with removed descendants.
[[nodiscard]] std::vector<FSNode *> goneNodes(FSNode &root, const GonePaths &gone);

/// The folders of a tree that contained a removed item without a node of its own: a small file, or another
/// name of a file that counts once. Never the root, where everything has a node.
[[nodiscard]] std::vector<FileURL> foldersMissing(FSNode &root, const GonePaths &gone);

/// The nodes of a tree that are among these items or inside one, without their descendants. The root, too,
/// may be one.
[[nodiscard]] std::vector<FSNode *> nodesAt(FSNode &root, const GonePaths &items);

/// The folders among `nodesAt`.
[[nodiscard]] std::vector<FSNode *> foldersAt(FSNode &root, const GonePaths &items);

} // namespace brimvale
