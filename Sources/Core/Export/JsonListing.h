#pragma once

#include "Base/TextSink.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Scan/FSNode.h"

namespace brimvale {

/// Writes the tree as the document of "brimvalectl scan --json", with its origin before it.
void writeJsonListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin);

} // namespace brimvale
