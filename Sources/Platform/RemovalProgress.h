#pragma once

#include "Base/StopFlag.h"

#include <atomic>
#include <cstdint>

namespace brimvale {

/// State that a long removal shares with its observers. It must outlive the removal, and may serve several
/// removals one after another.
struct RemovalProgress {
    /// The number of files, links and folders removed; it only grows.
    std::atomic<std::int64_t> entriesRemoved = 0;

    /// Stops the removal. Items removed before stay removed.
    StopFlag cancelled = {};
};

} // namespace brimvale
