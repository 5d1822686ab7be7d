#pragma once

#include "Core/Duplicates/DuplicateGroup.h"
#include "Core/Duplicates/DuplicateProgress.h"
#include "Core/Scan/ScanOptions.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// Finds files with equal contents of at least `leastLength` bytes at and under these places (absolute). Only
/// files of one length are read: first their first and last block, then those that are still equal as a
/// whole. All files of a group are equal by a comparison of all bytes, or by their SHA-256 digests.
///
/// Enters what a scan enters, follows no links, and opens nothing but files. Empty files are no duplicates,
/// and a file with several names counts once. Files with holes, placeholders of cloud providers and files
/// that change while they are read are left out. Blocks; call it off the main thread. After
/// `progress.stats.cancel()`, returns within about half a second what was complete.
[[nodiscard]] DuplicatesFound findDuplicates(const std::vector<FileURL> &places, std::int64_t leastLength,
                                             const ScanOptions &options, DuplicateProgress &progress);

} // namespace brimvale
