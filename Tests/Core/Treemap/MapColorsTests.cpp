#include "Base/Contrast.h"
#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/MapColors.h"
#include "Support/SampleTree.h"

#include <gmock/gmock.h>
#include <map>
#include <string>

namespace brimvale {

namespace {

using testing::add;
using testing::addFolder;
using ::testing::ElementsAre;
using By = MapColors::By;

constexpr std::uint32_t day = 24 * 60 * 60;
constexpr std::uint32_t moment = 1'700'000'000;
constexpr TreemapStyle::Surface dark = {{0.13, 0.13, 0.14}, {0.65, 0.65, 0.68}};

/// Files of some types and ages, at the top and in a folder.
std::shared_ptr<FSNode> sampleTree() {
    std::shared_ptr<FSNode> root = testing::makeRoot();
    FSNode &folder = addFolder(*root, "folder");
    add(folder, "film.mov", 500'000'000).modified = moment - 400 * day;
    add(folder, "notes.txt", 100'000'000).modified = moment - day;
    add(*root, "picture.jpg", 200'000'000).modified = moment - 100 * day;
    add(*root, "clip.MP4", 150'000'000).modified = moment - 5 * day;
    add(*root, "unknown", 50'000'000);
    root->sortRecursively();
    return root;
}

std::vector<TreemapTile> tilesOf(FSNode &root) {
    return DetailedTreemap(root).layout({0, 0, 800, 600}).tiles;
}

std::vector<std::string> titlesOf(const std::vector<MapColors::Entry> &legend) {
    std::vector<std::string> titles;
    for (const MapColors::Entry &entry : legend)
        titles.push_back(entry.title);
    return titles;
}

} // namespace

TEST(MapColors, TellWhatTheLegendSays) {
    const std::shared_ptr<FSNode> root = sampleTree();
    const std::vector<TreemapTile> tiles = tilesOf(*root);
    const auto legend = [&](By by) { return MapColors{by, moment}.legend(tiles, TreemapStyle::paper); };
    EXPECT_TRUE(legend(By::folder).empty()) << "the names of folders are on the map";
    EXPECT_THAT(titlesOf(legend(By::type)), ElementsAre("Video", "Pictures", "Documents", "Other"))
        << "the largest first";
    EXPECT_EQ(legend(By::type)[0].bytes, 650'000'000);
    EXPECT_THAT(titlesOf(legend(By::age)),
                ElementsAre("Up to a month", "Up to half a year", "More than a year", "Date unknown"));

    // Each closed tile has a colour of the legend.
    for (const TreemapStyle::Surface &surface : {TreemapStyle::paper, dark})
        for (const By by : {By::type, By::age}) {
            const MapColors mapColors{by, moment};
            const std::vector<Color> colors = DetailedStyle::colorsOf(tiles, surface, mapColors);
            const std::vector<MapColors::Entry> entries = mapColors.legend(tiles, surface);
            for (std::size_t i = 0; i < tiles.size(); ++i) {
                const bool isInLegend =
                    std::any_of(entries.begin(), entries.end(),
                                [&](const MapColors::Entry &entry) { return entry.color == colors[i]; });
                EXPECT_NE(isInLegend, tiles[i].isOpen()) << tiles[i].node->name.view();
            }
        }
}

TEST(MapColors, StandForTheLargestInASmallFolder) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    FSNode &folder = addFolder(addFolder(*root, "folder"), "inner");
    add(folder, "large.mp3", 2'000'000).modified = moment - 400 * day;
    add(folder, "small.txt", 1'000'000).modified = moment;
    folder.modified = folder.parent()->modified = moment;
    const std::vector<TreemapTile> tiles = DetailedTreemap(*root).layout({0, 0, 50, 30}).tiles;
    ASSERT_EQ(tiles.size(), 1U);
    EXPECT_THAT(titlesOf(MapColors{By::type, moment}.legend(tiles, dark)), ElementsAre("Audio"));
    EXPECT_THAT(titlesOf(MapColors{By::age, moment}.legend(tiles, dark)), ElementsAre("Up to a month"));
}

