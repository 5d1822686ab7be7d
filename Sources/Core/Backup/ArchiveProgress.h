#pragma once

#include "Base/StopFlag.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace brimvale {

/// The progress of a backup.
struct ArchiveProgress {
    /// The first four are repeated for each item; the last two come once at the end.
    enum class Phase { copying, writingOut, measuring, comparing, readingMessages, finishing };

    Phase phase = Phase::copying;
    std::size_t item = 0;   ///< index of the current source; the number of sources in the last two phases
    std::int64_t bytes = 0; ///< allocated by all copies so far, the current one included
};

/// The current step in a few words. `item` is the displayed name of the source; `total` are the allocated
/// bytes of all sources.
[[nodiscard]] std::string stepText(const ArchiveProgress &progress, const std::string &item,
                                   std::int64_t total);

/// Who watches a backup, and may stop it.
struct ArchiveWatch {
    StopFlag cancelled = {};
    /// Told with every step, and about twice a second while an item is copied, on the thread that archives.
    std::function<void(const ArchiveProgress &)> onProgress = [](const ArchiveProgress &) {};
};

} // namespace brimvale
