// Guarded folders keep being guarded, whatever link or mount a path leads through.

#include "Core/Removal/Remover.h"
#include "Platform/Host.h"
#include "Platform/MainBundle.h"
#include "Support/ChildProcess.h"
#include "Support/EnvironmentVariable.h"
#include "Support/OwnMounts.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::TemporaryFolder;

std::string reasonFor(const std::string &path) {
    return Remover::check(FileURL(path)).value_or("");
}

/// A home that the guards of this process, a child, know.
void enterHome(const TemporaryFolder &folder) {
    folder.makeFile("homes/u/Documents/paper");
    folder.makeFile("homes/u/.ssh/key");
    folder.makeFile("homes/u/.cache/program/data");
    setenv("HOME", folder.path("homes/u").c_str(), 1);
}

} // namespace

TEST(GuardedPlaces, AreFoundThroughLinks) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        folder.makeFolder("data/pictures");
        folder.makeLink("homes/u/Pictures", folder.path("data/pictures"));
        folder.makeLink("link", "homes");
        folder.makeLink("deep", "link/u");
        folder.makeLink("root", "/");
        const std::string home = folder.path("homes/u");
        for (const char *path : {"link/u", "link/u/Documents", "deep/Documents", "deep/.ssh"})
            EXPECT_THAT(reasonFor(folder.path(path)),
                        EndsWith(" is a structural directory and is never removed."))
                << path;
        EXPECT_EQ(reasonFor(folder.path("data/pictures")),
                  folder.path("data/pictures") + " is a structural directory and is never removed.");
        EXPECT_THAT(reasonFor(folder.path("root/usr/bin/env")),
                    EndsWith(" lives inside a protected system location."));
        EXPECT_NE(reasonFor(folder.path("root/usr")), "");
        EXPECT_EQ(reasonFor(folder.path("link/u/Documents/paper")), "");
        EXPECT_EQ(reasonFor(folder.path("deep/.cache/program")), "");
        EXPECT_EQ(reasonFor(folder.path("link")), "") << "the link itself";
    });
}

TEST(GuardedPlaces, AreFoundThroughBindMounts) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        for (const char *place : {"homes-again", "usr"})
            folder.makeFolder(place);
        if (!testing::ownMounts() ||
            !testing::mountAlsoAt(folder.path("homes"), folder.path("homes-again")) ||
            !testing::mountAlsoAt("/usr", folder.path("usr"), true))
            GTEST_SKIP() << "mounting is not permitted here";
        for (const char *path : {"homes-again/u", "homes-again/u/Documents", "homes-again/u/.ssh"})
            EXPECT_THAT(reasonFor(folder.path(path)),
                        EndsWith(" is a structural directory and is never removed."))
                << path;
        EXPECT_THAT(reasonFor(folder.path("usr/bin/env")),
                    EndsWith(" lives inside a protected system location."));
        EXPECT_EQ(reasonFor(folder.path("homes-again/u/.cache/program")), "");
    });
}

// The path and the folders on the way tell nothing of the place there.
TEST(GuardedPlaces, AreFoundThroughBindMountsDeepInside) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        folder.makeFile("data/inner/file");
        for (const char *place : {"deep", "root", "again"})
            folder.makeFolder(place);
        std::filesystem::path shown = "/usr/lib";
        std::vector<std::string> tops;
        for (const auto &entry : std::filesystem::directory_iterator("/"))
            tops.push_back(entry.path().filename());
        for (const auto &entry : std::filesystem::directory_iterator("/usr/share"))
            if (entry.is_directory() && !entry.is_symlink() && !std::filesystem::is_empty(entry.path()))
                shown = entry.path();
        if (!testing::ownMounts() || !testing::mountAlsoAt(shown, folder.path("deep"), true) ||
            !testing::mountAlsoAt("/", folder.path("root"), true) ||
            !testing::mountAlsoAt(folder.path("data/inner"), folder.path("again")))
            GTEST_SKIP() << "mounting is not permitted here";
        const std::string name = std::filesystem::directory_iterator(shown)->path().filename();
        EXPECT_EQ(reasonFor(folder.path("deep/" + name)),
                  (shown / name).native() + " lives inside a protected system location.");
        EXPECT_EQ(reasonFor(folder.path("again/file")), "");
        // Nothing beside the system's own folders goes through another mount of all of it either.
        for (const std::string &top : tops)
            EXPECT_NE(reasonFor(folder.path("root/" + top)), "") << top;
    });
}

