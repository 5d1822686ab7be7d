#pragma once

#include "CommandLine/JsonWriter.h"
#include "CommandLine/TreeLimits.h"
#include "Core/Scan/FSNode.h"

namespace brimvale::commandLine {

/// Writes a node and what lies beneath it as one JSON value, as it walks: an object with the stored members
/// of each node by their names, `path` on `root` alone, and `children` last, where there are any to tell.
void writeTree(JsonWriter &json, const FSNode &root, const TreeLimits &limits);

} // namespace brimvale::commandLine
