#pragma once

#include "Core/Export/ScanOrigin.h"
#include "Core/Export/TreeAssembly.h"
#include "Core/Text/JsonReader.h"

namespace brimvale {

/// Reads ncdu's JSON export (version 1.x) after its first bracket. A file with several names counts once.
/// What is wrong with it is the fault of `json`.
void readNcduListing(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin);

} // namespace brimvale
