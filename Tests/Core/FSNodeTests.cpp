#include "Core/FSNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

FSNode &add(FSNode &parent, const std::string &name, bool isDirectory, std::int64_t size = 0) {
    parent.adopt(std::make_unique<FSNode>(name, parent, isDirectory));
    parent.children().back()->size = size;
    return *parent.children().back();
}

std::vector<std::string> namesIn(const FSNode &node) {
    std::vector<std::string> names;
    for (const auto &child : node.children())
        names.push_back(child->name);
    return names;
}

} // namespace

TEST(FSNode, ComposesItsPathAndKeepsItOnceReleased) {
    FSNode volume("Macintosh HD", "/", true);
    FSNode &users = add(volume, "Users", true);
    FSNode &home = add(users, "u\n\xFF", true);
    EXPECT_EQ(volume.path(), "/");
    EXPECT_EQ(users.path(), "/Users");
    EXPECT_EQ(home.path(), "/Users/u\n\xFF");
    home.adopt(FSNode::aggregate(home, 2));
    FSNode &file = add(home, "file", false);
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

TEST(FSNode, NamesAggregatesByTheirCount) {
    FSNode folder("f", "/f", true);
    EXPECT_EQ(FSNode::aggregate(folder, 1)->name, "1 smaller item");
    EXPECT_EQ(FSNode::aggregate(folder, 37)->name, "37 smaller items");
}

TEST(FSNode, OffersADisclosureOnlyWhereThereIsSomethingToDisclose) {
    FSNode root("r", "/r", true);
    EXPECT_TRUE(root.outlineChildren().empty());
    FSNode &file = add(root, "file", false);
    EXPECT_FALSE(root.outlineChildren().empty());
    EXPECT_TRUE(file.outlineChildren().empty());
    EXPECT_TRUE(FSNode::aggregate(root, 3)->outlineChildren().empty());
}

TEST(FSNode, SortsEveryLevelAndKeepsTheWalkOrderOfEqualSizes) {
    FSNode root("r", "/r", true);
    add(root, "small", false, 1);
    FSNode &folder = add(root, "folder", true, 5);
    add(root, "first", false, 5);
    add(root, "big", false, 9);
    add(root, "second", false, 5);
    add(folder, "a", false, 2);
    add(folder, "b", false, 3);
    root.sortRecursively();
    EXPECT_THAT(namesIn(root), ::testing::ElementsAre("big", "folder", "first", "second", "small"));
    EXPECT_THAT(namesIn(folder), ::testing::ElementsAre("b", "a"));
}

TEST(FSNode, NeverRecursesHoweverDeepTheTree) {
    auto root = std::make_unique<FSNode>("r", "/r", true);
    FSNode *node = root.get();
    constexpr int depth = 100'000;
    for (int i = 0; i < depth; ++i) {
        add(*node, "leaf", false, 1);
        node = &add(*node, "d", true, 2);
    }
    root->sortRecursively();
    EXPECT_EQ(node->path().size(), 2 + 2U * depth);
    root.reset();
}

} // namespace brimvale
