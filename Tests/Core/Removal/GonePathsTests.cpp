#include "Core/Removal/GonePaths.h"

#include "Core/Removal/NodesToRemove.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace brimvale {

namespace {

using testing::add;
using testing::addAggregate;
using testing::addFolder;
using ::testing::ElementsAre;
using testing::namesOf;
using ::testing::UnorderedElementsAre;

/// By the definition alone: the item or one of its parents is in the list.
bool isAmong(const std::vector<FileURL> &items, FileURL item) {
    for (;; item = item.parent()) {
        if (std::find(items.begin(), items.end(), item) != items.end())
            return true;
        if (item.path() == "/")
            return false;
    }
}

} // namespace

TEST(GonePaths, HoldItemsAndEverythingInside) {
    // Bytes before and after the slash, and names that begin with one another.
    const std::vector<std::string> names{"a", "ab", "a-b", "a.b", "a b", "b", "\xff"};
    std::mt19937 random(7); // NOLINT: the same every time
    const auto anyPath = [&] {
        std::string path;
        for (std::size_t depth = 1 + random() % 4; depth > 0; --depth)
            path += "/" + names[random() % names.size()];
        return FileURL(path);
    };
    for (int round = 0; round < 300; ++round) {
        std::vector<FileURL> items, later;
        for (std::size_t count = random() % 6; count > 0; --count)
            (count % 2 == 0 ? items : later).push_back(anyPath());
        GonePaths gone(items);
        gone.add(GonePaths(later));
        items.insert(items.end(), later.begin(), later.end());
        EXPECT_EQ(gone.isEmpty(), items.empty());
        for (int i = 0; i < 30; ++i) {
            const FileURL asked = anyPath();
            EXPECT_EQ(gone.contains(asked), isAmong(items, asked)) << asked.path();
            EXPECT_EQ(gone.reachInto(asked), std::any_of(items.begin(), items.end(),
                                                         [&](const FileURL &one) {
                                                             return one != asked && isAmong({asked}, one) &&
                                                                    !isAmong(items, asked);
                                                         }))
                << asked.path();
        }
    }
    EXPECT_TRUE(GonePaths({FileURL("/")}).contains(FileURL("/a/b")));
    EXPECT_TRUE(GonePaths({FileURL("/a")}).reachInto(FileURL("/")));
}

TEST(GonePaths, KnowAnItemByEveryPathThroughLinks) {
    const testing::TemporaryFolder folder;
    folder.makeFolder("real/inner");
    const std::string link = folder.makeLink("link", "real");
    const FileURL item(link + "/gone"), real(folder.path("real/gone"));
    const GonePaths gone = GonePaths::throughLinks({item, FileURL(folder.path("nowhere/gone"))});
    EXPECT_TRUE(gone.contains(item) && gone.contains(real));
    EXPECT_FALSE(gone.contains(FileURL(folder.path("real/inner"))));
    // A link that is removed leaves what it leads to.
    EXPECT_FALSE(GonePaths::throughLinks({FileURL(link)}).contains(real));
}

TEST(NodesToRemove, AreThoseThatCanGoByThemselves) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    FSNode &folder = addFolder(*root, "folder");
    FSNode &inner = add(folder, "inner", 5);
    FSNode &file = add(*root, "file", 7);
    FSNode &aggregate = addAggregate(folder, 3, 1);
    const std::vector<FSNode *> nodes =
        removableNodes(std::vector{&aggregate, &inner, &folder, &file, &folder});
    EXPECT_THAT(nodes, ElementsAre(&folder, &file));
    const std::vector<CleanupEntry> entries = entriesOf(nodes);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].url.path(), folder.path());
    EXPECT_EQ(entries[1].size, 7);
    EXPECT_TRUE(entries[0].isFolder);
    EXPECT_FALSE(entries[1].isFolder);
}

TEST(NodesToRemove, AreFoundByThePathsThatAreGone) {
    const std::shared_ptr<FSNode> root = testing::makeRoot();
    const FileURL top(root->path());
    FSNode &a = addFolder(*root, "a");
    FSNode &b = addFolder(a, "b");
    add(b, "file", 1);
    add(a, "ab", 1);
    add(*root, "kept", 1);
    FSNode &aggregate = addAggregate(a, 1, 1);
    const auto found = [&](const std::vector<FileURL> &gone) {
        return namesOf(goneNodes(*root, GonePaths(gone)));
    };
    EXPECT_THAT(found({top.appending("a/b/file"), top.appending("a/ab"), top.appending("a/unknown/x")}),
                UnorderedElementsAre("file", "ab"));
    EXPECT_THAT(found({top.appending("a"), top.appending("a/b")}), ElementsAre("a"));
    EXPECT_THAT(found({top.appending("a").appending(aggregate.name)}), ElementsAre())
        << "an aggregate is no item of that name";
    EXPECT_THAT(found({top.parent()}), UnorderedElementsAre("a", "kept")) << "the root stays";
}

} // namespace brimvale
