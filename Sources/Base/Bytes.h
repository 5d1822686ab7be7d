#pragma once

#include <cstdint>

namespace brimvale {

/// Ends the program with a message: a size or count no longer fits, so every figure after it would be wrong.
[[noreturn]] void stopAtOverflow();

/// The sum of two sizes (bytes) or counts. Stops the program where it does not fit into 64 bits.
[[nodiscard]] inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) [[unlikely]]
        stopAtOverflow();
    return sum;
}

} // namespace brimvale
