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

    friend bool operator==(const CleanupEntry &, const CleanupEntry &) = default;
};

} // namespace brimvale
