#pragma once

#include <cstdint>

namespace brimvale {

/// Gives an open, empty file this length with all its space taken on the disk, without writing the bytes.
/// False where the file system cannot do that; then the bytes have to be written.
[[nodiscard]] bool allocateSpace(int file, std::int64_t bytes);

} // namespace brimvale
