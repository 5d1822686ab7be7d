#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Scan/MeasuredItem.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// The rows of cleanup targets and storage categories. Unreadable items are left out silently.
namespace CleanupEntries {

/// The paths to measure for `roots`: the roots themselves, or the items right in them, hidden entries
/// included, in the order of the roots and of the system.
[[nodiscard]] std::vector<std::string> paths(const std::vector<std::string> &roots, bool listsContents);

/// The same for one folder's contents, by name; empty where it cannot be listed.
[[nodiscard]] std::vector<std::string> names(const std::string &folder);

/// The rows of measured paths, the largest first and equal ones in the given order. A path with less than
/// `minimum` allocated bytes has none.
[[nodiscard]] std::vector<CleanupEntry> measured(const std::vector<std::string> &paths,
                                                 const std::vector<MeasuredItem> &items,
                                                 std::int64_t minimum = 1);

/// Those of the measured paths of which a part could not be read.
[[nodiscard]] std::vector<std::string> incompletePaths(const std::vector<std::string> &paths,
                                                       const std::vector<MeasuredItem> &items);

/// Sorts rows by size, the largest first; equal ones keep their order.
void sort(std::vector<CleanupEntry> &entries);

/// The rows that a removal has to be asked for: each item once, and none that goes with a folder among them.
[[nodiscard]] std::vector<CleanupEntry> outermost(const std::vector<CleanupEntry> &entries);

/// Whether one of the roots exists but cannot be listed.
[[nodiscard]] bool hasUnreadableRoot(const std::vector<std::string> &roots);

/// The bytes of all rows.
[[nodiscard]] std::int64_t totalSize(const std::vector<CleanupEntry> &entries);

/// The bytes of the rows on the volume that the categories divide.
[[nodiscard]] std::int64_t sizeHere(const std::vector<CleanupEntry> &entries);

/// Notes which rows are not on the storage of the volume at this mount point. Asks the disk.
void markElsewhere(std::vector<CleanupEntry> &entries, const FileURL &volume);

} // namespace CleanupEntries

} // namespace brimvale
