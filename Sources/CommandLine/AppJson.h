#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Text/JsonWriter.h"

#include <vector>

namespace brimvale::commandLine {

/// Writes the records of applications as JSON objects with their members by name. Whether it is running is
/// only told of applications that are no bundles.
void writeAppRow(JsonWriter &json, const AppRow &row, bool isRunning);
void writeLeftovers(JsonWriter &json, const std::vector<LeftoverItem> &items);

} // namespace brimvale::commandLine
