#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Text/Formatting.h"
#include "Core/Treemap/Squarify.h"
#include "Core/Treemap/Treemap.h"

#include <span>
#include <string>
#include <vector>

namespace brimvale {

/// The look of treemap tiles, in the window and in pictures. Lengths are in points.
namespace TreemapStyle {

inline constexpr double cornerRadius = 3;

/// The border is drawn inside the tile's edge: black, or the colour of primary text for the selected tile.
inline constexpr double borderWidth = 0.5;
inline constexpr double borderOpacity = 0.15;
inline constexpr double selectedBorderWidth = 2;

/// Between neighbours of one colour, where that border would not be seen.
inline constexpr double separatorWidth = 1;

inline constexpr double labelPadding = 5;

/// The background of a treemap, and the colour of secondary text on it.
struct Surface {
    Color background;
    Color secondaryText;
};

/// The light background of the window, for pictures outside it.
inline constexpr Surface paper = {{1, 1, 1}, {0x5f / 255.0, 0x5f / 255.0, 0x66 / 255.0}};

/// The colour of a tile, drawn over the background.
struct Fill {
    Color color;
    double opacity;

    friend bool operator==(const Fill &, const Fill &) = default;
};

/// A line between two tiles, whose rectangle has a width or a height of 0.
struct Separator {
    Rect line;
    Color color;
};

/// The fill for a node.
[[nodiscard]] Fill fill(const FSNode &node, const Surface &surface);

/// A fill over an opaque colour. A label on it is black or white, whichever can be read better.
[[nodiscard]] Color over(const Color &background, const Fill &fill);

/// The lines between neighbours of one colour.
[[nodiscard]] std::vector<Separator> separators(std::span<const TreemapTile> tiles, const Surface &surface);

/// Whether a tile is large enough for its name and size, with texts that are `textScale` times as large as
/// usual.
[[nodiscard]] bool hasLabel(const Rect &tile, double textScale = 1);

/// The area of a label whose two lines are `height` high together, with padding on all sides. A low tile
/// loses as much padding above as below.
[[nodiscard]] Rect labelArea(const Rect &tile, double height);

/// A node's size as it is shown.
[[nodiscard]] std::string sizeText(const FSNode &node);

} // namespace TreemapStyle

} // namespace brimvale
