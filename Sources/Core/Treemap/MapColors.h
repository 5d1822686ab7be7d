#pragma once

#include "Base/Color.h"
#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapStyle.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace brimvale {

/// What the colours of a detailed treemap tell: in which folder a file is, of which type it is, or how long
/// ago it was changed.
struct MapColors {
    enum class By : std::uint8_t { folder, type, age };

    By by = By::folder;
    std::uint32_t moment = 0; ///< from which ages count, in seconds since 1970

    /// The fill of a closed tile. A file has the colour of its folder, type or age. An aggregate has those
    /// of most of its bytes; a folder has the type of the largest thing in it, and the age of its newest
    /// file.
    [[nodiscard]] TreemapStyle::Fill closed(const FSNode &node, const TreemapStyle::Surface &surface) const;

    /// The ground of an open tile at this depth.
    [[nodiscard]] TreemapStyle::Fill ground(const FSNode &folder, int depth,
                                            const TreemapStyle::Surface &surface) const;

    /// One colour of the legend.
    struct Entry {
        std::string title;
        Color color;
        std::int64_t bytes; ///< of the tiles with this colour
    };
    /// The types that there are among the closed tiles, the largest first, or the ages, the youngest first.
    /// None for folders, whose names are on the map.
    [[nodiscard]] std::vector<Entry> legend(std::span<const TreemapTile> tiles,
                                            const TreemapStyle::Surface &surface) const;
};

} // namespace brimvale
