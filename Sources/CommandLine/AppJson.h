#pragma once

#include "CommandLine/JsonWriter.h"
#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"

#include <vector>

namespace brimvale::commandLine {

/// Writes the records of applications as JSON objects with their members by name.
void writeAppRow(JsonWriter &json, const AppRow &row);
void writeLeftovers(JsonWriter &json, const std::vector<LeftoverItem> &items);

} // namespace brimvale::commandLine
