#pragma once

#include <cstddef>

namespace brimvale {

/// Takes memory straight from the system: `size` bytes, all zero, from a multiple of `alignment` on, which is
/// a power of two of at least one page. Throws std::bad_alloc if there is none.
[[nodiscard]] void *takePages(std::size_t size, std::size_t alignment);

/// Returns it to the system at once.
void giveBackPages(void *pages, std::size_t size) noexcept;

} // namespace brimvale
