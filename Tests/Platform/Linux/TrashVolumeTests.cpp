#include "Platform/Host.h"
#include "Platform/Linux/TrashScene.h"
#include "Platform/Trash.h"
#include "Support/AtPath.h"
#include "Support/OwnMounts.h"
#include "Support/TreeListing.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Moves an item to the Trash: what is told about its new place.
std::string newPlaceOf(const std::string &path) {
    TrashedItem trashed;
    const auto error = moveToTrashAt(FileURL(path), &trashed);
    return error ? error->localizedDescription : trashed.unusualPlace.value_or("the usual");
}

} // namespace

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
        // What is in one Trash does not go to another.
        EXPECT_EQ(outcome(volume + "/.Trash-" + user + "/files/a b"), over(512, EINVAL));
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

        // The owner of a shared Trash may move our folder in it away.
        const std::string other = folder.makeFolder("other"), shared = other + "/.Trash";
        if (!mountMemory(other) || mkdir(shared.c_str(), 0) != 0 || chown(shared.c_str(), 65534, 65534) != 0)
            GTEST_SKIP() << "mounting is not permitted here";
        fs::permissions(shared, fs::perms(01777));
        EXPECT_EQ(outcome(folder.makeFile("other/file")), "trashed");
        EXPECT_THAT(listing(shared), IsEmpty());
        EXPECT_TRUE(isThere(other + "/.Trash-0/files/file"));
    });
}

TEST(Trash, RootMakesNoneInTheHomeOfAnotherUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume"), home = volume + "/home";
        const std::string own = accountHome().path();
        if (!ownMounts() || !mountMemory(volume) || !mountMemory(own))
            GTEST_SKIP() << "mounting is not permitted here";
        setenv("HOME", home.c_str(), 1);
        unsetenv("XDG_DATA_HOME");
        // What an earlier program may have left in the home belongs to root.
        for (const char *left : {"", "/.local"}) {
            fs::create_directories(home + left);
            ASSERT_EQ(chown(home.c_str(), 65534, 65534), 0);
            const std::vector<std::string> before = listing(home);
            EXPECT_EQ(newPlaceOf(folder.makeFile("volume/a")), volume + "/.Trash-0/files/a");
            EXPECT_EQ(listing(home), before);
            fs::remove_all(volume + "/.Trash-0");
        }
        EXPECT_EQ(newPlaceOf(folder.writeFile("volume/home/b", "kept")), volume + "/.Trash-0/files/b");
        std::ofstream(own + "/c").close();
        EXPECT_EQ(newPlaceOf(own + "/c"), "the usual") << "root's own is on that volume";
        EXPECT_TRUE(isThere(own + "/.local/share/Trash/files/c"));
    });
}

TEST(Trash, TellsWhereAnItemIsWhenTheUsualTrashCannotBeOpened) {
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume");
        const std::string top = volume + "/.Trash-" + std::to_string(geteuid());
        if (!ownMounts() || !mountMemory(volume))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(newPlaceOf(folder.makeFile("volume/on/another")), "the usual");
        folder.makeFolder("volume/home");
        setenv("XDG_DATA_HOME", folder.makeLink("volume/home/data", "data").c_str(), 1);
        EXPECT_EQ(newPlaceOf(folder.writeFile("volume/file", "kept")), top + "/files/file");
        EXPECT_EQ(contentOf(top + "/files/file"), "kept");
        fs::remove(volume + "/home/data");
        EXPECT_EQ(newPlaceOf(folder.makeFile("volume/file")), "the usual");
        EXPECT_TRUE(isThere(volume + "/home/data/Trash/files/file"));
    });
}

TEST(Trash, TellsWhyAnItemStays) {
    inHome([](const TemporaryFolder &folder) {
        const std::string memory = folder.makeFolder("memory"), overlay = folder.makeFolder("overlay");
        const auto reason = [](const std::string &path) {
            const auto error = testing::moveToTrashAt(FileURL(path));
            return error ? error->localizedDescription : "trashed";
        };
        if (!ownMounts() || !mountMemory(memory))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(
            reason(memory),
            "“memory” couldn’t be moved to the trash because it is in use or a volume is mounted there.");
        folder.makeFile("memory/lower/item/file");
        folder.makeFolder("memory/upper");
        folder.makeFolder("memory/work");
        const std::string layers = "redirect_dir=off,lowerdir=" + memory + "/lower,upperdir=" + memory +
                                   "/upper,workdir=" + memory + "/work";
        if (mount("overlay", overlay.c_str(), "overlay", 0, layers.c_str()) != 0)
            GTEST_SKIP() << "there is no overlay here";
        EXPECT_EQ(outcome(overlay + "/item"), over(512, EXDEV));
        EXPECT_EQ(reason(overlay + "/item"), "“item” couldn’t be moved to the trash because it is in a lower "
                                             "layer of the file system, which can’t move it.");
        EXPECT_TRUE(isThere(overlay + "/item/file"));
        EXPECT_THAT(originalPaths(overlay + "/.Trash-" + std::to_string(geteuid())), IsEmpty());

        // A Trash that cannot be looked at now is there all the same.
        const std::string file = folder.makeFile("memory/file");
        const int last = open("/dev/null", O_RDONLY | O_CLOEXEC);
        rlimit usual{};
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit few{static_cast<rlim_t>(last) + 3, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        EXPECT_EQ(outcome(file), over(512, EMFILE));
        EXPECT_EQ(reason(file), "“file” couldn’t be moved to the trash because too many files are open.");
        setrlimit(RLIMIT_NOFILE, &usual);
    });
}

} // namespace brimvale
