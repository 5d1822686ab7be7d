#pragma once

#include "CommandLine/Output.h"
#include "Core/Export/TreeLimits.h"
#include "Core/Scan/FSNode.h"

namespace brimvale::commandLine {

/// Prints a tree: one line per node with its size, its number of files, its name and notes, joined by lines.
/// If `limits.top` leaves out children, one more line shows their sum. The root is shown by its path.
void writeTreeTable(Output &output, const FSNode &root, const TreeLimits &limits);

} // namespace brimvale::commandLine
