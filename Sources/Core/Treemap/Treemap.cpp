#include "Core/Treemap/Treemap.h"

#include "Base/Bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace brimvale {

namespace {

constexpr double thinnestDrawing = 4;
constexpr double thinnestTile = 1;

/// The children are scattered in memory, and a loop over very many of them mostly waits for it. So each is
/// prefetched this many steps ahead.
constexpr std::size_t lookAhead = 16;

/// A child and its size. The compared values are copied here, next to each other, because nodes are scattered
/// in memory.
struct Candidate {
    FSNode *node;
    std::int64_t size;
    std::size_t position; ///< among its siblings

    /// Whether it is laid out before `other`: larger first, equal ones in tree order.
    bool operator<(const Candidate &other) const {
        return size != other.size ? size > other.size : position < other.position;
    }
};

} // namespace

Treemap::Treemap(FSNode &folder, int maxTiles) : folder_(folder) {
    const std::span<const std::unique_ptr<FSNode>> children = folder.children();
    std::vector<Candidate> candidates;
    candidates.reserve(children.size());
    std::int64_t logicalSize = 0;
    std::int64_t fileCount = 0;
    for (std::size_t i = 0; i < children.size(); ++i) {
        __builtin_prefetch(&children[std::min(i + lookAhead, children.size() - 1)]->size);
        FSNode &child = *children[i];
        if (child.size <= 0)
            continue;
        candidates.push_back({&child, child.size, i});
        logicalSize = checkedAdd(logicalSize, child.logicalSize);
        fileCount = checkedAdd(fileCount, child.fileCount);
    }

    const std::size_t shown = std::min(candidates.size(), static_cast<std::size_t>(std::max(maxTiles, 0)));
    const auto rest = candidates.begin() + static_cast<std::ptrdiff_t>(shown);
    if (!std::is_sorted(candidates.begin(), candidates.end())) { // a scan leaves them sorted
        std::nth_element(candidates.begin(), rest, candidates.end());
        std::sort(candidates.begin(), rest);
    }
    for (auto candidate = candidates.begin(); candidate != rest; ++candidate) {
        items_.push_back({candidate->node, static_cast<double>(candidate->size)});
        logicalSize -= candidate->node->logicalSize;
        fileCount -= candidate->node->fileCount;
    }
    if (rest == candidates.end())
        return;
    rest_ =
        std::make_unique<FSNode>(std::to_string(candidates.size() - shown) + " smaller items", folder, false);
    rest_->markAggregate();
    for (auto candidate = rest; candidate != candidates.end(); ++candidate)
        rest_->size = checkedAdd(rest_->size, candidate->size);
    rest_->logicalSize = logicalSize;
    rest_->fileCount = fileCount;
    items_.push_back({rest_.get(), static_cast<double>(rest_->size)});
}

std::vector<TreemapTile> Treemap::layout(Rect rect) const {
    std::vector<TreemapTile> tiles;
    if (rect.width <= thinnestDrawing || rect.height <= thinnestDrawing)
        return tiles;
    const std::span<const Squarify::Item<FSNode *>> items = items_;
    for (const Squarify::Tile<FSNode *> &tile : Squarify::layout(items, rect)) {
        if (tile.rect.width < thinnestTile || tile.rect.height < thinnestTile)
            continue;
        const double whole = static_cast<double>(folder_.size);
        const double fraction = folder_.size < 1 ? 0 : static_cast<double>(tile.node->size) / whole;
        tiles.push_back({tile.node, tile.rect, fraction});
    }
    return tiles;
}

} // namespace brimvale
