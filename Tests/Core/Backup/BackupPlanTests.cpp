#include "Core/Backup/BackupPlan.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <limits>

namespace brimvale {

TEST(BackupPlan, RefusesEqualNamesAndFoldersInsideThemselves) {
    struct Case {
        std::vector<std::string> items;
        std::string root;
        std::string refusal; ///< a part of it; empty where there is none
    };
    for (const Case &one : {
             Case{{"/a/one", "/a/two", "/b/three"}, "/backups", ""},
             Case{{"/a/one", "/a/two", "/b/one"}, "/backups", "Two of the items are named “one”."},
             Case{{"/a/One", "/b/oNE"}, "/backups", "Two of the items are named “oNE”."},
             Case{{"/a/caf\xE9", "/b/caf\xE9/"}, "/backups", "Two of the items are named “caf\uFFFD”."},
             Case{
                 {"/a", "/home/u"}, "/home/u/backups", "“u” can’t be backed up into a folder inside itself."},
             Case{{"/home/u/backups"}, "/home/u/backups", "“backups” can’t be backed up"},
             Case{{"/home/u"}, "/home/u2/backups", ""},
             Case{{"/home/u/backups/old"}, "/home/u/backups", ""},
             Case{{"/"}, "/backups", "“/” can’t be backed up"},
             Case{{"/a/.."}, "/backups", "can’t be backed up"},
         }) {
        std::vector<FileURL> items;
        for (const std::string &item : one.items)
            items.emplace_back(item);
        const std::string refusal = BackupPlan::refusal(items, FileURL(one.root)).value_or("");
        EXPECT_THAT(refusal, ::testing::HasSubstr(one.refusal));
        EXPECT_EQ(refusal.empty(), one.refusal.empty()) << refusal;
    }
}

TEST(BackupPlan, HoldsResolvesLinks) {
    const testing::TemporaryFolder folder;
    folder.makeFolder("home/item/inside");
    folder.makeLink("link", "home/item");
    folder.makeLink("other", "home");
    const auto holds = [&](const char *item, const char *place) {
        return BackupPlan::holds(FileURL(folder.path(item)), FileURL(folder.path(place)));
    };
    EXPECT_TRUE(holds("home/item", "link"));
    EXPECT_TRUE(holds("home/item", "link/not/yet/there"));
    EXPECT_TRUE(holds("other/item", "home/item/inside"));
    EXPECT_FALSE(holds("home/item/inside", "link"));
    EXPECT_FALSE(holds("link", "home/item/inside")) << "a link is copied as a link";
    EXPECT_TRUE(holds("link", "link/inside"));
}

TEST(BackupPlan, ShortageNamesNeededAndAvailable) {
    const testing::TemporaryFolder folder;
    const FileURL root(folder.path("not yet/there"));
    // Not there, so nothing is cloned.
    const std::vector<FileURL> items = {FileURL(folder.path("missing"))};
    EXPECT_EQ(BackupPlan::shortage(items, 0, root), std::nullopt);
    const auto shortage = BackupPlan::shortage(items, std::numeric_limits<std::int64_t>::max(), root);
    ASSERT_TRUE(shortage);
    EXPECT_EQ(shortage->needed, std::numeric_limits<std::int64_t>::max());
    EXPECT_GE(shortage->available, 0);
    EXPECT_EQ(BackupPlan::sentence({5'500'000'000'000, 55'000}),
              "The backup needs 5.5 TB, but only 55 KB are free there.");
}

} // namespace brimvale
