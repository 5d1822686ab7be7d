#pragma once

#include "Core/Treemap/MapColors.h"
#include "Core/Treemap/Treemap.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace brimvale {

/// A treemap with its layout.
struct LaidOutTreemap {
    std::string_view title; ///< bytes
    std::int64_t width = 0; ///< of the rectangle with the tiles, in points
    std::int64_t height = 0;
    std::span<const TreemapTile> tiles;
    bool isDetailed = false;
    MapColors colors = {}; ///< of a detailed one
};

/// A self-contained picture of it (SVG 1.1, UTF-8), in the light colours of the window. Characters of a name
/// that are not text, or not allowed in XML, are replaced.
[[nodiscard]] std::string treemapSvg(const LaidOutTreemap &treemap);

} // namespace brimvale
