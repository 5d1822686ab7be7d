#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Catalogs/CleanupTarget.h"
#include "CommandLine/Output.h"

#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// Writes rows of size, age and path, under titles.
void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries);

/// Writes rows of size, risk, id and title, under titles.
void writeTargetTable(Output &output, const std::vector<CleanupTarget> &targets);

} // namespace brimvale::commandLine
