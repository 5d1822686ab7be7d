#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Core/Scan/ScanOptions.h"

#include <string_view>

namespace brimvale::commandLine {

/// The place that a path on the command line means: absolute, as it was typed, byte for byte; a relative one
/// lies in the working directory. An error for an empty path, or where there is no working directory.
[[nodiscard]] Result<FileURL> resolveGivenPath(std::string_view typed);

/// The folder or file that `scan` is to tell about. An error where there is none (links are followed), or
/// where a folder cannot be listed.
[[nodiscard]] Result<FileURL> placeToScan(std::string_view typed);

/// The entry that `size` is to measure, in its standardised form. An error where there is none (a link stands
/// for itself), or where a folder cannot be listed. A folder among `skippedPaths` is not looked into.
[[nodiscard]] Result<FileURL> placeToMeasure(std::string_view typed, const PathSet &skippedPaths);

/// The item that `check` judges and `remove` removes: absolute, as it was typed. An empty path, most likely a
/// variable that was never set, means the root, as it does to the removal guards.
[[nodiscard]] Result<FileURL> placeToRemove(std::string_view typed);

/// Tells on standard error what is wrong with a path, which is shown as it was typed.
void printPathError(std::string_view typed, const FileError &error);

} // namespace brimvale::commandLine
