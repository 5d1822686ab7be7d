#pragma once

#include <span>
#include <vector>

namespace brimvale {

/// A rectangle in points, y growing downward.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rect &, const Rect &) = default;
};

/// The squarified treemap of Bruls, Huizing and van Wijk (2000): rectangles with areas in proportion to
/// values, in rows that grow for as long as that improves their worst aspect ratio. Pure and linear in the
/// number of values.
namespace Squarify {

/// One rectangle for each value, from the first on, inside `rect`. `values` must fall and must not be
/// negative; they are never reordered. Fewer rectangles than values come back where what is left of `rect`
/// becomes thinner than half a point; none where there is no area or nothing to share it.
[[nodiscard]] std::vector<Rect> layout(std::span<const double> values, Rect rect);

template<class Payload>
struct Item {
    Payload node;
    double value;
};

template<class Payload>
struct Tile {
    Payload node;
    Rect rect;
};

/// The same for values that stand for something.
template<class Payload>
[[nodiscard]] std::vector<Tile<Payload>> layout(std::span<const Item<Payload>> items, Rect rect) {
    std::vector<double> values;
    values.reserve(items.size());
    for (const Item<Payload> &item : items)
        values.push_back(item.value);
    std::vector<Tile<Payload>> tiles;
    const std::vector<Rect> rects = layout(values, rect);
    tiles.reserve(rects.size());
    for (std::size_t i = 0; i < rects.size(); ++i)
        tiles.push_back({items[i].node, rects[i]});
    return tiles;
}

} // namespace Squarify

} // namespace brimvale
