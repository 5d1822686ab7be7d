#include "Core/Scan/FSNode.h"
#include "Support/SampleTree.h"

#include <chrono>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brimvale {

using testing::add;
using testing::addFolder;
using testing::namesIn;

TEST(FSNode, KeepsPathAfterRelease) {
    FSNode volume("Macintosh HD", "/", true);
    FSNode &users = addFolder(volume, "Users");
    FSNode &home = addFolder(users, "u\n\xFF");
    EXPECT_EQ(volume.path(), "/");
    EXPECT_EQ(users.path(), "/Users");
    EXPECT_EQ(home.path(), "/Users/u\n\xFF");
    home.adopt(FSNode::aggregate(home, 2));
    FSNode &file = add(home, "file", 0);
    FSNode &aggregate = *home.children().front();
    EXPECT_EQ(aggregate.path(), home.path());

    const std::unique_ptr<FSNode> released = users.release(home);
    ASSERT_EQ(released.get(), &home);
    EXPECT_EQ(home.parent(), nullptr);
    EXPECT_EQ(home.path(), "/Users/u\n\xFF");
    EXPECT_EQ(file.path(), "/Users/u\n\xFF/file");
    EXPECT_EQ(aggregate.path(), home.path());
    const std::unique_ptr<FSNode> releasedAggregate = home.release(aggregate);
    EXPECT_EQ(releasedAggregate->path(), home.path());
    EXPECT_EQ(users.release(home), nullptr);
    EXPECT_TRUE(users.children().empty());
}

TEST(FSNode, OnlyFoldersWithChildrenCanExpand) {
    FSNode root("r", "/r", true);
    EXPECT_TRUE(root.outlineChildren().empty());
    FSNode &file = add(root, "file", 0);
    EXPECT_FALSE(root.outlineChildren().empty());
    EXPECT_TRUE(file.outlineChildren().empty());
    EXPECT_TRUE(FSNode::aggregate(root, 3)->outlineChildren().empty());
}

TEST(FSNode, SortsBySizeAndIsStable) {
    FSNode root("r", "/r", true);
    add(root, "small", 1);
    FSNode &folder = addFolder(root, "folder");
    add(root, "first", 5);
    add(root, "big", 9);
    add(root, "second", 5);
    add(folder, "a", 2);
    add(folder, "b", 3);
    root.sortRecursively();
    EXPECT_THAT(namesIn(root), ::testing::ElementsAre("big", "folder", "first", "second", "small"));
    EXPECT_THAT(namesIn(folder), ::testing::ElementsAre("b", "a"));
}

TEST(FSNode, KeepsTheOrderOfManyChildren) {
    FSNode root("r", "/r", true);
    std::vector<std::string> names;
    for (int i = 0; i < 400; ++i)
        add(root, names.emplace_back(std::to_string(i)), 0);
    for (const int place : {399, 200, 0}) {
        const auto released = root.release(*root.children()[static_cast<std::size_t>(place)]);
        EXPECT_EQ(released->name, std::to_string(place));
        EXPECT_EQ(released->path(), "/r/" + std::to_string(place));
        names.erase(names.begin() + place);
    }
    EXPECT_EQ(namesIn(root), names);
    EXPECT_TRUE(root.drop([](const FSNode &child) { return child.name.size() == 3; }));
    EXPECT_FALSE(root.drop([](const FSNode &child) { return child.name.size() == 3; }));
    names.erase(names.begin() + 99, names.end());
    EXPECT_EQ(namesIn(root), names);
}

namespace {

constexpr int branchFolders = 600;

/// A folder with many folders, each with a few small files.
std::unique_ptr<FSNode> makeBranch(const std::string &name) {
    auto branch = std::make_unique<FSNode>(name, "/r/" + name, true);
    branch->setDirCount(branchFolders);
    for (int i = 0; i < branchFolders; ++i) {
        FSNode &folder = addFolder(*branch, name + "-" + std::to_string(i));
        const FileTallyEntry entry{FileType::log, FileAge::year, i + 1, 4096};
        folder.adopt(FSNode::aggregate(folder, i + 1));
        folder.children().front()->setSmallFiles(FileTally({&entry, 1}));
    }
    return branch;
}

/// Whether `folder` has all that `makeBranch` has made, with that name.
void expectBranch(const FSNode &folder, const std::string &name) {
    ASSERT_EQ(folder.children().size(), static_cast<std::size_t>(branchFolders));
    EXPECT_EQ(folder.dirCount(), branchFolders);
    for (int i = 0; i < branchFolders; ++i) {
        const FSNode &child = *folder.children()[static_cast<std::size_t>(i)];
        const FSNode &aggregate = *child.children().front();
        ASSERT_EQ(child.parent(), &folder);
        ASSERT_EQ(aggregate.path(), folder.path() + "/" + name + "-" + std::to_string(i));
        ASSERT_EQ(aggregate.name, std::to_string(i + 1) + (i == 0 ? " smaller item" : " smaller items"));
        ASSERT_EQ(aggregate.smallFiles().entries().front().count, i + 1);
    }
}

} // namespace

