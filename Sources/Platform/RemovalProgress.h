#pragma once

#include <atomic>
#include <cstdint>

namespace brimvale {

/// What a long removal shares with those who watch it. It must outlive the removal, and may serve several
/// removals one after another.
struct RemovalProgress {
    /// Files, links and folders that are gone; only ever added to.
    std::atomic<std::int64_t> entriesRemoved = 0;

    /// Set by whoever watches, to end the removal: what is gone by then stays gone.
    std::atomic<bool> cancelled = false;
};

} // namespace brimvale
