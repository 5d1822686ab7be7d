#include "Core/Treemap/Squarify.h"
#include "Core/Treemap/Treemap.h"
#include "Support/SampleTree.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

namespace brimvale {

namespace {

using testing::add;

constexpr double tolerance = 1e-6;

bool overlap(const Rect &a, const Rect &b) {
    return a.x + a.width > b.x + tolerance && b.x + b.width > a.x + tolerance &&
           a.y + a.height > b.y + tolerance && b.y + b.height > a.y + tolerance;
}

bool isInside(const Rect &inner, const Rect &outer) {
    return inner.x >= outer.x - tolerance && inner.y >= outer.y - tolerance &&
           inner.x + inner.width <= outer.x + outer.width + tolerance &&
           inner.y + inner.height <= outer.y + outer.height + tolerance;
}

} // namespace

TEST(Squarify, LayoutMatchesWorkedExamples) {
    EXPECT_EQ(Squarify::layout(std::vector<double>{3, 1}, {0, 0, 400, 100}),
              (std::vector<Rect>{{0, 0, 300, 100}, {300, 0, 100, 100}}));
    // The example of the method's paper: 6 6 4 3 2 2 1 in 6 × 4.
    const std::vector<Rect> paper = Squarify::layout(std::vector<double>{6, 6, 4, 3, 2, 2, 1}, {0, 0, 6, 4});
    ASSERT_EQ(paper.size(), 7U);
    EXPECT_EQ(paper[0], (Rect{0, 0, 3, 2}));
    EXPECT_EQ(paper[1], (Rect{0, 2, 3, 2}));
    EXPECT_NEAR(paper[2].width, 12.0 / 7, tolerance);
    EXPECT_NEAR(paper[2].height, 7.0 / 3, tolerance);
    // A tie lets the row grow: four equal values fill a square two by two.
    EXPECT_EQ(Squarify::layout(std::vector<double>{1, 1, 1, 1}, {10, 20, 2, 2})[1], (Rect{10, 21, 1, 1}));
}

TEST(Squarify, NoAreaOrValueGivesNoTiles) {
    EXPECT_TRUE(Squarify::layout(std::vector<double>{}, {0, 0, 10, 10}).empty());
    EXPECT_TRUE(Squarify::layout(std::vector<double>{0, 0}, {0, 0, 10, 10}).empty());
    EXPECT_TRUE(Squarify::layout(std::vector<double>{1}, {0, 0, 0, 10}).empty());
    EXPECT_TRUE(Squarify::layout(std::vector<double>{1}, {0, 0, 10, -1}).empty());
    EXPECT_TRUE(Squarify::layout(std::vector<double>{1}, {0, 0, 10, 0.5}).empty());
}

TEST(Squarify, TilesAreProportionalAndDoNotOverlap) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<double> values(1 + random() % 90);
        // From even to very uneven sizes, as folders are.
        std::lognormal_distribution<double> sizes(10, 0.1 + round * 0.02);
        std::generate(values.begin(), values.end(), [&] { return std::floor(sizes(random)); });
        std::sort(values.rbegin(), values.rend());
        const Rect whole{5, 7, 50.0 + static_cast<double>(random() % 1000),
                         50.0 + static_cast<double>(random() % 700)};
        const double total = std::accumulate(values.begin(), values.end(), 0.0);
        const std::vector<Rect> rects = Squarify::layout(values, whole);
        ASSERT_LE(rects.size(), values.size());
        double covered = 0;
        for (std::size_t i = 0; i < rects.size(); ++i) {
            EXPECT_TRUE(isInside(rects[i], whole));
            const double area = rects[i].width * rects[i].height;
            EXPECT_NEAR(area, values[i] / total * whole.width * whole.height,
                        tolerance * whole.width * whole.height);
            covered += values[i];
            for (std::size_t j = 0; j < i; ++j)
                ASSERT_FALSE(overlap(rects[i], rects[j])) << "round " << round << ": " << j << " and " << i;
        }
        // Only what would lie in a strip thinner than half a point has no rectangle.
        EXPECT_LE((1 - covered / total) * whole.width * whole.height,
                  0.5 * std::max(whole.width, whole.height));
    }
}

TEST(Treemap, GathersSmallerItemsInOneTile) {
    struct Case {
        std::vector<std::int64_t> sizes;
        int maxTiles;
        std::vector<std::string> names;
        std::int64_t restSize;
    };
    for (const Case &one : {Case{{10, 40, 20, 30}, 2, {"40", "30", "2 smaller items"}, 30},
                            Case{{10, 40, 20}, 2, {"40", "20", "1 smaller items"}, 10},
                            Case{{10, 40, 20}, 3, {"40", "20", "10"}, 0},
                            Case{{10, 0, 20}, -1, {"2 smaller items"}, 30}, Case{{0, 0}, 5, {}, 0}}) {
        FSNode folder("f", "/f", true);
        for (const std::int64_t size : one.sizes)
            add(folder, std::to_string(size), size);
        const Treemap treemap(folder, one.maxTiles);
        std::vector<std::string> names;
        double fractions = 0;
        for (const TreemapTile &tile : treemap.layout({0, 0, 300, 200})) {
            names.push_back(tile.node->name);
            fractions += tile.fraction;
            if (tile.node->isAggregate) {
                EXPECT_EQ(tile.node->size, one.restSize);
                EXPECT_EQ(tile.node->path(), "/f");
                EXPECT_FALSE(tile.node->isDirectory);
            }
        }
        EXPECT_EQ(names, one.names);
        EXPECT_NEAR(fractions, one.names.empty() ? 0 : 1, tolerance);
        EXPECT_TRUE(treemap.layout({0, 0, 4, 200}).empty());
        EXPECT_TRUE(treemap.layout({0, 0, 300, 4}).empty());
        EXPECT_EQ(folder.children().size(), one.sizes.size()) << "the tree stays as it is";
    }
}

TEST(Treemap, ShowsTheLargestInStableOrder) {
    std::mt19937 random(11);
    for (int round = 0; round < 50; ++round) {
        FSNode folder("f", "/f", true);
        const std::size_t count = 1 + random() % 300;
        for (std::size_t i = 0; i < count; ++i) {
            // Many of the same size, some without any.
            FSNode &child = add(folder, std::to_string(i), static_cast<std::int64_t>(random() % 20));
            child.logicalSize = child.size * 3;
            child.fileCount = 2;
        }
        std::vector<const FSNode *> expected;
        for (const auto &child : folder.children())
            if (child->size > 0)
                expected.push_back(child.get());
        std::stable_sort(expected.begin(), expected.end(),
                         [](const FSNode *a, const FSNode *b) { return a->size > b->size; });
        const std::size_t own = std::min<std::size_t>(expected.size(), 40);

        const Treemap treemap(folder, 40);
        const std::vector<TreemapTile> tiles = treemap.layout({0, 0, 4000, 3000});
        ASSERT_EQ(tiles.size(), own + (expected.size() > own ? 1 : 0));
        for (std::size_t i = 0; i < own; ++i)
            EXPECT_EQ(tiles[i].node, expected[i]) << "round " << round << ", tile " << i;
        if (tiles.size() == own)
            continue;
        const FSNode &rest = *tiles.back().node;
        EXPECT_TRUE(treemap.owns(&rest));
        EXPECT_EQ(rest.logicalSize, rest.size * 3);
        EXPECT_EQ(rest.fileCount, 2 * static_cast<std::int64_t>(expected.size() - own));
    }
}

} // namespace brimvale
