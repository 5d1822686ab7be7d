#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/RemovalResult.h"

#include <vector>

namespace brimvale::commandLine {

/// What the storage categories say about those of the items that they protect, each with its path. Reads the
/// disk.
[[nodiscard]] std::vector<RemovalResult::Failure> categoryWarnings(const std::vector<FileURL> &items);

/// The same warnings as reasons why the items are left out.
[[nodiscard]] std::vector<RemovalResult::Failure> asRefusals(std::vector<RemovalResult::Failure> warnings);

/// Writes the warnings on standard error, for items that are removed anyway.
void printWarnings(const std::vector<RemovalResult::Failure> &warnings);

} // namespace brimvale::commandLine
