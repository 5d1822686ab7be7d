#pragma once

#include "Catalogs/CleanupEntry.h"
#include "CommandLine/Output.h"

#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// Writes rows of size, age and path, under titles.
void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries);

} // namespace brimvale::commandLine
