#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Treemap/Squarify.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace brimvale {

/// One tile of a folder's treemap.
struct TreemapTile {
    FSNode *node;
    Rect rect;
    double fraction; ///< the tile's share of the folder's size, 0 to 1; 0 where the folder is smaller than a
                     ///< byte
    int depth = 0;   ///< 0 for a child of the folder; more only in a detailed map
    std::size_t tilesInside = 0; ///< the tiles that follow this one and are drawn inside it

    /// Whether the contents of this folder are drawn, and not only its name.
    [[nodiscard]] bool isOpen() const { return tilesInside > 0; }
};

/// The children of one folder in its treemap: the largest as tiles of their own, all others as one tile. Made
/// once for a folder, and laid out for any rectangle.
class Treemap {
public:
    /// The default number of children with a tile of their own.
    static constexpr int usualMaxTiles = 80;

    /// Selects the tiles of `folder`, which must outlive this object; at most `maxTiles` children get their
    /// own (a negative limit counts as 0).
    Treemap(FSNode &folder, int maxTiles);

    /// The tiles for a rectangle in points, in layout order. None where the rectangle is 4 points thin or
    /// thinner; a tile less than one point wide or high is left out.
    [[nodiscard]] std::vector<TreemapTile> layout(Rect rect) const;

    /// Whether `node` stands for the children without a tile of their own; this object owns it.
    [[nodiscard]] bool owns(const FSNode *node) const { return node != nullptr && node == rest_.get(); }

private:
    FSNode &folder_;
    std::unique_ptr<FSNode> rest_; ///< stands for the children without a tile of their own; not in the tree
    std::vector<Squarify::Item<FSNode *>> items_;
};

} // namespace brimvale
