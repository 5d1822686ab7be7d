#pragma once

#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// What became of an item between two scans.
struct TreeChange {
    enum class Kind {
        appeared, ///< with all it contains, but without what was moved into it
        gone,     ///< without what was moved out of it
        moved,    ///< the same item has another path; found only where both scans know identities
        changed   ///< a file, or the small files of a folder together
    };

    Kind kind = Kind::changed;
    std::string path;         ///< in the later scan; of what is gone in the earlier one
    std::string earlier = {}; ///< the path of what was moved
    bool isFolder = false;
    bool isAggregate = false; ///< the small files of the folder at `path`
    std::int64_t before = 0;  ///< allocated bytes
    std::int64_t after = 0;

    [[nodiscard]] std::int64_t growth() const { return after - before; }
};

/// All changes, what has grown most first. Compares by names from the two roots down, whatever their paths
/// are, and then looks for gone items among the new ones by identity.
[[nodiscard]] std::vector<TreeChange> compareTrees(const FSNode &before, const FSNode &after);

} // namespace brimvale
