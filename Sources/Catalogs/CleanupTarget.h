#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// How much thought the removal of something deserves.
enum class CleanupRisk { safe, review, careful };

/// One item that can be removed: a row of a cleanup target or of a storage category.
struct CleanupEntry {
    FileURL url;
    std::int64_t size = 0; ///< allocated bytes
    std::optional<Date> modified = {};

    friend bool operator==(const CleanupEntry &, const CleanupEntry &) = default;
};

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
