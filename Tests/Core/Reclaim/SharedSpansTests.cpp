#include "Core/Reclaim/SharedSpans.h"

#include "Core/Reclaim/ReclaimTexts.h"

#include <gmock/gmock.h>

namespace brimvale {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(SharedSpans, CountEachBlockOnceAndInOnePlace) {
    SharedSpans spans;
    spans.add({{1000, 300}, {5000, 100}});
    spans.add({{1200, 300}}); // 1200 to 1300 are in both
    spans.addKept({{1250, 1000}, {9000, 50}}, 7);
    const SharedSpans::Sums sums = spans.sums();
    EXPECT_EQ(sums.elsewhere, 200 + 100);
    EXPECT_EQ(sums.within, 50);
    EXPECT_THAT(sums.kept, ElementsAre(Pair(7U, 250))) << "and nothing that only the snapshot has";
}

TEST(SharedSpans, CompressedBlocksAreSharedAsAWhole) {
    SharedSpans spans;
    spans.add({{4096, 131'072, true}});
    spans.add({{8192, 131'072, true}}); // does not overlap, though the bytes would
    spans.add({{8192, 4096, true}});
    SharedSpans::Sums sums = spans.sums();
    EXPECT_EQ(sums.elsewhere, 131'072);
    EXPECT_EQ(sums.within, 131'072);
    spans.addKept({{4096, 131'072, true}}, 0);
    sums = spans.sums();
    EXPECT_EQ(sums.elsewhere, 0);
    EXPECT_THAT(sums.kept, ElementsAre(Pair(0U, 131'072)));
}

TEST(SharedSpans, PartsOfAnExtentMayBeSharedWithTheSelectionAlone) {
    SharedSpans spans;
    spans.add({{1000, 500}, {4000, 100}}, 150);
    spans.add({{1200, 10}}, 150);
    spans.add({{1500, 100}}, 150); // beside the first, but with nothing of it
    const SharedSpans::Sums sums = spans.sums();
    EXPECT_EQ(sums.within, 150 + 10 + 150);
    EXPECT_EQ(sums.elsewhere, 50 + 140 + 100 + 100);
}

TEST(SharedSpans, ACopyCoversOnlyWhatItHas) {
    EXPECT_TRUE(areCovered({{100, 50}, {400, 10}}, {{90, 40}, {130, 20}, {400, 10}}));
    EXPECT_FALSE(areCovered({{100, 50}}, {{100, 49}}));
    EXPECT_FALSE(areCovered({{100, 50, true}}, {{100, 50}}));
}

TEST(ReclaimTexts, TellOnlyWhatIsHeld) {
    EXPECT_THAT(reclaimLines({.freesNow = 1'200'000'000}, RemovalMode::deleteNow),
                ElementsAre("Deleting frees now: 1.2 GB"));
    EXPECT_THAT(reclaimLines({.mayFree = 2'000}, RemovalMode::trash),
                ElementsAre("Frees when the Trash is emptied: at most 2 KB"));
    EXPECT_THAT(
        reclaimLines(
            {.freesNow = 1'000,
             .mayFree = 2'000,
             .linkedElsewhere = 5'000,
             .filesLinkedElsewhere = 3,
             .links = {{.file = {}, .bytes = 3'000}, {.file = {}, .bytes = 2'000, .otherName = "/a/b"}},
             .sharedElsewhere = 6'000,
             .inSnapshots = 7'000,
             .snapshots = {{"/.snapshots/2/snapshot", 4'000}, {"/.snapshots/1/snapshot", 3'000}},
             .inUse = 8'000,
             .programs = {{"mpv", 8'000}},
             .unreadable = 2},
            RemovalMode::deleteNow),
        ElementsAre("Deleting frees now: 1 KB to 3 KB",
                    "Shared: 5 KB of 3 files that have other names elsewhere (/a/b and 2 more)",
                    "Shared: 6 KB that copies or snapshots elsewhere also use",
                    "Held by snapshots: 7 KB (/.snapshots/2/snapshot and 1 more)",
                    "Held by running programs: 8 KB (mpv)", "2 items could not be looked at"));
}

} // namespace brimvale
