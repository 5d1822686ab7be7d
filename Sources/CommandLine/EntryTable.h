#pragma once

#include "Catalogs/CleanupEntry.h"
#include "CommandLine/Output.h"

#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// Writes rows of size, age and path, under titles.
void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries);

/// Writes cells side by side, `widths` characters wide each (to the left where the width is negative), and
/// the last text behind them.
void writeColumns(Output &output, const std::vector<std::pair<std::string, int>> &cells,
                  std::string_view last);

} // namespace brimvale::commandLine
