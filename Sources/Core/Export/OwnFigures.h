#pragma once

#include "Core/Scan/FSNode.h"

#include <cstdint>

namespace brimvale {

/// What a node counts that none of its children does: all of it for a file, and most often nothing for a
/// folder. What was removed from a folder is not part of it.
struct OwnFigures {
    std::int64_t size = 0; ///< allocated bytes
    std::int64_t length = 0;
    std::int64_t files = 0;

    [[nodiscard]] static OwnFigures of(const FSNode &node);
};

} // namespace brimvale
