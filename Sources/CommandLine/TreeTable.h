#pragma once

#include "CommandLine/Output.h"
#include "CommandLine/TreeLimits.h"
#include "Core/Scan/FSNode.h"

namespace brimvale::commandLine {

/// Writes a tree for reading: a line a node with its size, its files and, between the lines of the tree, its
/// name and what is special about it; one more line where children are left out for `limits.top`, which adds
/// them up. The root is shown by its path.
void writeTreeTable(Output &output, const FSNode &root, const TreeLimits &limits);

} // namespace brimvale::commandLine
