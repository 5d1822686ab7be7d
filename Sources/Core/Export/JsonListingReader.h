#pragma once

#include "Core/Export/ScanOrigin.h"
#include "Core/Export/TreeAssembly.h"
#include "Core/Text/JsonReader.h"

namespace brimvale {

/// Reads the document of `writeJsonListing`, or of "brimvalectl scan --json", after its first bracket. In
/// each node, what it is must come before its children, as it is written. What is wrong with it is the fault
/// of `json`.
void readJsonListing(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin);

} // namespace brimvale
