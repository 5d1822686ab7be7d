#pragma once

#include "Base/TextSink.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Export/TreeLimits.h"
#include "Core/Scan/FSNode.h"
#include "Core/Text/JsonWriter.h"

#include <cstdint>

namespace brimvale {

/// Writes the tree as the document of "brimvalectl scan --json", with its origin before it.
void writeJsonListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin);

/// Writes the members of such a document that say where the tree is from.
void writeOrigin(JsonWriter &json, const ScanOrigin &origin);

/// Writes the members with the tree and its totals.
void writeTreeAndTotals(JsonWriter &json, const FSNode &root, const TreeLimits &limits,
                        std::int64_t unreadable);

} // namespace brimvale
