#include "Core/Treemap/DetailedStyle.h"

namespace brimvale {

namespace {

constexpr double dimmedOpacity = 0.25;

constexpr double nameWidth = 48;
constexpr double nameHeight = 17;
constexpr double sizeWidth = 120;

} // namespace

std::vector<Color> DetailedStyle::colorsOf(std::span<const TreemapTile> tiles,
                                           const TreemapStyle::Surface &surface, const MapColors &by) {
    std::vector<Color> colors;
    colors.reserve(tiles.size());
    for (const TreemapTile &tile : tiles) {
        const TreemapStyle::Fill fill =
            tile.isOpen() ? by.ground(*tile.node, tile.depth, surface) : by.closed(*tile.node, surface);
        colors.push_back(TreemapStyle::over(surface.background, fill));
    }
    return colors;
}

Color DetailedStyle::dimmed(const Color &color, const Color &around) {
    return TreemapStyle::over(around, {color, dimmedOpacity});
}

bool DetailedStyle::hasName(const Rect &tile, double textScale) {
    return tile.width > nameWidth * textScale && tile.height > nameHeight * textScale;
}

bool DetailedStyle::hasSize(const Rect &heading, double textScale) {
    return heading.width > sizeWidth * textScale;
}

} // namespace brimvale
