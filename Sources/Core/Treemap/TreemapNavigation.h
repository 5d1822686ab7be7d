#pragma once

#include "Core/Treemap/Treemap.h"

#include <cstddef>
#include <optional>
#include <span>

namespace brimvale {

/// Moves from tile to tile with the arrow keys.
namespace TreemapNavigation {

enum class Direction { left, right, up, down };

/// The tile completely on that side of the tile `from` and nearest to the middle of the edge there; of
/// equally near ones the first in layout order. Nothing at the edge of the map.
[[nodiscard]] std::optional<std::size_t> next(std::span<const TreemapTile> tiles, std::size_t from,
                                              Direction direction);

} // namespace TreemapNavigation

} // namespace brimvale
