#pragma once

#include "Core/Treemap/Treemap.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// A treemap that has been laid out.
struct LaidOutTreemap {
    std::string_view title; ///< bytes
    std::int64_t width = 0; ///< of the rectangle in which the tiles lie, in points
    std::int64_t height = 0;
    std::span<const TreemapTile> tiles;
};

/// A picture of it that stands alone (SVG 1.1, UTF-8), in the light colours of the window. What is not
/// text in a name, or is none in XML, is shown by a replacement.
[[nodiscard]] std::string treemapSvg(const LaidOutTreemap &treemap);

} // namespace brimvale::commandLine
