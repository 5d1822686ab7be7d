#include "Base/Contrast.h"
#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/DetailedTreemap.h"
#include "Core/Treemap/TreemapNavigation.h"
#include "Support/SampleTree.h"

#include <gmock/gmock.h>
#include <random>

namespace brimvale {

namespace {

using testing::add;
using testing::addFolder;
using testing::makeRoot;
using TreemapNavigation::Direction;

constexpr Rect window = {0, 0, 900, 700};

/// A sorted tree of about this many nodes, with folders at any depth and sizes of every magnitude.
std::shared_ptr<FSNode> randomTree(unsigned seed, int nodes) {
    std::mt19937 random(seed);
    std::lognormal_distribution<double> sizes(12, 3);
    std::shared_ptr<FSNode> root = makeRoot();
    std::vector<FSNode *> folders{root.get()};
    for (int i = 0; i < nodes; ++i) {
        FSNode &parent = *folders[random() % folders.size()];
        if (random() % 5 == 0)
            folders.push_back(&addFolder(parent, "folder " + std::to_string(i)));
        else
            add(parent, "file " + std::to_string(i), static_cast<std::int64_t>(sizes(random)));
    }
    root->sortRecursively();
    return root;
}

bool isInside(const Rect &inner, const Rect &outer) {
    constexpr double rounding = 1e-6;
    return inner.x >= outer.x - rounding && inner.y >= outer.y - rounding &&
           inner.x + inner.width <= outer.x + outer.width + rounding &&
           inner.y + inner.height <= outer.y + outer.height + rounding;
}

bool overlap(const Rect &one, const Rect &other) {
    constexpr double rounding = 1e-6;
    return one.x + one.width > other.x + rounding && other.x + other.width > one.x + rounding &&
           one.y + one.height > other.y + rounding && other.y + other.height > one.y + rounding;
}

double areaOf(const Rect &rect) {
    return rect.width * rect.height;
}

/// The indices of the tiles directly inside a tile.
std::vector<std::size_t> insideOf(const std::vector<TreemapTile> &tiles, std::size_t folder) {
    std::vector<std::size_t> found;
    for (std::size_t i = folder + 1; i <= folder + tiles[folder].tilesInside; i += 1 + tiles[i].tilesInside)
        found.push_back(i);
    return found;
}

std::vector<std::string> namesOf(const std::vector<TreemapTile> &tiles) {
    std::vector<std::string> names;
    for (const TreemapTile &tile : tiles)
        names.push_back(tile.node->name);
    return names;
}

} // namespace

TEST(DetailedTreemap, PlacesContentsInTheirFolderInProportion) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const std::shared_ptr<FSNode> root = randomTree(seed, 3000);
        const double textScale = seed % 2 == 0 ? 1 : 1.6;
        const std::vector<TreemapTile> tiles = DetailedTreemap(*root).layout(window, textScale).tiles;
        ASSERT_GT(tiles.size(), 50U);
        bool isNested = false;
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            const TreemapTile &tile = tiles[i];
            EXPECT_TRUE(isInside(tile.rect, window));
            EXPECT_GE(areaOf(tile.rect), DetailedTreemap::leastArea * 0.999);
            const std::vector<std::size_t> inside = insideOf(tiles, i);
            isNested = isNested || (tile.depth > 0 && !inside.empty());
            for (const std::size_t j : inside) {
                const TreemapTile &inner = tiles[j];
                EXPECT_EQ(inner.node->parent(), tile.node);
                EXPECT_EQ(inner.depth, tile.depth + 1);
                EXPECT_TRUE(isInside(inner.rect, tile.rect));
                EXPECT_FALSE(overlap(inner.rect, DetailedTreemap::heading(tile, textScale)));
                // As large to the first of its siblings as its size.
                const TreemapTile &first = tiles[inside.front()];
                EXPECT_NEAR(areaOf(inner.rect) / areaOf(first.rect),
                            static_cast<double>(inner.node->size) / static_cast<double>(first.node->size),
                            1e-6);
                for (const std::size_t other : inside)
                    EXPECT_TRUE(j == other || !overlap(inner.rect, tiles[other].rect));
            }
        }
        EXPECT_TRUE(isNested);
    }
}

