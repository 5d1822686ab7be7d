#include "Core/Treemap.h"

#include "Base/Bytes.h"

#include <algorithm>
#include <string>

namespace brimvale {

namespace {

constexpr double thinnestDrawing = 4;
constexpr double thinnestTile = 1;

} // namespace

Treemap::Treemap(FSNode &folder, int maxTiles) : folder_(folder) {
    std::vector<FSNode *> candidates;
    candidates.reserve(folder.children().size());
    for (const std::unique_ptr<FSNode> &child : folder.children())
        if (child->size > 0)
            candidates.push_back(child.get());
    const auto isLarger = [](const FSNode *a, const FSNode *b) { return a->size > b->size; };
    if (!std::is_sorted(candidates.begin(), candidates.end(), isLarger))
        std::stable_sort(candidates.begin(), candidates.end(), isLarger);

    const std::size_t shown = std::min(candidates.size(), static_cast<std::size_t>(std::max(maxTiles, 0)));
    for (std::size_t i = 0; i < shown; ++i)
        items_.push_back({candidates[i], static_cast<double>(candidates[i]->size)});
    if (shown == candidates.size())
        return;
    rest_ =
        std::make_unique<FSNode>(std::to_string(candidates.size() - shown) + " smaller items", folder, false);
    rest_->isAggregate = true;
    for (std::size_t i = shown; i < candidates.size(); ++i) {
        rest_->size = checkedAdd(rest_->size, candidates[i]->size);
        rest_->logicalSize = checkedAdd(rest_->logicalSize, candidates[i]->logicalSize);
        rest_->fileCount = checkedAdd(rest_->fileCount, candidates[i]->fileCount);
    }
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
