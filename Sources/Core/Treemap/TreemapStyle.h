#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Text/Formatting.h"
#include "Core/Treemap/Squarify.h"

#include <string>

namespace brimvale {

/// How the tiles of a treemap look, wherever they are drawn. Lengths are in points.
namespace TreemapStyle {

inline constexpr double cornerRadius = 3;

/// A border lies inside the edge of its tile: black, or in the colour of primary text where it is selected.
inline constexpr double borderWidth = 0.5;
inline constexpr double borderOpacity = 0.15;
inline constexpr double selectedBorderWidth = 2;

/// A label is white, its shadow is black.
inline constexpr double labelPadding = 5;
inline constexpr double shadowOpacity = 0.45;

/// What a treemap is drawn on, and in which colour secondary text is written there.
struct Surface {
    Color background;
    Color secondaryText;
};

/// The light surface of the window, for pictures that stand alone.
inline constexpr Surface paper = {{1, 1, 1}, {0x5f / 255.0, 0x5f / 255.0, 0x66 / 255.0}};

/// The colour of a tile, over what the treemap is drawn on.
struct Fill {
    Color color;
    double opacity;

    friend bool operator==(const Fill &, const Fill &) = default;
};

/// The fill for a node.
[[nodiscard]] Fill fill(const FSNode &node, const Surface &surface);

/// Whether a tile is large enough for its name and size.
[[nodiscard]] bool hasLabel(const Rect &tile);

/// Where the two lines of a label go that are `height` high together: with the padding on all sides, of which
/// a low tile gives up as much above as below.
[[nodiscard]] Rect labelArea(const Rect &tile, double height);

/// A node's size as it is shown.
[[nodiscard]] std::string sizeText(const FSNode &node);

} // namespace TreemapStyle

} // namespace brimvale