// The threads of a scan make the branches of one tree. Later each may be dropped by itself, on any thread,
// while others are shown and new ones are made.
TEST(FSNode, BranchesOutliveTheirThreadsAndEachOther) {
    auto root = std::make_unique<FSNode>("r", "/r", true);
    std::vector<std::unique_ptr<FSNode>> branches(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < branches.size(); ++i)
        threads.emplace_back([&, i] { branches[i] = makeBranch(std::to_string(i)); });
    for (std::thread &thread : threads)
        thread.join();
    root->adopt(branches);

    std::unique_ptr<FSNode> released = root->release(*root->children()[1]);
    std::unique_ptr<FSNode> rescanned = makeBranch("2");
    FSNode &shown = *root->children()[1];
    shown.swapContents(*rescanned);
    std::thread dropping([&released, &rescanned] {
        rescanned.reset();
        expectBranch(*released, "1");
        released.reset();
    });
    for (int i = 0; i < 3; ++i)
        expectBranch(*makeBranch("new"), "new");
    expectBranch(shown, "2");
    dropping.join();

    released = root->release(*root->children().back());
    root.reset();
    EXPECT_EQ(released->path(), "/r/3");
    expectBranch(*released, "3");
}

TEST(FSNode, AggregateHasNoIdentity) {
    FSNode root("r", "/r", true);
    root.adopt(FSNode::aggregate(root, 200));
    FSNode &aggregate = *root.children().front();
    aggregate.setIdentity({1, 2});
    EXPECT_FALSE(aggregate.identity());
    const FileTallyEntry entry{FileType::other, FileAge::unknown, 200, 4096};
    aggregate.setSmallFiles(FileTally({&entry, 1}));
    root.setSmallFiles(FileTally({&entry, 1}));
    aggregate.subtractSmallFile(entry.type, entry.age, 96);
    EXPECT_EQ(aggregate.smallFiles().entries(),
              (std::vector<FileTallyEntry>{{entry.type, entry.age, 199, 4000}}));
    EXPECT_TRUE(root.smallFiles().entries().empty());
}

TEST(FSNode, KeepsTheNewestDateOfWhatIsLeft) {
    FSNode root("r", "/r", true);
    FSNode &folder = addFolder(root, "folder");
    FSNode &newest = add(folder, "newest", 1);
    FSNode &second = add(folder, "second", 1);
    FSNode &outside = add(root, "outside", 1);
    outside.modified = 3;
    second.modified = 5;
    root.modified = folder.modified = newest.modified = 9;
    const auto take = [](FSNode &node) {
        node.subtractFromAncestors();
        return node.parent()->release(node);
    };
    const std::unique_ptr<FSNode> first = take(newest);
    EXPECT_EQ(std::pair(folder.modified, root.modified), std::pair(5U, 5U));
    const std::unique_ptr<FSNode> next = take(second);
    EXPECT_EQ(std::pair(folder.modified, root.modified), std::pair(0U, 3U));

    FSNode again("folder", "/r/folder", true);
    add(again, "new", 1).modified = 7;
    again.modified = 7;
    folder.swapContents(again);
    EXPECT_EQ(std::pair(folder.modified, root.modified), std::pair(7U, 7U));
    folder.swapContents(again);
    EXPECT_EQ(std::pair(folder.modified, root.modified), std::pair(0U, 3U));
}

TEST(FSNode, KeepsTheNewestDateOfSmallFilesWhereItIsKnown) {
    for (const bool allHaveNodes : {true, false}) {
        FSNode root("r", "/r", true);
        std::unique_ptr<FSNode> aggregate = FSNode::aggregate(root, allHaveNodes ? 2 : 3);
        for (const std::uint32_t modified : {5U, 9U}) {
            aggregate->adopt(std::make_unique<FSNode>("file", *aggregate, false));
            aggregate->largestSmallFiles().back()->modified = modified;
            aggregate->largestSmallFiles().back()->fileCount = 1;
        }
        root.modified = aggregate->modified = 9;
        const FSNode &newest = *aggregate->largestSmallFiles().back();
        root.adopt(std::move(aggregate));
        newest.subtractFromAncestors();
        EXPECT_EQ(root.modified, allHaveNodes ? 5U : 9U);
        EXPECT_EQ(newest.parent()->modified, root.modified);
    }
}

TEST(FSNode, HoldsDatesFrom1970To2106) {
    const auto seconds = [](std::int64_t count) {
        return FSNode::secondsOf(Date(std::chrono::seconds(count)));
    };
    EXPECT_EQ(seconds(1'700'000'000), 1'700'000'000U);
    EXPECT_EQ(seconds(0), 1U);
    EXPECT_EQ(seconds(-5), 1U);
    EXPECT_EQ(seconds(8'000'000'000), 0xFFFFFFFFU);
    EXPECT_EQ(FSNode::secondsOf(std::nullopt), 0U);
}

TEST(FSNode, DeepTreeDoesNotOverflowTheStack) {
    auto root = std::make_unique<FSNode>("r", "/r", true);
    FSNode *node = root.get();
    constexpr int depth = 100'000;
    for (int i = 0; i < depth; ++i) {
        node->adopt(std::make_unique<FSNode>("leaf", *node, false));
        node->adopt(std::make_unique<FSNode>("d", *node, true));
        node = node->children().back().get();
        node->size = 1; // so that the sort turns the two round
    }
    root->sortRecursively();
    EXPECT_EQ(node->path().size(), 2 + 2U * depth);
    root.reset();
}

} // namespace brimvale
