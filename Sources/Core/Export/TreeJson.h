#pragma once

#include "Core/Export/TreeLimits.h"
#include "Core/Scan/FSNode.h"
#include "Core/Text/JsonWriter.h"

namespace brimvale {

/// Writes a node and its descendants as one JSON value, without recursion: an object per node with its
/// members by name, `path` only for `root`, and `children` last, if there are any to write. Lengths and
/// folders are those that are left after removals.
void writeTree(JsonWriter &json, const FSNode &root, const TreeLimits &limits);

} // namespace brimvale
