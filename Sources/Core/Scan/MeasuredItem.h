#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// The measured size of one path. Empty if its status cannot be read.
struct MeasuredItem {
    std::int64_t bytes = 0; ///< allocated; a folder's with all its contents
    std::optional<Date> modified = {};
    bool isFolder = false;       ///< false for a link to a folder
    bool hasLinkedFiles = false; ///< a folder with files that have several names
    bool isIncomplete = false;   ///< a part of a folder could not be read
};

} // namespace brimvale
