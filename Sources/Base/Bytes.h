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

/// The bytes of `blocks` blocks of 512, the unit in which POSIX counts allocation (<sys/stat.h>, st_blocks).
/// Stops the program where they do not fit into 64 bits.
[[nodiscard]] inline std::int64_t bytesOfBlocks(std::int64_t blocks) {
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(blocks, std::int64_t{512}, &bytes)) [[unlikely]]
        stopAtOverflow();
    return bytes;
}

} // namespace brimvale
