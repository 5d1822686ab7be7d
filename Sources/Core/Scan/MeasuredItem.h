#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// What measuring tells of one path. Nothing of that where the path has no status.
struct MeasuredItem {
    std::int64_t bytes = 0; ///< allocated, of a folder with all that it holds
    std::optional<Date> modified = {};
    bool isFolder = false; ///< a link to a folder is none
};

} // namespace brimvale
