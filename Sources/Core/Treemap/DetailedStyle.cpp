#include "Core/Treemap/DetailedStyle.h"

#include "Core/Text/Formatting.h"

#include <array>
#include <cstddef>

namespace brimvale {

namespace {

// Of closed tiles. They stand out from the ground of any folder.
constexpr double closedFolderOpacity = 0.85;
constexpr double nestedFileOpacity = 0.7;
constexpr double nestedAggregateOpacity = 0.4;

/// Of the ground of open tiles. Folders are told apart from the ones around them.
constexpr std::array groundOpacity = {0.12, 0.2};

constexpr double dimmedOpacity = 0.25;

constexpr double nameWidth = 48;
constexpr double nameHeight = 17;
constexpr double sizeWidth = 120;

TreemapStyle::Fill ground(const FSNode &folder, int depth) {
    return {Palette::color(folder.name), groundOpacity.at(static_cast<std::size_t>(depth % 2))};
}

TreemapStyle::Fill closed(const FSNode &node, const TreemapStyle::Surface &surface) {
    if (node.isAggregate)
        return {surface.secondaryText, nestedAggregateOpacity};
    if (node.isDirectory)
        return {Palette::color(node.name), closedFolderOpacity};
    return {Palette::color(node.parent() != nullptr ? node.parent()->name : node.name), nestedFileOpacity};
}

} // namespace

std::vector<Color> DetailedStyle::colorsOf(std::span<const TreemapTile> tiles,
                                           const TreemapStyle::Surface &surface) {
    std::vector<Color> colors;
    colors.reserve(tiles.size());
    for (const TreemapTile &tile : tiles) {
        const TreemapStyle::Fill fill =
            tile.isOpen() ? ground(*tile.node, tile.depth) : closed(*tile.node, surface);
        colors.push_back(TreemapStyle::over(surface.background, fill));
    }
    return colors;
}

Color DetailedStyle::dimmed(const Color &color, const Color &around) {
    return TreemapStyle::over(around, {color, dimmedOpacity});
}

bool DetailedStyle::hasName(const Rect &tile) {
    return tile.width > nameWidth && tile.height > nameHeight;
}

bool DetailedStyle::hasSize(const Rect &heading) {
    return heading.width > sizeWidth;
}

} // namespace brimvale
