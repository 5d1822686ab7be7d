#pragma once

#include "Catalogs/CleanupEntry.h"

#include <string>
#include <vector>

namespace brimvale {

/// How much thought the removal of something deserves.
enum class CleanupRisk { safe, review, careful };

/// A place whose contents can be removed and come back on their own.
struct CleanupTarget {
    std::string id;
    std::string title;
    std::string detail;
    CleanupRisk risk = CleanupRisk::safe;
    std::vector<std::string> roots; ///< absolute paths
    bool contentsOnly = true;       ///< a root's immediate children are its entries, never the root itself
    std::vector<CleanupEntry> entries = {}; ///< empty until measured
    bool scanned = false;

    friend bool operator==(const CleanupTarget &, const CleanupTarget &) = default;
};

} // namespace brimvale
