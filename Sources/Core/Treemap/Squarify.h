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

/// The squarified treemap of Bruls, Huizing and van Wijk (2000): rectangles with areas proportional to
/// values, in rows that grow as long as their worst aspect ratio improves. Pure and linear in the number of
/// values.
namespace Squarify {

/// One rectangle per value, in order, inside `rect`. `values` must be in descending order and not negative.
/// Returns fewer rectangles than values where the rest of `rect` becomes thinner than half a point; none
/// without area or positive values.
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

/// The same for values with a payload.
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
