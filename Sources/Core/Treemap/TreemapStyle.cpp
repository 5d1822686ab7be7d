#include "Core/Treemap/TreemapStyle.h"

#include "Base/Contrast.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace brimvale {

namespace {

constexpr double directoryOpacity = 0.85;
constexpr double fileOpacity = 0.55;
constexpr double aggregateOpacity = 0.35; // multiplied with that of a file

// A tile larger than this gets a label.
constexpr double labelWidth = 64;
constexpr double labelHeight = 30;

/// Neighbours share an edge, apart from rounding of their coordinates.
bool meet(double one, double other) {
    constexpr double nearby = 1e-3;
    return std::abs(one - other) < nearby;
}

/// The edge that two tiles share; nothing where they are no neighbours.
std::optional<Rect> sharedEdge(const Rect &one, const Rect &other) {
    const double left = std::max(one.x, other.x);
    const double top = std::max(one.y, other.y);
    const double width = std::min(one.x + one.width, other.x + other.width) - left;
    const double height = std::min(one.y + one.height, other.y + other.height) - top;
    if (height >= 1 && (meet(one.x + one.width, other.x) || meet(other.x + other.width, one.x)))
        return Rect{left, top, 0, height};
    if (width >= 1 && (meet(one.y + one.height, other.y) || meet(other.y + other.height, one.y)))
        return Rect{left, top, width, 0};
    return std::nullopt;
}

} // namespace

TreemapStyle::Fill TreemapStyle::fill(const FSNode &node, const Surface &surface) {
    const double opacity = node.isDirectory ? directoryOpacity : fileOpacity;
    if (node.isAggregate)
        return {surface.secondaryText, opacity * aggregateOpacity};
    return {Palette::color(node.name), opacity};
}

Color TreemapStyle::over(const Color &background, const Fill &fill) {
    const auto mix = [&](double below, double above) { return below + (above - below) * fill.opacity; };
    return {mix(background.red, fill.color.red), mix(background.green, fill.color.green),
            mix(background.blue, fill.color.blue)};
}

std::vector<TreemapStyle::Separator> TreemapStyle::separators(std::span<const TreemapTile> tiles,
                                                              const Surface &surface) {
    std::vector<Fill> fills;
    fills.reserve(tiles.size());
    for (const TreemapTile &tile : tiles)
        fills.push_back(fill(*tile.node, surface));
    std::vector<Separator> separators;
    for (std::size_t i = 0; i < tiles.size(); ++i)
        for (std::size_t j = i + 1; j < tiles.size(); ++j)
            if (const auto edge =
                    fills[i] == fills[j] ? sharedEdge(tiles[i].rect, tiles[j].rect) : std::nullopt)
                separators.push_back({*edge, Contrast::outlineOf(over(surface.background, fills[i]))});
    return separators;
}

bool TreemapStyle::hasLabel(const Rect &tile, double textScale) {
    return tile.width > labelWidth * textScale && tile.height > labelHeight * textScale;
}

Rect TreemapStyle::labelArea(const Rect &tile, double height) {
    const double above = std::clamp((tile.height - height) / 2, 0.0, labelPadding);
    return {tile.x + labelPadding, tile.y + above, tile.width - 2 * labelPadding, height};
}

std::string TreemapStyle::sizeText(const FSNode &node) {
    return Fmt::byteFormatter(std::max<std::int64_t>(node.size, 0));
}

} // namespace brimvale
