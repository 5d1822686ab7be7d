#pragma once

#include "Base/Color.h"
#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapStyle.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What became of a node since an earlier scan.
enum class MapGrowth : std::uint8_t { grew, appeared, moved, shrank, unchanged };

/// What the colours of a detailed treemap tell: in which folder a file is, of which type it is, how long ago
/// it was changed, or what became of it since an earlier scan.
struct MapColors {
    enum class By : std::uint8_t { folder, type, age, growth };

    By by = By::folder;
    std::uint32_t moment = 0;                               ///< from which ages count, in seconds since 1970
    std::function<MapGrowth(const FSNode &)> growthOf = {}; ///< needed for `By::growth`

    /// The fill of a closed tile. A file has the colour of its folder, type or age. An aggregate has those
    /// of most of its bytes; a folder has the type of the largest thing in it, and the age of its newest
    /// file.
    [[nodiscard]] TreemapStyle::Fill closed(const FSNode &node, const TreemapStyle::Surface &surface) const;

    /// The ground of an open tile at this depth.
    [[nodiscard]] TreemapStyle::Fill ground(const FSNode &folder, int depth,
                                            const TreemapStyle::Surface &surface) const;

    /// What tells the growth of a tile without its colour, before its name: "▲ ". Empty where nothing became
    /// of it, and where the colours tell something else.
    [[nodiscard]] std::string_view mark(const FSNode &node) const;

    /// One colour of the legend.
    struct Entry {
        std::string title;
        Color color;
        std::int64_t bytes; ///< of the tiles with this colour
    };
    /// The types that there are among the closed tiles, the largest first, or the ages, the youngest first,
    /// or what became of them, with its mark.
    /// None for folders, whose names are on the map.
    [[nodiscard]] std::vector<Entry> legend(std::span<const TreemapTile> tiles,
                                            const TreemapStyle::Surface &surface) const;

private:
    [[nodiscard]] std::size_t placeOf(const FSNode &node) const;
    [[nodiscard]] std::size_t colorCount() const;
    [[nodiscard]] TreemapStyle::Fill fillAt(std::size_t place, const TreemapStyle::Surface &surface) const;
    [[nodiscard]] std::string titleAt(std::size_t place) const;
};

} // namespace brimvale
