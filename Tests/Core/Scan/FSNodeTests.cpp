#include "Core/Scan/FSNode.h"
#include "Support/SampleTree.h"

#include <gmock/gmock.h>

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
