#include "Core/Treemap/TreemapStyle.h"

#include <algorithm>
#include <cstdint>

namespace brimvale {

namespace {

constexpr double directoryOpacity = 0.85;
constexpr double fileOpacity = 0.55;
constexpr double aggregateOpacity = 0.35; // multiplied with that of a file

// A tile larger than this gets a label.
constexpr double labelWidth = 64;
constexpr double labelHeight = 30;

} // namespace

TreemapStyle::Fill TreemapStyle::fill(const FSNode &node, const Surface &surface) {
    const double opacity = node.isDirectory ? directoryOpacity : fileOpacity;
    if (node.isAggregate)
        return {surface.secondaryText, opacity * aggregateOpacity};
    return {Palette::color(node.name), opacity};
}

bool TreemapStyle::hasLabel(const Rect &tile) {
    return tile.width > labelWidth && tile.height > labelHeight;
}

Rect TreemapStyle::labelArea(const Rect &tile, double height) {
    const double above = std::clamp((tile.height - height) / 2, 0.0, labelPadding);
    return {tile.x + labelPadding, tile.y + above, tile.width - 2 * labelPadding, height};
}

std::string TreemapStyle::sizeText(const FSNode &node) {
    return Fmt::byteFormatter(std::max<std::int64_t>(node.size, 0));
}

} // namespace brimvale
