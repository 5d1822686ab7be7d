#pragma once

#include "Core/Scan/ScanStats.h"

#include <atomic>
#include <cstdint>

namespace brimvale {

/// The progress of a search for duplicates, shared by its threads and its observers. Cancelling `stats` ends
/// the search soon.
struct DuplicateProgress {
    ScanStats stats;                        ///< of the walk
    std::atomic<bool> isReading = false;    ///< the walk is over, and contents are compared
    std::atomic<std::int64_t> toRead = 0;   ///< bytes, those to be read later included; grows
    std::atomic<std::int64_t> haveRead = 0; ///< of these, what is done
};

} // namespace brimvale