TEST(MapColors, StandForMostOfAnAggregate) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    FSNode &aggregate = testing::addAggregate(*root, 30, 300'000'000);
    root->size = aggregate.size;
    aggregate.modified = moment;
    const std::vector<FileTallyEntry> entries = {{FileType::log, FileAge::month, 20, 80'000'000},
                                                 {FileType::mail, FileAge::older, 5, 120'000'000},
                                                 {FileType::log, FileAge::year, 5, 100'000'000}};
    aggregate.setSmallFiles(FileTally(entries));
    const std::vector<TreemapTile> tiles = tilesOf(*root);
    EXPECT_THAT(titlesOf(MapColors{By::type, moment}.legend(tiles, dark)), ElementsAre("Logs"));
    EXPECT_THAT(titlesOf(MapColors{By::age, moment}.legend(tiles, dark)), ElementsAre("More than a year"));
}

TEST(MapColors, DifferFromEachOtherAndFromTheFolder) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    for (const char *name : {"a.mov", "a.jpg", "a.mp3", "a.pdf", "a.zip", "a.iso", "a.exe", "a.cpp", "a.db",
                             "a.eml", "a.log", "a.ttf", "a.stl", "a"})
        add(*root, name, 10'000'000);
    std::uint32_t age = 1;
    for (const auto &child : root->children())
        child->modified = moment - 40 * day * age++;
    const std::vector<TreemapTile> tiles = tilesOf(*root);
    for (const TreemapStyle::Surface &surface : {TreemapStyle::paper, dark})
        for (const By by : {By::type, By::age}) {
            const std::vector<MapColors::Entry> legend = MapColors{by, moment}.legend(tiles, surface);
            EXPECT_GE(legend.size(), by == By::type ? fileTypeCount : 3U);
            for (const MapColors::Entry &one : legend) {
                for (const MapColors::Entry &other : legend)
                    EXPECT_TRUE(&one == &other || one.color != other.color) << one.title << other.title;
                for (const int depth : {0, 1}) {
                    const Color ground = TreemapStyle::over(
                        surface.background, MapColors{by, moment}.ground(*root, depth, surface));
                    EXPECT_GE(Contrast::between(one.color, ground), 1.3) << one.title;
                }
            }
        }
}

TEST(MapColors, WhatHasChangedStandsOut) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    for (const char *growth : {"0", "1", "2", "3", "4"})
        add(*root, growth, 10'000'000);
    const MapColors colors{By::growth, 0, [](const FSNode &node) {
                               return static_cast<MapGrowth>(node.name.view().front() - '0');
                           }};
    for (const TreemapStyle::Surface &surface : {TreemapStyle::paper, dark}) {
        const std::vector<MapColors::Entry> legend = colors.legend(tilesOf(*root), surface);
        ASSERT_EQ(legend.size(), 5U);
        const Color unchanged = legend.back().color;
        for (std::size_t i = 0; i + 1 < legend.size(); ++i) {
            const Color &one = legend[i].color;
            EXPECT_GE(Contrast::between(one, unchanged), Contrast::leastForMarks) << legend[i].title;
            EXPECT_GE(Contrast::between(Contrast::readableOn(one), one), Contrast::leastForText);
            for (const int depth : {0, 1})
                EXPECT_GE(Contrast::between(one, TreemapStyle::over(surface.background,
                                                                    colors.ground(*root, depth, surface))),
                          Contrast::leastForMarks)
                    << legend[i].title;
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_NE(legend[j].color, one) << legend[i].title << legend[j].title;
        }
    }
}

TEST(MapColors, TellWhatBecameOfTiles) {
    const std::shared_ptr<FSNode> root = sampleTree();
    const std::vector<TreemapTile> tiles = tilesOf(*root);
    const MapColors colors{By::growth, 0, [](const FSNode &node) {
                               return node.name == "film.mov"      ? MapGrowth::appeared
                                      : node.name == "picture.jpg" ? MapGrowth::shrank
                                                                   : MapGrowth::unchanged;
                           }};
    EXPECT_THAT(titlesOf(colors.legend(tiles, dark)), ElementsAre("+ New", "▼ Shrank", "Unchanged"));
    std::map<std::string, std::string> marks;
    for (const TreemapTile &tile : tiles)
        marks[tile.node->name] = colors.mark(*tile.node);
    EXPECT_EQ(marks["film.mov"], "+ ") << "not by the colour alone";
    EXPECT_EQ(marks["picture.jpg"], "▼ ");
    EXPECT_EQ(marks["unknown"], "");
}

} // namespace brimvale
