#pragma once

#include "Base/StopFlag.h"

#include <atomic>
#include <cstdint>

namespace brimvale {

/// State that a long removal shares with its observers. It must outlive the removal, and may serve several
/// removals one after another.
struct RemovalProgress {
    /// The number of files, links and folders removed.
    std::atomic<std::int64_t> entriesRemoved = 0;

    /// The bytes of a backup to read before its originals are removed, and how many have been read.
    std::atomic<std::int64_t> bytesToVerify = 0;
    std::atomic<std::int64_t> bytesVerified = 0;

    /// Stops the removal. Items removed before stay removed.
    StopFlag cancelled = {};

    /// Set with `cancelled` when nobody waits for the result: then what is left is not measured.
    StopFlag abandoned = {};
};

} // namespace brimvale
