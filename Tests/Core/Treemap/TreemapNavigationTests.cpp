#include "Core/Treemap/TreemapNavigation.h"
#include "Support/SampleTree.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace brimvale {

namespace {

using TreemapNavigation::Direction;

std::vector<TreemapTile> tilesAt(const std::vector<Rect> &rects) {
    std::vector<TreemapTile> tiles;
    for (const Rect &rect : rects)
        tiles.push_back({nullptr, rect, 0});
    return tiles;
}

} // namespace

TEST(TreemapNavigation, ArrowGoesToNearestTile) {
    // 0 0 1 1
    // 0 0 2 3
    // 4 4 4 4
    const std::vector<TreemapTile> tiles =
        tilesAt({{0, 0, 20, 20}, {20, 0, 20, 10}, {20, 10, 10, 10}, {30, 10, 10, 10}, {0, 20, 40, 10}});
    struct Case {
        std::size_t from;
        Direction direction;
        std::optional<std::size_t> to;
    };
    for (const Case &one : {
             Case{0, Direction::left, std::nullopt},
             Case{0, Direction::up, std::nullopt},
             Case{0, Direction::right, 1}, // its middle is as near to 2
             Case{0, Direction::down, 4},
             Case{1, Direction::left, 0},
             Case{1, Direction::down, 2},
             Case{2, Direction::left, 0},
             Case{2, Direction::right, 3},
             Case{3, Direction::left, 2},
             Case{3, Direction::up, 1},
             Case{3, Direction::right, std::nullopt},
             Case{4, Direction::up, 0},
             Case{4, Direction::down, std::nullopt},
         })
        EXPECT_EQ(TreemapNavigation::next(tiles, one.from, one.direction), one.to)
            << one.from << " in direction " << static_cast<int>(one.direction);
    EXPECT_EQ(TreemapNavigation::next(tilesAt({{0, 0, 10, 10}}), 0, Direction::right), std::nullopt);
}

TEST(TreemapNavigation, ArrowsReachEveryTile) {
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        FSNode folder("f", "/f", true);
        std::lognormal_distribution<double> sizes(12, 0.1 + round * 0.02);
        for (unsigned i = 0; i < 2 + random() % 90; ++i)
            testing::add(folder, std::to_string(i), std::lround(sizes(random)) + 1);
        const Treemap treemap(folder, 80);
        const std::vector<TreemapTile> tiles =
            treemap.layout({0, 0, 100.0 + static_cast<double>(random() % 900), 400});
        std::set<std::size_t> reached{0};
        std::vector<std::size_t> waiting{0};
        while (!waiting.empty()) {
            const std::size_t from = waiting.back();
            waiting.pop_back();
            for (const Direction direction :
                 {Direction::left, Direction::right, Direction::up, Direction::down})
                if (const auto to = TreemapNavigation::next(tiles, from, direction))
                    if (reached.insert(*to).second)
                        waiting.push_back(*to);
        }
        EXPECT_EQ(reached.size(), tiles.size()) << "round " << round;
    }
}

} // namespace brimvale
