#pragma once

#include "Base/Color.h"
#include "Core/Treemap/DetailedTreemap.h"
#include "Core/Treemap/MapColors.h"
#include "Core/Treemap/TreemapStyle.h"

#include <span>
#include <vector>

namespace brimvale {

/// The look of a detailed treemap, in the window and in pictures. Its tiles are flat; between them, their
/// folder is seen. Lengths are in points.
namespace DetailedStyle {

/// The space between two tiles.
inline constexpr double gap = 1;

/// At both ends of a name in a heading or a tile.
inline constexpr double padding = 4;

/// The colours of all tiles over the background: of closed tiles the fill, of open ones the ground of their
/// contents.
[[nodiscard]] std::vector<Color> colorsOf(std::span<const TreemapTile> tiles,
                                          const TreemapStyle::Surface &surface, const MapColors &by = {});

/// A colour that stands back, over the colour of its parent folder.
[[nodiscard]] Color dimmed(const Color &color, const Color &around);

/// Whether a closed tile is large enough for its name in one line, with texts that are `textScale` times as
/// large as usual. For name and size see `TreemapStyle`.
[[nodiscard]] bool hasName(const Rect &tile, double textScale = 1);

/// Whether a heading is wide enough for the size after the name.
[[nodiscard]] bool hasSize(const Rect &heading, double textScale = 1);

} // namespace DetailedStyle

} // namespace brimvale
