#pragma once

#include "Base/Result.h"
#include "Base/TextSink.h"
#include "Core/Export/ListingReader.h"

#include <string_view>

namespace brimvale {

/// Writes a tree as a saved scan: every figure, flag and identity, in about 20 bytes a file, with a checksum
/// (docs/SAVED-SCAN.md).
void writeSavedScan(TextSink &sink, const FSNode &root, const ScanOrigin &origin);

/// Whether these are the first bytes of a saved scan, of any version.
[[nodiscard]] bool beginsSavedScan(std::string_view bytes);

/// Reads a saved scan. A damaged or foreign one gets a sentence.
[[nodiscard]] Result<ImportedTree, ImportFault> readSavedScan(std::string_view bytes);

} // namespace brimvale