TEST(DetailedTreemap, LooksOnlyAtWhatIsLargeEnough) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &crowd = addFolder(*root, "crowd");
    std::vector<std::unique_ptr<FSNode>> children;
    for (int i = 0; i < 100'000; ++i) {
        children.push_back(std::make_unique<FSNode>(std::to_string(i), crowd, false));
        children.back()->size = 1000;
    }
    crowd.adopt(children);
    crowd.size = root->size = 100'000'000;
    const DetailedTreemap::Layout layout = DetailedTreemap(*root).layout(window);
    EXPECT_EQ(namesOf(layout.tiles), std::vector<std::string>{"crowd"}) << "nothing inside can be seen";
    EXPECT_LE(layout.visited, 3U);

    // The map of the folder itself tells about them.
    const DetailedTreemap::Layout inside = DetailedTreemap(crowd).layout(window);
    EXPECT_TRUE(inside.tiles.empty());
    ASSERT_EQ(inside.smaller.size(), 1U);
    EXPECT_EQ(inside.smaller[0].count, 100'000);
    EXPECT_EQ(inside.smaller[0].folder, DetailedTreemap::wholeMap);
    EXPECT_EQ(inside.smaller[0].rect, window);
    EXPECT_LE(inside.visited, 2U);

    // In a large tree, about as much as there are tiles.
    const std::shared_ptr<FSNode> large = randomTree(7, 100'000);
    const DetailedTreemap::Layout some = DetailedTreemap(*large).layout(window);
    EXPECT_LT(some.visited, 3 * some.tiles.size());
    std::size_t told = 0;
    for (const DetailedTreemap::SmallerItems &one : some.smaller)
        if (one.folder != DetailedTreemap::wholeMap) {
            EXPECT_TRUE(isInside(one.rect, some.tiles[one.folder].rect));
            const auto &siblings = some.tiles[one.folder].node->children();
            const auto empty = std::count_if(siblings.begin(), siblings.end(),
                                             [](const auto &child) { return child->size == 0; });
            EXPECT_GE(insideOf(some.tiles, one.folder).size() + static_cast<std::size_t>(one.count + empty),
                      siblings.size() / 2);
            ++told;
        }
    EXPECT_GT(told, 0U);
}

TEST(DetailedTreemap, ShowsNothingWithoutSizeOrRoom) {
    const std::shared_ptr<FSNode> root = makeRoot();
    EXPECT_TRUE(DetailedTreemap(*root).layout(window).tiles.empty());
    add(*root, "empty", 0);
    EXPECT_TRUE(DetailedTreemap(*root).layout(window).tiles.empty());
    addFolder(*root, "folder", 10'000);
    add(*root, "also empty", 0);
    root->sortRecursively();
    DetailedTreemap treemap(*root);
    EXPECT_EQ(namesOf(treemap.layout(window).tiles), std::vector<std::string>{"folder"});
    EXPECT_TRUE(treemap.layout(window).smaller.empty()) << "what is empty is not counted";
    EXPECT_TRUE(treemap.layout({0, 0, 4, 300}).tiles.empty());
    EXPECT_TRUE(treemap.layout({0, 0, 300, 4}).tiles.empty());
}

TEST(DetailedTreemap, EndsInAFolderOfAnyDepth) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode *deepest = root.get();
    for (int i = 0; i < 100'000; ++i) {
        auto folder = std::make_unique<FSNode>("f", *deepest, true);
        folder->size = 1'000'000;
        FSNode *next = folder.get();
        deepest->adopt(std::move(folder));
        deepest = next;
    }
    root->size = 1'000'000;
    const DetailedTreemap::Layout layout = DetailedTreemap(*root).layout(window);
    EXPECT_GT(layout.tiles.size(), 10U);
    EXPECT_LT(layout.tiles.size(), 60U);
    EXPECT_EQ(layout.tiles.back().depth, static_cast<int>(layout.tiles.size()) - 1);
    EXPECT_EQ(layout.tiles.front().tilesInside, layout.tiles.size() - 1);
}

TEST(DetailedTreemap, OrdersWhatARemovalHasLeft) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &large = addFolder(*root, "large");
    add(large, "goes", 600'000'000);
    add(large, "stays", 1'000);
    FSNode &medium = addFolder(*root, "medium");
    add(medium, "file", 300'000'000);
    add(*root, "small", 100'000'000);
    root->sortRecursively();
    EXPECT_FALSE(root->mayBeOutOfOrder());

    const FSNode &goes = *large.children()[0];
    goes.subtractFromAncestors();
    const std::unique_ptr<FSNode> gone = large.release(goes);
    EXPECT_TRUE(root->mayBeOutOfOrder());
    EXPECT_FALSE(large.mayBeOutOfOrder());
    EXPECT_EQ(namesOf(DetailedTreemap(*root).layout(window).tiles),
              (std::vector<std::string>{"medium", "file", "small"}));

    // A folder that has grown since.
    FSNode again("large", "/large", true);
    add(again, "came", 900'000'000);
    large.swapContents(again);
    EXPECT_TRUE(root->mayBeOutOfOrder());
    EXPECT_EQ(namesOf(DetailedTreemap(*root).layout(window).tiles),
              (std::vector<std::string>{"large", "came", "medium", "file", "small"}));
    root->sortRecursively();
    EXPECT_FALSE(root->mayBeOutOfOrder());
}

TEST(DetailedTreemap, IsWalkedWithTheArrows) {
    // One folder left of another; in each two files, one above the other.
    const std::shared_ptr<FSNode> root = makeRoot();
    for (const std::string name : {"left", "right"}) {
        FSNode &folder = addFolder(*root, name);
        add(folder, name + " upper", 250'000'000);
        add(folder, name + " lower", 250'000'000);
    }
    const std::vector<TreemapTile> tiles = DetailedTreemap(*root).layout({0, 0, 400, 380}).tiles;
    ASSERT_EQ(namesOf(tiles), (std::vector<std::string>{"left", "left upper", "left lower", "right",
                                                        "right upper", "right lower"}));
    struct Case {
        std::size_t from;
        Direction direction;
        std::optional<std::size_t> to;
    };
    for (const Case &one : {
             Case{1, Direction::down, 2},
             Case{1, Direction::right, 4},
             Case{5, Direction::left, 2},
             Case{1, Direction::up, std::nullopt},
             Case{0, Direction::down, 1}, // into the folder
             Case{0, Direction::right, 4},
             Case{3, Direction::left, 1},
         })
        EXPECT_EQ(TreemapNavigation::next(tiles, one.from, one.direction), one.to)
            << one.from << " in direction " << static_cast<int>(one.direction);
    EXPECT_EQ(TreemapNavigation::around(tiles, 5), 3U);
    EXPECT_EQ(TreemapNavigation::around(tiles, 3), std::nullopt);

    EXPECT_EQ(TreemapNavigation::tileAt(tiles, 5, 5), 0U) << "the heading is the folder's";
    EXPECT_EQ(TreemapNavigation::tileAt(tiles, 10, 40), 1U);
    EXPECT_EQ(TreemapNavigation::tileAt(tiles, 401, 40), std::nullopt);

    const FSNode *left = tiles[0].node;
    const FSNode *upper = tiles[1].node;
    const FSNode *elsewhere = tiles[5].node;
    const auto tileOn = [&](std::vector<const FSNode *> way) {
        return TreemapNavigation::tileOn(tiles, way);
    };
    EXPECT_EQ(tileOn({left, upper}), 1U);
    EXPECT_EQ(tileOn({left, elsewhere}), 0U) << "it has no tile there";
    EXPECT_EQ(tileOn({elsewhere}), std::nullopt);
    EXPECT_EQ(tileOn({}), std::nullopt);
}

TEST(DetailedTreemap, ReachesEveryClosedTileWithTheArrows) {
    const std::shared_ptr<FSNode> root = randomTree(11, 400);
    const std::vector<TreemapTile> tiles = DetailedTreemap(*root).layout(window).tiles;
    std::vector<bool> isReached(tiles.size());
    std::vector<std::size_t> waiting{0};
    while (!waiting.empty()) {
        const std::size_t tile = waiting.back();
        waiting.pop_back();
        for (const Direction direction : {Direction::left, Direction::right, Direction::up, Direction::down})
            if (const auto next = TreemapNavigation::next(tiles, tile, direction);
                next && !isReached[*next]) {
                isReached[*next] = true;
                waiting.push_back(*next);
            }
    }
    std::size_t missed = 0;
    for (std::size_t i = 0; i < tiles.size(); ++i)
        missed += !tiles[i].isOpen() && !isReached[i] ? 1U : 0U;
    EXPECT_EQ(missed, 0U);
}

TEST(DetailedStyle, SetsNeighboursApart) {
    constexpr TreemapStyle::Surface dark = {{0.13, 0.13, 0.14}, {0.65, 0.65, 0.68}};
    const std::shared_ptr<FSNode> root = randomTree(5, 2000);
    const std::vector<TreemapTile> tiles = DetailedTreemap(*root).layout(window).tiles;
    for (const TreemapStyle::Surface &surface : {TreemapStyle::paper, dark}) {
        const std::vector<Color> colors = DetailedStyle::colorsOf(tiles, surface);
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            EXPECT_GE(Contrast::between(Contrast::readableOn(colors[i]), colors[i]), Contrast::leastForText);
            const auto folder = TreemapNavigation::around(tiles, i);
            if (tiles[i].isOpen())
                continue;
            const Color &around = folder ? colors[*folder] : surface.background;
            EXPECT_GT(Contrast::between(colors[i], around), 1.3) << "the folder is seen between its files";
        }
    }
}

TEST(TreemapStyle, DrawsLinesBetweenNeighboursOfOneColour) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &one = add(*root, "same.bin", 300'000'000);
    FSNode &other = add(*root, "same.bin", 300'000'000);
    FSNode &file = add(*root, "film.mov", 300'000'000);
    const std::vector<TreemapTile> tiles = {{&one, {0, 0, 100, 50}, 0.3},
                                            {&other, {0, 50, 100, 50}, 0.3},
                                            {&file, {100, 0, 100, 100}, 0.3},
                                            {&one, {200, 20, 50, 80}, 0.3}};
    const auto lines = TreemapStyle::separators(tiles, TreemapStyle::paper);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].line, (Rect{0, 50, 100, 0}));
    const Color fill =
        TreemapStyle::over(TreemapStyle::paper.background, TreemapStyle::fill(one, TreemapStyle::paper));
    EXPECT_GE(Contrast::between(lines[0].color, fill), Contrast::leastForMarks);
}

} // namespace brimvale
