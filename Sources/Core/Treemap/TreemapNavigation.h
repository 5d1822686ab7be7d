#pragma once

#include "Core/Treemap/Treemap.h"

#include <cstddef>
#include <optional>
#include <span>

namespace brimvale {

/// Finds tiles, by their place, by their node, and from one to the next with the arrow keys. Works for
/// detailed maps too.
namespace TreemapNavigation {

enum class Direction { left, right, up, down };

/// The closed tile completely on that side of the tile `from` and nearest to the middle of the edge there; of
/// equally near ones the first in layout order. An open tile counts as its heading alone, so that down leads
/// inside. Nothing at the edge of the map.
[[nodiscard]] std::optional<std::size_t> next(std::span<const TreemapTile> tiles, std::size_t from,
                                              Direction direction);

/// The innermost tile with that point; nothing between tiles.
[[nodiscard]] std::optional<std::size_t> tileAt(std::span<const TreemapTile> tiles, double x, double y);

/// The tile of a node, of which `way` has the ancestors below the map's folder, the outermost first, and the
/// node itself. Where it has no tile, that of the innermost ancestor with one. The nodes are only compared.
[[nodiscard]] std::optional<std::size_t> tileOn(std::span<const TreemapTile> tiles,
                                                std::span<const FSNode *const> way);

/// The open tile around a tile; nothing for one that is directly in the map.
[[nodiscard]] std::optional<std::size_t> around(std::span<const TreemapTile> tiles, std::size_t inside);

} // namespace TreemapNavigation

} // namespace brimvale
