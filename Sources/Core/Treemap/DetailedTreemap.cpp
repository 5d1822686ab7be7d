#include "Core/Treemap/DetailedTreemap.h"

#include <algorithm>
#include <memory>
#include <span>

namespace brimvale {

namespace {

constexpr double thinnestMap = 4;
constexpr double thinnestVisible = 3;

// A folder is drawn open where its name can be read and its contents have room for more than a line.
constexpr double openWidth = 56;
constexpr double openHeight = DetailedTreemap::headingHeight + DetailedTreemap::margin + 20;

bool canBeOpen(const TreemapTile &tile, double textScale) {
    return tile.rect.width >= openWidth * textScale && tile.rect.height >= openHeight * textScale &&
           !tile.node->outlineChildren().empty();
}

Rect contentsOf(const Rect &tile, double textScale) {
    constexpr double margin = DetailedTreemap::margin;
    const double heading = DetailedTreemap::headingHeight * textScale;
    return {tile.x + margin, tile.y + heading, tile.width - 2 * margin, tile.height - heading - margin};
}

/// Counts for every tile the ones inside it, which follow it and are deeper.
void countTilesInside(std::vector<TreemapTile> &tiles) {
    std::vector<std::size_t> around;
    for (std::size_t i = 0; i <= tiles.size(); ++i) {
        while (!around.empty() && (i == tiles.size() || tiles[around.back()].depth >= tiles[i].depth)) {
            tiles[around.back()].tilesInside = i - around.back() - 1;
            around.pop_back();
        }
        around.push_back(i);
    }
}

} // namespace

/// One layout. The tiles that are still to be placed wait on a stack, so that each folder's contents follow
/// it.
class DetailedTreemap::Pass {
public:
    Pass(DetailedTreemap &treemap, double textScale) : treemap_(treemap), textScale_(textScale) {}

    Layout run(Rect rect) {
        open(treemap_.folder_, rect, 0, wholeMap);
        while (!waiting_.empty()) {
            const TreemapTile tile = waiting_.back();
            waiting_.pop_back();
            layout_.tiles.push_back(tile);
            if (canBeOpen(tile, textScale_))
                open(*tile.node, contentsOf(tile.rect, textScale_), tile.depth + 1, layout_.tiles.size() - 1);
        }
        countTilesInside(layout_.tiles);
        return std::move(layout_);
    }

private:
    void open(const FSNode &folder, const Rect &area, int depth, std::size_t tile);
    [[nodiscard]] std::int64_t choose(const FSNode &folder, double leastSize);
    void addSmaller(const Rect &rect, std::int64_t count, std::size_t tile);

    DetailedTreemap &treemap_;
    double textScale_;
    Layout layout_;
    std::vector<TreemapTile> waiting_; ///< the next one is the last
    std::vector<FSNode *> chosen_;
};

/// Places the contents of a folder in `area`.
void DetailedTreemap::Pass::open(const FSNode &folder, const Rect &area, int depth, std::size_t tile) {
    const auto whole = static_cast<double>(folder.size);
    const std::int64_t others = choose(folder, std::max(1.0, whole * leastArea / (area.width * area.height)));
    if (chosen_.empty() && tile != wholeMap)
        return; // it stays closed
    std::vector<double> values;
    double rest = whole;
    for (const FSNode *child : chosen_) {
        values.push_back(static_cast<double>(child->size));
        rest -= values.back();
    }
    if (rest > 0)
        values.push_back(rest); // takes the place that is left
    const std::vector<Rect> rects = Squarify::layout(values, area);
    const std::size_t placed = std::min(rects.size(), chosen_.size());
    const auto total = static_cast<double>(treemap_.folder_.size);
    for (std::size_t i = placed; i-- > 0;)
        if (std::min(rects[i].width, rects[i].height) >= thinnestVisible)
            waiting_.push_back({chosen_[i], rects[i], values[i] / total, depth});
    if (others > 0 && rects.size() > chosen_.size())
        layout_.smaller.push_back({rects.back(), others, tile});
}

/// Chooses the children of at least that size, the largest first, and returns the number of the others that
/// are not empty.
std::int64_t DetailedTreemap::Pass::choose(const FSNode &folder, double leastSize) {
    const auto isLarge = [&](const FSNode &child) {
        ++layout_.visited;
        return static_cast<double>(child.size) >= leastSize;
    };
    const auto take = [&](const auto &children) {
        chosen_.clear();
        for (const auto &child : children) {
            if (!isLarge(*child))
                break;
            chosen_.push_back(&*child);
        }
        const auto empty = std::partition_point(children.begin(), children.end(),
                                                [](const auto &child) { return child->size > 0; });
        return static_cast<std::int64_t>(empty - children.begin()) -
               static_cast<std::int64_t>(chosen_.size());
    };
    if (!folder.mayBeOutOfOrder()) {
        const std::int64_t others = take(folder.children());
        if (std::is_sorted(chosen_.begin(), chosen_.end(),
                           [](const FSNode *one, const FSNode *other) { return one->size > other->size; }))
            return others;
    }
    return take(treemap_.inOrder(folder));
}

const std::vector<FSNode *> &DetailedTreemap::inOrder(const FSNode &folder) {
    const auto [place, isNew] = reordered_.try_emplace(&folder);
    std::vector<FSNode *> &children = place->second;
    if (!isNew)
        return children;
    for (const std::unique_ptr<FSNode> &child : folder.children())
        if (child->size > 0)
            children.push_back(child.get());
    std::stable_sort(children.begin(), children.end(),
                     [](const FSNode *one, const FSNode *other) { return one->size > other->size; });
    return children;
}

DetailedTreemap::Layout DetailedTreemap::layout(Rect rect, double textScale) {
    if (rect.width <= thinnestMap || rect.height <= thinnestMap || folder_.size < 1)
        return {};
    return Pass(*this, textScale).run(rect);
}

} // namespace brimvale
