#pragma once

#include "Base/FileURL.h"

#include <cstdint>

namespace brimvale {

/// One item that was copied into a backup, with allocated bytes of original and copy.
struct ArchivedItem {
    FileURL source;
    FileURL destination;
    std::int64_t originalBytes = 0;
    std::int64_t copiedBytes = 0;
    /// Whether equal bytes were enough to accept the copy: on some systems equal files often occupy different
    /// amounts of space.
    bool isSameByBytes = false;

    friend bool operator==(const ArchivedItem &, const ArchivedItem &) = default;
};

} // namespace brimvale
