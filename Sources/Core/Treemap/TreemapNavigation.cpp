#include "Core/Treemap/TreemapNavigation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brimvale {

namespace {

/// Neighbours share an edge, apart from rounding of their coordinates.
constexpr double tolerance = 1e-3;

/// The rectangle in a map that is mirrored or transposed so that `direction` points right.
Rect turned(const Rect &rect, TreemapNavigation::Direction direction) {
    switch (direction) {
    case TreemapNavigation::Direction::left:
        return {-rect.x - rect.width, rect.y, rect.width, rect.height};
    case TreemapNavigation::Direction::right:
        return rect;
    case TreemapNavigation::Direction::up:
        return {-rect.y - rect.height, rect.x, rect.height, rect.width};
    case TreemapNavigation::Direction::down:
        return {rect.y, rect.x, rect.height, rect.width};
    }
    return rect;
}

/// The distance from the middle of the right edge of `from` to `to`; infinity where `to` is not to the right.
double distance(const Rect &from, const Rect &to) {
    const double across = to.x - (from.x + from.width);
    if (across < -tolerance)
        return std::numeric_limits<double>::infinity();
    const double middle = from.y + from.height / 2;
    const double along = std::max({to.y - middle, middle - (to.y + to.height), 0.0});
    return std::hypot(std::max(across, 0.0), along);
}

} // namespace

std::optional<std::size_t> TreemapNavigation::next(std::span<const TreemapTile> tiles, std::size_t from,
                                                   Direction direction) {
    const Rect start = turned(tiles[from].rect, direction);
    double best = std::numeric_limits<double>::infinity();
    std::optional<std::size_t> nearest;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const double candidate = distance(start, turned(tiles[i].rect, direction));
        if (i != from && candidate < best - tolerance) {
            best = candidate;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace brimvale
