#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace brimvale {

class RemovalActions;
struct RemovalProgress;

/// Compares the free space of the volumes of some items before and after their removal. Blocks while the
/// system writes out what it has deleted, so use it off the main thread.
class FreeSpace {
public:
    /// Smaller removals are not compared: other programs change the free space by as much in a short time.
    static constexpr std::int64_t leastCompared = 50'000'000;

    /// Reads the free space now. `actions` must outlive it.
    FreeSpace(const std::vector<FileURL> &items, RemovalActions &actions);

    /// Notes in the result how much the free space has grown, to stand beside the deleted bytes: as a number
    /// and as a sentence. If that is much less or more, the sentence gives the reason: what the promise of
    /// the result names, otherwise what is likely. Nothing where the free space is not known. When this
    /// returns, the free space of the volumes includes what was deleted, unless a disk is slow.
    void noteGrowth(RemovalResult &result) const;

private:
    [[nodiscard]] std::optional<std::int64_t> gained() const;

    struct Volume {
        FileURL folder; ///< a parent of items
        std::int64_t freeBefore = 0;
    };

    std::vector<Volume> volumes_;
    RemovalActions &actions_;
};

/// Calls `work`, which removes the items, and notes in its result how much the free space has grown, and what
/// was promised. Not if `progress` is abandoned.
[[nodiscard]] RemovalResult removeAndCompare(const std::vector<FileURL> &items, RemovalActions &actions,
                                             const RemovalProgress &progress,
                                             const std::optional<FreePromise> &promise,
                                             const std::function<RemovalResult()> &work);

} // namespace brimvale
