#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

class RemovalActions;
struct RemovalResult;

/// Compares the free space of the volumes of some items before and after their removal. Blocks while the
/// system writes out what it has deleted, so use it off the main thread.
class FreeSpace {
public:
    /// Reads the free space now. `actions` must outlive it.
    FreeSpace(const std::vector<FileURL> &items, RemovalActions &actions);

    /// Notes in the result how much the free space has grown, to stand beside the deleted bytes: as a number
    /// and as a sentence, with the likely reason if that is much less or more. Nothing where the free space
    /// is not known. Small removals are not checked, because other programs write at the same time. When this
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

} // namespace brimvale
