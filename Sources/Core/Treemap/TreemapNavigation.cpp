#include "Core/Treemap/TreemapNavigation.h"

#include "Core/Treemap/DetailedTreemap.h"

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

bool contains(const Rect &rect, double x, double y) {
    return x >= rect.x && x < rect.x + rect.width && y >= rect.y && y < rect.y + rect.height;
}

} // namespace

std::optional<std::size_t> TreemapNavigation::next(std::span<const TreemapTile> tiles, std::size_t from,
                                                   Direction direction) {
    const TreemapTile &first = tiles[from];
    const Rect start = turned(first.isOpen() ? DetailedTreemap::heading(first) : first.rect, direction);
    double best = std::numeric_limits<double>::infinity();
    std::optional<std::size_t> nearest;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const double candidate = distance(start, turned(tiles[i].rect, direction));
        if (i != from && !tiles[i].isOpen() && candidate < best - tolerance) {
            best = candidate;
            nearest = i;
        }
    }
    return nearest;
}

std::optional<std::size_t> TreemapNavigation::tileAt(std::span<const TreemapTile> tiles, double x, double y) {
    std::optional<std::size_t> innermost;
    for (std::size_t i = 0; i < tiles.size();) {
        if (contains(tiles[i].rect, x, y)) {
            innermost = i;
            tiles = tiles.first(i + 1 + tiles[i].tilesInside);
            ++i;
        } else {
            i += 1 + tiles[i].tilesInside;
        }
    }
    return innermost;
}

std::optional<std::size_t> TreemapNavigation::tileOn(std::span<const TreemapTile> tiles,
                                                     std::span<const FSNode *const> way) {
    std::optional<std::size_t> innermost;
    std::size_t i = 0;
    std::size_t end = tiles.size();
    for (const FSNode *node : way) {
        while (i < end && tiles[i].node != node)
            i += 1 + tiles[i].tilesInside;
        if (i >= end)
            break;
        innermost = i;
        end = i + 1 + tiles[i].tilesInside;
        ++i;
    }
    return innermost;
}

std::optional<std::size_t> TreemapNavigation::around(std::span<const TreemapTile> tiles, std::size_t inside) {
    for (std::size_t i = inside; i-- > 0;)
        if (tiles[i].depth < tiles[inside].depth)
            return i;
    return std::nullopt;
}

} // namespace brimvale
