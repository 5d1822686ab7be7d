#pragma once

#include "Base/TextSink.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Scan/FSNode.h"

namespace brimvale {

/// Writes the tree as ncdu's JSON export (version 1.2). Names are the bytes of the disk. A folder takes no
/// space of its own, as in a scan, so every total equals ours. An aggregate is a file that also says how many
/// it stands for, which ncdu passes over.
void writeNcduListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin);

} // namespace brimvale
