#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Core/Scan/ScanOptions.h"

#include <string_view>

namespace brimvale::commandLine {

/// A path of the command line as an absolute path, otherwise unchanged byte for byte. A relative path is
/// relative to the working directory. Fails if the path is empty or there is no working directory.
[[nodiscard]] Result<FileURL> resolveGivenPath(std::string_view typed);

/// The folder or file to scan. Fails if it does not exist (links are followed), or if a folder cannot be
/// listed.
[[nodiscard]] Result<FileURL> placeToScan(std::string_view typed);

/// The entry to measure, standardised. Fails if it does not exist (links are not followed), or if a folder
/// cannot be listed. Does not list folders in `skippedPaths`.
[[nodiscard]] Result<FileURL> placeToMeasure(std::string_view typed, const PathSet &skippedPaths);

/// The item that `check` or `remove` gets: absolute, otherwise as typed. An empty path, most likely an unset
/// variable, means the root, as in the removal guards.
[[nodiscard]] Result<FileURL> placeToRemove(std::string_view typed);

/// Reports on standard error what is wrong with a path. Shows the path as typed.
void printPathError(std::string_view typed, const FileError &error);

} // namespace brimvale::commandLine
