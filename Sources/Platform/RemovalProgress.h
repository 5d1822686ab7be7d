#pragma once

#include <atomic>
#include <cstdint>

namespace brimvale {

/// State that a long removal shares with its observers. It must outlive the removal, and may serve several
/// removals one after another.
struct RemovalProgress {
    /// The number of files, links and folders removed; it only grows.
    std::atomic<std::int64_t> entriesRemoved = 0;

    /// Set by whoever watches, to end the removal: what is gone by then stays gone.
    std::atomic<bool> cancelled = false;
};

} // namespace brimvale