TEST(GuardedPlaces, FoldersWithVolumesInsideStay) {
    testing::inChild([] {
        const TemporaryFolder folder;
        folder.makeFolder("item/inner/volume");
        folder.makeFolder("volume");
        if (!testing::ownMounts() || !testing::mountMemory(folder.path("item/inner/volume")) ||
            !testing::mountMemory(folder.path("volume")))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("item/inner/volume/kept");
        for (const RemovalMode mode : {RemovalMode::trash, RemovalMode::deleteNow}) {
            testing::RecordingActions actions;
            const RemovalResult result =
                Remover::remove(std::vector{FileURL(folder.path("item")), FileURL(folder.path("volume"))},
                                mode, nullptr, actions);
            EXPECT_THAT(actions.calls, ElementsAre());
            ASSERT_EQ(result.failed.size(), 2U);
            EXPECT_EQ(result.failed[0].reason, "“item” contains a mounted volume: " +
                                                   folder.path("item/inner/volume") + ". Eject it first.");
            EXPECT_EQ(result.failed[1].reason, "“volume” is a mounted volume. Eject it instead.");
        }
    });
}

// A deletion would stop at the subvolume, when other things are deleted already.
TEST(GuardedPlaces, FoldersWithSubvolumesInsideAreNotDeleted) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume"), item = volume + "/item";
        setenv("XDG_DATA_HOME", folder.path("data").c_str(), 1);
        if (!testing::ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        folder.makeFile("volume/item/a/first");
        folder.makeFile("volume/beside/file");
        // More than the system lists at once.
        for (int i = 0; i < 300; ++i)
            ASSERT_TRUE(testing::makeSubvolume(volume, "other " + std::to_string(i)));
        ASSERT_TRUE(testing::makeSubvolume(item + "/a", "sub"));
        folder.makeFile("volume/item/a/sub/kept");
        const std::vector<std::string> before = testing::listing(item);
        const std::vector<FileURL> items = {FileURL(item), FileURL(item + "/a/sub"),
                                            FileURL(volume + "/beside")};
        const std::vector<RemovalResult::Failure> refused = {
            {items[0], "“item” contains a Btrfs subvolume: " + items[1].path() +
                           ". Delete that with “btrfs subvolume delete” first."},
            {items[1], "“sub” is a Btrfs subvolume. Delete it with “btrfs subvolume delete” instead."}};
        testing::RecordingActions administrator;
        EXPECT_EQ(Remover::removeWithAdmin({items[0], items[1]}, administrator).failed, refused);
        EXPECT_THAT(administrator.calls, ElementsAre());
        const RemovalResult deleted = Remover::remove(items, RemovalMode::deleteNow);
        EXPECT_EQ(deleted.failed, refused);
        EXPECT_THAT(deleted.succeeded, ElementsAre(items[2]));
        EXPECT_EQ(testing::listing(item), before);

        // A rename takes it along.
        EXPECT_THAT(Remover::remove(std::vector{items[0]}, RemovalMode::trash).succeeded,
                    ElementsAre(items[0]));
        EXPECT_TRUE(testing::isThere(volume + "/.Trash-0/files/item/a/sub/kept"));
    });
}

