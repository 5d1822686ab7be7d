#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Treemap/Treemap.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The detailed treemap of a folder: its contents, inside its folders their contents, and so on, down to what
/// is large enough to be seen. Made once for a folder, and laid out for any rectangle.
///
/// The work depends on the rectangle and not on the tree: in each folder that is drawn, only the largest
/// children are looked at, up to the first one that is too small. Nothing recurses.
class DetailedTreemap {
public:
    /// An open folder has its name in a heading above its contents, and a margin on the other sides. This is
    /// the height for texts of the usual size.
    static constexpr double headingHeight = 17;
    static constexpr double margin = 2;

    /// A smaller tile, in square points, is left out. Its folder is seen in its place.
    static constexpr double leastArea = 48;

    /// The place in an open folder, or in the whole map, of everything that is too small for a tile.
    struct SmallerItems {
        Rect rect;
        std::int64_t count;
        std::size_t folder; ///< the index of the folder's tile; `wholeMap` for the map itself
    };
    static constexpr std::size_t wholeMap = static_cast<std::size_t>(-1);

    struct Layout {
        std::vector<TreemapTile> tiles; ///< each folder is followed by its contents, the largest first
        std::vector<SmallerItems> smaller;
        std::size_t visited = 0; ///< how many nodes were looked at
    };

    /// `folder` must outlive this object, and the tree must not change as long as it is used. It must have
    /// been sorted with `sortRecursively`; what removals and other scans have changed since does not matter.
    explicit DetailedTreemap(FSNode &folder) : folder_(folder) {}

    /// The tiles for a rectangle in points, with headings for texts that are `textScale` times as large as
    /// usual. None where the rectangle is 4 points thin or thinner.
    [[nodiscard]] Layout layout(Rect rect, double textScale = 1);

    /// The heading of an open tile.
    [[nodiscard]] static Rect heading(const TreemapTile &tile, double textScale = 1) {
        return {tile.rect.x, tile.rect.y, tile.rect.width, headingHeight * textScale};
    }

private:
    class Pass;

    [[nodiscard]] const std::vector<FSNode *> &inOrder(const FSNode &folder);

    FSNode &folder_;
    /// The children of folders that are no longer in order, largest first, without the empty ones.
    std::unordered_map<const FSNode *, std::vector<FSNode *>> reordered_;
};

} // namespace brimvale
