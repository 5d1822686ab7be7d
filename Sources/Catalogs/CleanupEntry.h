#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// One item that can be removed: a row of a cleanup target or of a storage category.
struct CleanupEntry {
    FileURL url;
    std::int64_t size = 0; ///< allocated bytes
    std::optional<Date> modified = {};
    bool isFolder = false; ///< as it was measured; a link is none

    /// Whether they say the same of the same item. Its kind does not count.
    friend bool operator==(const CleanupEntry &a, const CleanupEntry &b) {
        return a.url == b.url && a.size == b.size && a.modified == b.modified;
    }
};

} // namespace brimvale