// The tables of the kernel are those of a sample.
TEST(GuardedPlaces, WhatIsInUseStays) {
    testing::inChild([] {
        const TemporaryFolder folder;
        setenv("HOME", folder.makeFolder("u").c_str(), 1);
        for (const char *file : {"swaps/of mine/swapfile", "images/disk.img", "app/lib/library.so",
                                 "app/lib/data", "app/notes", "images/other.img"})
            folder.makeFile(file);
        std::filesystem::create_hard_link(folder.path("swaps/of mine/swapfile"), folder.path("second name"));
        folder.makeLink("images/link", "disk.img");
        const std::string &top = folder.path();
        folder.writeFile("root/proc/swaps",
                         "Filename\tType\tSize\tUsed\tPriority\n/dev/dm-1 partition\t1\t0\t-2\n" + top +
                             "/swaps/of\\040mine/swapfile  file\t\t1048572\t0\t-3\n");
        folder.writeFile("root/sys/block/loop7/loop/backing_file", top + "/images/disk.img\n");
        folder.writeFile("root/sys/block/sda/size", "1\n");
        folder.writeFile("root/proc/self/maps",
                         "7f00-7f10 r-xp 00001000 08:01 12  " + top +
                             "/app/lib/library.so\n7f10-7f20 r--p "
                             "00000000 08:01 13  " +
                             top + "/app/lib/data\n7f20-7f30 r-xp 00000000 00:00 0  [vdso]\n");
        Host::useRoot(folder.path("root"));
        EXPECT_EQ(reasonFor(top + "/swaps/of mine/swapfile"),
                  "“swapfile” is an active swap file. Turn it off first.");
        EXPECT_EQ(reasonFor(top + "/second name"),
                  "“second name” is an active swap file. Turn it off first.");
        EXPECT_EQ(reasonFor(top + "/swaps"), "“swaps” contains an active swap file: " + top +
                                                 "/swaps/of mine/swapfile. Turn it off first.");
        EXPECT_EQ(reasonFor(top + "/images/disk.img"),
                  "“disk.img” is a disk image that is in use. Eject it first.");
        EXPECT_EQ(reasonFor(top + "/app"),
                  "“app” contains a part of Brimvale, which is running: " + top + "/app/lib/library.so.");
        for (const char *free : {"/images/link", "/images/other.img", "/app/lib/data", "/app/notes"})
            EXPECT_EQ(reasonFor(top + free), "") << free;
        // This program itself is found in the true tables.
        const FileURL program = mainBundle().url;
        EXPECT_EQ(reasonFor(program.path()),
                  "“" + std::string(program.fileName()) + "” is a part of Brimvale, which is running.");
    });
}

TEST(GuardedPlaces, FoldersBesideHomesAndOfProgramsStay) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        const TemporaryFolder other;
        EXPECT_EQ(reasonFor(other.path()), "") << "beside it in a folder with other uses";
        for (const char *cache : {"/var/cache/apt", "/var/cache/ldconfig", "/var/log/apt"})
            if (testing::isThere(cache)) {
                EXPECT_NE(reasonFor(cache), "") << cache;
            }
        if (testing::isThere("/var/log/dpkg.log")) {
            EXPECT_EQ(reasonFor("/var/log/dpkg.log"), "");
        }
    });
}

// Moving it away would take the volume that is mounted from it along.
TEST(GuardedPlaces, MountedSubvolumesStayWhereTheWholeVolumeIsMountedToo) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume"), home = folder.makeFolder("home");
        if (!testing::ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        folder.makeFolder("volume/deep");
        ASSERT_TRUE(testing::makeSubvolume(volume + "/deep", "@home"));
        ASSERT_TRUE(testing::makeSubvolume(volume, "other"));
        ASSERT_TRUE(testing::mountAlsoAt(volume + "/deep/@home", home));
        EXPECT_EQ(reasonFor(volume + "/deep/@home"),
                  "“@home” is a Btrfs subvolume that is mounted as a volume. Eject it first.");
        EXPECT_EQ(reasonFor(volume + "/deep"),
                  "“deep” contains a Btrfs subvolume that is mounted as a volume: " + volume +
                      "/deep/@home. Eject it first.");
        EXPECT_EQ(reasonFor(volume + "/other"), "");
    });
}

TEST(GuardedPlaces, FilesWithAnotherMountedOverThemStay) {
    testing::inChild([] {
        const TemporaryFolder folder;
        folder.makeFile("item");
        folder.makeFile("over it");
        if (!testing::ownMounts() || !testing::mountAlsoAt(folder.path("over it"), folder.path("item")))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(reasonFor(folder.path("item")),
                  "“item” has something mounted over it. Unmount that first.");
    });
}

// The home of the account counts beside the one of the environment.
TEST(GuardedPlaces, HomesOfAccountsAreGuarded) {
    testing::inChild([] {
        const TemporaryFolder folder;
        setenv("HOME", folder.path().c_str(), 1);
        bool hasHome = false;
        for (const char *home : {"/root", "/home/user", "/var/roothome"})
            if (testing::isThere(home)) {
                hasHome = true;
                EXPECT_NE(reasonFor(home), "") << home;
            }
        EXPECT_TRUE(hasHome);
    });
}

} // namespace brimvale
