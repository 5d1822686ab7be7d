#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

class RemovalActions;

/// Compares the free space of the volumes of some items before and after their removal. Blocks while the
/// system writes out what it has deleted, so use it off the main thread.
class FreeSpace {
public:
    /// Reads the free space now. `actions` must outlive it.
    FreeSpace(const std::vector<FileURL> &items, RemovalActions &actions);

    /// If the free space has grown by much less or more than the deleted bytes: this, with the likely reason,
    /// as a sentence. Otherwise empty, also where the free space is not known. Small removals are not
    /// checked, because other programs write at the same time. When this returns, the free space of the
    /// volumes includes what was deleted, unless a disk is slow.
    [[nodiscard]] std::string remarkOn(std::int64_t deleted) const;

private:
    struct Volume {
        FileURL folder; ///< a parent of items
        std::int64_t freeBefore = 0;
    };

    std::vector<Volume> volumes_;
    RemovalActions &actions_;
};

} // namespace brimvale
