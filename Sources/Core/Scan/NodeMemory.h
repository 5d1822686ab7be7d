#pragma once

#include <cstddef>

namespace brimvale {

/// Memory for the nodes of trees and for their names. It is taken from blocks, without a header for each
/// piece, and each thread takes from a block of its own. A block is freed when all its pieces are: that suits
/// trees, of which whole branches are made and dropped together. Any thread may give a piece back, also
/// after the end of the thread that took it.
namespace NodeMemory {

/// Memory aligned for a node.
[[nodiscard]] void *take(std::size_t bytes);

/// Memory for bytes, without any alignment.
[[nodiscard]] char *takeBytes(std::size_t bytes);

/// Lets a piece be given back once more before its memory is free. False where that is not possible.
[[nodiscard]] bool share(const void *piece);

/// Gives back what `take` or `takeBytes` has returned; nothing for null.
void giveBack(const void *piece) noexcept;

} // namespace NodeMemory

} // namespace brimvale
