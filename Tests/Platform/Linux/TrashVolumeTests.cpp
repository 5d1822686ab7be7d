#include "Platform/Linux/TrashScene.h"
#include "Support/OwnMounts.h"
#include "Support/TreeListing.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace brimvale {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Trash, UsesTrashOfTheItemsVolume) {
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume"), other = folder.makeFolder("other");
        const std::string user = std::to_string(geteuid());
        if (!ownMounts() || !mountMemory(volume) || !mountMemory(other))
            GTEST_SKIP() << "mounting is not permitted here";
        // Shared trashes that must not be used: without the sticky bit, a link.
        folder.makeFolder("volume/.Trash");
        folder.makeLink("other/.Trash", volume);
        EXPECT_EQ(outcome(folder.makeFile("volume/deep/er/a b")), "trashed");
        EXPECT_EQ(outcome(folder.makeFile("other/file")), "trashed");
        EXPECT_THAT(originalPaths(volume + "/.Trash-" + user), ElementsAre(std::pair("a b", "deep/er/a b")));
        EXPECT_THAT(originalPaths(other + "/.Trash-" + user), ElementsAre(std::pair("file", "file")));
        EXPECT_THAT(listing(volume + "/.Trash"), IsEmpty());

        fs::permissions(volume + "/.Trash", fs::perms(01777));
        folder.makeLink("way", "volume/deep");
        EXPECT_EQ(outcome(folder.makeFile("way/er/second")), "trashed");
        EXPECT_THAT(originalPaths(volume + "/.Trash/" + user),
                    ElementsAre(std::pair("second", "deep/er/second")));
        // The mount point is not in the volume, and stays.
        EXPECT_EQ(outcome(volume), over(512, EBUSY));
        EXPECT_THAT(originalPaths(folder.path("home/data/Trash")), IsEmpty());
        EXPECT_TRUE(isThere(volume + "/deep/er"));
        // A folder of the same device that is shown elsewhere by a mount is a volume, too.
        folder.writeFile("place/file", "kept");
        const std::string view = folder.makeFolder("view");
        if (!mountAlsoAt(folder.path("place"), view))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(outcome(view + "/file"), "trashed");
        EXPECT_THAT(originalPaths(view + "/.Trash-" + user), ElementsAre(std::pair("file", "file")));
        EXPECT_EQ(contentOf(folder.path("place/.Trash-" + user + "/files/file")), "kept");
    });
}

TEST(Trash, FullOrReadOnlyVolumeKeepsItem) {
    inHome([](const TemporaryFolder &folder) {
        const std::string full = folder.makeFolder("full"), place = folder.makeFolder("place");
        const std::string fixed = folder.makeFolder("fixed");
        folder.writeFile("place/file", "kept");
        if (!ownMounts() || !mountMemory(full, 65'536) || !mountAlsoAt(place, fixed, true))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.writeFile("full/first", "kept");
        folder.writeFile("full/second", "kept");
        EXPECT_EQ(outcome(full + "/first"), "trashed");
        std::ofstream filler(full + "/filler", std::ios::binary);
        while (filler.put('x').flush()) {
        }
        const std::vector<std::string> before = listing(full);
        EXPECT_EQ(outcome(full + "/second"), over(640, ENOSPC));
        EXPECT_EQ(listing(full), before);
        EXPECT_EQ(outcome(fixed + "/file"), over(642, EROFS));
        EXPECT_THAT(listing(place), ElementsAre("/file: file kept"));
        EXPECT_FALSE(isThere(folder.path("home/data")));
    });
}

TEST(Trash, RefusesTrashFolderOfAnotherUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume");
        if (!ownMounts() || !mountMemory(volume))
            GTEST_SKIP() << "mounting is not permitted here";
        const std::string prepared = folder.makeFolder("volume/.Trash-0");
        folder.makeFolder("volume/.Trash-0/files");
        if (chown(prepared.c_str(), 65534, 65534) != 0)
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(outcome(folder.makeFile("volume/file")), "3328");
        EXPECT_TRUE(isThere(volume + "/file"));
        EXPECT_THAT(listing(prepared), ElementsAre("/files: folder"));
    });
}

} // namespace brimvale
