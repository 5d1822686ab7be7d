#pragma once

#include "Catalogs/CleanupEntry.h"

#include <string>
#include <vector>

namespace brimvale {

/// How carefully to consider a removal.
enum class CleanupRisk { safe, review, careful };

/// A place whose contents can be removed, because programs create them again.
struct CleanupTarget {
    std::string id;
    std::string title;
    std::string detail;
    CleanupRisk risk = CleanupRisk::safe;
    std::vector<std::string> roots; ///< absolute paths
    bool contentsOnly = true;       ///< the entries are the children of each root, never the root itself
    std::vector<CleanupEntry> entries = {}; ///< empty until measured
    bool scanned = false;
    bool hasUnreadableRoot = false;         ///< a root exists, but could not be listed when it was measured
    std::string symbol = {};                ///< the name of its icon; empty for none
    std::vector<std::string> commands = {}; ///< of tools that look after what is there, for the user to copy
    bool hasPlace = true;                   ///< this machine has a place for it; otherwise it is not shown

    friend bool operator==(const CleanupTarget &, const CleanupTarget &) = default;
};

} // namespace brimvale
