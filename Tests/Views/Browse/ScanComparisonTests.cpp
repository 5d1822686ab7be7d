#include "Views/Browse/Compare/ScanComparison.h"

#include "Support/SampleTree.h"
#include "Support/Window.h"
#include "Views/Browse/Compare/CompareNote.h"

#include <QSignalSpy>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brimvale {

using testing::eventually;

namespace {

constexpr std::int64_t file = 1'000'000;

/// A tree that takes a while to compare with another one that has `more` in every file.
std::shared_ptr<FSNode> largeTree(std::int64_t more = 0) {
    std::shared_ptr<FSNode> root = testing::makeRoot();
    for (int i = 0; i < 300; ++i) {
        FSNode &folder = testing::addFolder(*root, "folder " + std::to_string(i));
        for (int j = 0; j < 100; ++j)
            testing::add(folder, "file " + std::to_string(j), file + more);
    }
    return root;
}

ScanComparison::Earlier earlierScan() {
    return {largeTree(), QStringLiteral("monday.scan"), {}};
}

/// Takes the first folder out of the tree, as a removal does.
void removeFirst(FSNode &root) {
    FSNode &first = *root.children().front();
    first.subtractFromAncestors();
    EXPECT_NE(root.release(first), nullptr); // and is freed at once
}

std::vector<std::string> pathsOf(const TreeComparison &comparison) {
    std::vector<std::string> paths;
    for (const TreeChange &change : comparison.changes())
        paths.push_back(std::string(wordFor(change.kind)).append(" ").append(change.path));
    return paths;
}

} // namespace

TEST(ScanComparisonTest, ChangesOfTheTreeStopItAndNothingOldArrives) {
    const ScanComparison::Earlier earlier = earlierScan();
    const std::shared_ptr<FSNode> later = largeTree(1);
    ScanComparison comparison;
    QSignalSpy ended(&comparison, &ScanComparison::compared);
    comparison.begin(earlier, *later);
    for (int i = 0; i < 20; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 5));
        comparison.leaveTree(); // which may have been read to its end or not at all
        EXPECT_FALSE(comparison.isRunning());
        removeFirst(*later);
        comparison.compareAgain(*later);
        EXPECT_TRUE(comparison.isRunning());
    }
    ASSERT_TRUE(eventually([&] { return !comparison.isRunning(); }));
    EXPECT_EQ(ended.count(), 1) << "the event loop has not run before, and all others are outdated";
    ASSERT_NE(comparison.changes(), nullptr);
    EXPECT_EQ(pathsOf(*comparison.changes()), pathsOf(TreeComparison(*earlier.tree, *later)));

    comparison.compareAgain(*later);
    EXPECT_FALSE(comparison.isRunning()) << "nothing has changed since";
    const FSNode &folder = *later->children().front();
    EXPECT_EQ(comparison.of(folder).growth, 100);
    comparison.letGoOf(folder);
    EXPECT_EQ(comparison.of(folder).growth, 0);
    comparison.letGo();
    EXPECT_EQ(comparison.changes(), nullptr);
    EXPECT_TRUE(comparison.isOn()) << "until the next scan of the same folder";
}

TEST(ScanComparisonTest, EndsWhileItRuns) {
    for (const int wait : {0, 1, 3}) {
        std::shared_ptr<FSNode> later = largeTree(1);
        ScanComparison comparison;
        QSignalSpy ended(&comparison, &ScanComparison::compared);
        ScanComparison::Earlier earlier = earlierScan();
        const std::weak_ptr<const FSNode> earlierTree = earlier.tree;
        comparison.begin(std::move(earlier), *later);
        std::this_thread::sleep_for(std::chrono::milliseconds(wait));
        comparison.end();
        later.reset();
        EXPECT_FALSE(comparison.isOn());
        EXPECT_TRUE(eventually([&] { return earlierTree.expired(); }));
        EXPECT_EQ(ended.count(), 0);
        EXPECT_EQ(comparison.changes(), nullptr);
    }
}

TEST(ScanComparisonTest, ClosesWhileItRuns) {
    for (const int wait : {0, 1, 3}) {
        std::shared_ptr<FSNode> later = largeTree(1);
        auto comparison = std::make_unique<ScanComparison>();
        comparison->begin(earlierScan(), *later);
        std::this_thread::sleep_for(std::chrono::milliseconds(wait));
        comparison.reset();
        later.reset();
    }
}

TEST(ScanComparisonTest, TheNoteTellsThatItRuns) {
    const std::shared_ptr<FSNode> later = largeTree();
    ScanComparison comparison;
    CompareNote note;
    const auto words = [&] {
        note.showComparison(comparison);
        return note.isHidden() ? "" : testing::shown(note, "compareWords");
    };
    EXPECT_EQ(words(), "");
    comparison.begin(earlierScan(), *later);
    EXPECT_EQ(words(), "Comparing with “monday.scan”…");
    ASSERT_TRUE(eventually([&] { return !comparison.isRunning(); }));
    const std::string result = words();
    EXPECT_EQ(result, "Compared with “monday.scan”: +0 bytes, nothing has changed.");
    comparison.leaveTree();
    comparison.compareAgain(*later);
    EXPECT_EQ(words(), result + " Comparing again…");
    comparison.end();
    EXPECT_EQ(words(), "");
}

TEST(ScanComparisonTest, AnotherFolderEndsIt) {
    const std::shared_ptr<FSNode> later = testing::makeRoot();
    ScanComparison comparison;
    comparison.begin({testing::makeRoot(), {}, {}}, *later);
    ASSERT_TRUE(eventually([&] { return comparison.changes() != nullptr; }));
    comparison.letGo();
    comparison.compareAgain(FSNode("other", "/other", true));
    EXPECT_FALSE(comparison.isOn());
}

} // namespace brimvale
