#include "Core/Removal/RemovalGuards.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/NodeExplanation.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"
#include "Platform/Mounts.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/OwnMounts.h"
#include "Support/ReferenceScan.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <gmock/gmock.h>
#include <limits>
#include <random>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

using testing::describe;
using testing::mountAlsoAt;
using testing::mountEndless;
using testing::mountMemory;
using testing::ownMounts;
using testing::referenceScan;
using testing::TemporaryFolder;

namespace {

/// Makes an empty file of that length.
void makeSparse(const TemporaryFolder &folder, const std::string &name, std::int64_t length) {
    ASSERT_EQ(truncate(folder.makeFile(name).c_str(), length), 0);
}

} // namespace

TEST(Mounts, ScanEntersOnlyMountsDirectlyInRoot) {
    const TemporaryFolder folder;
    folder.makeFile("disk/mount/under", 5000);
    folder.makeFile("disk/plain/file", 5000);
    folder.makeFolder("volume");
    folder.makeFolder("loop/inside");
    testing::inChild([&] {
        const std::string loop = folder.path("loop");
        const std::string inside = folder.path("loop/inside");
        if (!ownMounts() || !mountMemory(folder.path("disk/mount")) || !mountMemory(folder.path("volume")) ||
            !mountAlsoAt(loop, inside))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("disk/mount/on another device", 6000);
        folder.makeFile("volume/on its own device", 7000);
        folder.makeFile("loop/file", 5000);

        for (const bool crosses : {false, true}) {
            ScanOptions options;
            options.crossesMountPoints = crosses;
            ScanStats stats;
            const auto tree = DiskScanner::scan(folder.path(), options, stats);
            EXPECT_EQ(describe(*tree), describe(*referenceScan(folder.path(), options).root));
            // The file under the mount is hidden, the one in the loop is met once.
            EXPECT_EQ(tree->fileCount, crosses ? 4 : 3);
            const FSNode *mount = testing::descendant(*tree, {"disk", "mount"});
            EXPECT_EQ(mount->isOtherVolume(), !crosses);
            EXPECT_EQ(explanation(*mount).value_or(""),
                      crosses ? ""
                              : "Not scanned. Another volume is mounted here. Scan this folder by itself to "
                                "measure it.");
        }
        const auto size = [&](const char *inFolder) {
            return DiskScanner::quickSize(folder.path(inFolder), {});
        };
        EXPECT_EQ(size("disk"), size("disk/plain"));
        EXPECT_GT(size("volume"), 0);
        EXPECT_EQ(size("loop"), size("loop/file"));
    });
}

// Ancestors close to the start and deep ones are recognised in different ways.
TEST(Mounts, NoFolderIsEnteredWithinItselfAtAnyDepth) {
    const TemporaryFolder folder;
    testing::makeChain(folder.makeFolder("chain"), "d", 100);
    const auto at = [&](int depth) {
        std::string path = folder.path("chain");
        for (int i = 0; i < depth; ++i)
            path += "/d";
        return path;
    };
    testing::inChild([&] {
        if (!ownMounts() || !mountAlsoAt(at(5), at(90) + "/sibling") ||
            !mountAlsoAt(at(80), at(95) + "/sibling") || !mountAlsoAt(at(62), at(63) + "/sibling") ||
            !mountAlsoAt(at(97), at(70) + "/sibling")) // not an ancestor
            GTEST_SKIP() << "mounting is not permitted here";
        ScanOptions options;
        options.crossesMountPoints = true;
        ScanStats stats;
        const auto tree = DiskScanner::scan(folder.path(), options, stats);
        EXPECT_EQ(describe(*tree), describe(*referenceScan(folder.path(), options).root));
        EXPECT_EQ(tree->fileCount, 103);
    });
}

// A subvolume has a device of its own, but is no mount.
TEST(Mounts, SubvolumesBelongToTheirVolume) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume");
        if (!ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        ASSERT_TRUE(testing::makeSubvolume(folder.makeFolder("volume/home"), "sub"));
        ASSERT_TRUE(testing::makeSubvolume(volume, "top"));
        for (const char *file : {"volume/home/sub/deep/file", "volume/top/file"})
            folder.writeFile(file, std::string(2'000'000, 'x'));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/home/sub", volume + "/home", "snapshot"));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/top", volume, "snapshot"));
        syncFileSystem(volume);
        ScanStats stats;
        const auto tree = DiskScanner::scan(volume, {}, stats);
        EXPECT_EQ(tree->fileCount, 2);
        EXPECT_EQ(tree->size, 2 * DiskScanner::quickSize(volume + "/top", {}));
        EXPECT_GE(DiskScanner::quickSize(volume + "/home", {}), 2'000'000);
        const auto child = [](const FSNode &node, std::string_view name) {
            for (const auto &one : node.children())
                if (one->name == name)
                    return one.get();
            return static_cast<FSNode *>(nullptr);
        };
        const FSNode *home = child(*tree, "home");
        ASSERT_NE(home, nullptr);
        for (const FSNode *snapshot : {child(*tree, "snapshot"), child(*home, "snapshot")}) {
            ASSERT_NE(snapshot, nullptr);
            EXPECT_TRUE(snapshot->isNotDescended);
            EXPECT_EQ(snapshot->size, 0);
            EXPECT_EQ(explanation(*snapshot),
                      "Skipped. A read-only snapshot shares most of its files with the "
                      "folder that it was made of.");
        }
        // A scan of the snapshot itself is a scan like any other.
        EXPECT_GE(DiskScanner::scan(volume + "/snapshot", {}, stats)->size, 2'000'000);
    });
}

// Btrfs counts what was deleted only when it writes that out, up to half a minute later.
TEST(Mounts, FreeSpaceIncludesWhatWasDeletedAfterWaiting) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume");
        if (!ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        constexpr std::int64_t bytes = 30'000'000;
        std::string noise(bytes, ' ');
        std::generate(noise.begin(), noise.end(), std::minstd_rand());
        const std::string file = folder.writeFile("volume/file", noise);
        syncFileSystem(volume);
        const std::int64_t before = freeSpace(volume).value_or(0);
        ASSERT_EQ(unlink(file.c_str()), 0);
        EXPECT_TRUE(awaitFreeSpace(volume));
        EXPECT_GT(freeSpace(volume).value_or(0), before + bytes / 2);
        EXPECT_TRUE(mayShareBlocks({"/proc", file}));
        EXPECT_FALSE(mayShareBlocks({"/proc"}));
    });
}

// The scan would wait for ever if it asked for as much as the status of the dead ones.
TEST(Mounts, ScansLeaveOutWhatProgramsServe) {
    testing::inChild([] {
        const TemporaryFolder folder;
        folder.makeFile("disk/inner/file", 5000);
        const std::string inside = folder.makeFolder("disk/inner/dead"), top = folder.makeFolder("dead");
        setenv("HOME", folder.makeFolder("home").c_str(), 1);
        if (!ownMounts() || !testing::mountSilent(inside) || !testing::mountSilent(top))
            GTEST_SKIP() << "mounting is not permitted here";
        const ScanOptions options = ScanOptions::standard();
        ScanStats stats;
        const auto tree = DiskScanner::scan(folder.path(), options, stats);
        EXPECT_EQ(tree->fileCount, 1);
        ASSERT_EQ(tree->children().size(), 3U);
        const FSNode &dead = *tree->children().front(); // skipped ones come first
        EXPECT_EQ(dead.name, "dead");
        EXPECT_TRUE(dead.isNotDescended);
        EXPECT_EQ(explanation(dead), "Skipped. A program provides its files, which may be on another "
                                     "machine. Scan this folder by itself to measure it.");
        EXPECT_EQ(tree->dirCount(), 5);
        EXPECT_EQ(DiskScanner::quickSize(folder.path("disk"), options), 8192);
        EXPECT_EQ(DiskScanner::quickFigures(folder.path("disk"), options).entries, 4);
        SubtreeSizes::measure({{folder.path("disk"), inside}}, options, {},
                              [](std::size_t, const std::vector<MeasuredItem> &items) {
                                  EXPECT_EQ(items.at(0).bytes, 8192);
                                  EXPECT_EQ(items.at(1).bytes, 0);
                              });
    });
}

// Nested things that are measured together keep each to its own device, and one that is mounted within itself
// is entered where its own walk would enter it.
TEST(Mounts, SubtreeSizesStayOnTheirDevice) {
    const TemporaryFolder folder;
    for (const char *name : {"a/file", "a/x/file", "a/x/b/file", "a/x/b/c/file", "other/deep/file"})
        folder.makeFile(name, 5000);
    for (const char *name : {"a/x/b/c/loop", "a/disk/inner", "a/twin", "a/x/self"})
        folder.makeFolder(name);
    testing::inChild([&] {
        if (!ownMounts() || !mountMemory(folder.path("a/disk")) ||
            !mountAlsoAt(folder.path("a"), folder.path("a/x/b/c/loop")) ||
            !mountAlsoAt(folder.path("other"), folder.path("a/twin")) ||
            !mountAlsoAt(folder.path("a/x"), folder.path("a/x/self")))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("a/disk/inner/on another device", 9000);
        folder.makeFolder("a/disk/back");
        if (!mountAlsoAt(folder.path("a/x/b"), folder.path("a/disk/back")))
            GTEST_SKIP() << "mounting is not permitted here";
        SubtreeSizes::Group all;
        for (const char *name :
             {"a", "a/x", "a/x/b", "a/x/b/c", "a/x/b/c/loop", "a/x/b/c/loop/x", "a/twin", "a/twin/deep",
              "a/disk", "a/disk/inner", "a/disk/back", "a/disk/back/c", "a/x/self", "a/x/self/b"})
            all.push_back(folder.path(name));
        for (std::size_t without = 0; without <= all.size(); ++without) {
            SubtreeSizes::Group some = all;
            if (without < all.size())
                some.erase(some.begin() + static_cast<std::ptrdiff_t>(without));
            std::vector<std::int64_t> alone;
            for (const std::string &path : some)
                alone.push_back(DiskScanner::quickSize(path, {}));
            for (const int workers : {0, 5}) {
                WalkPool pool(workers);
                SubtreeSizes::measure(
                    {some}, {}, {},
                    [&](std::size_t, const std::vector<MeasuredItem> &items) {
                        for (std::size_t i = 0; i < alone.size(); ++i)
                            EXPECT_EQ(items.at(i).bytes, alone[i]) << some[i];
                    },
                    pool);
            }
        }
    });
}

// A mount stands here for a file system that takes no heed of case: the same folder under two spellings.
TEST(Mounts, GuardsCoverOtherSpellingsOfAFolder) {
    const TemporaryFolder folder;
    for (const char *name : {"u/Documents/inner", "u/documents", "u/Music/MOVIES", "u/Movies", "u/LIBRARY",
                             "u/Library/Caches/app", "u/music"})
        folder.makeFolder(name);
    const std::string answer = testing::answerOfChild([&]() -> std::string {
        if (!ownMounts() || !mountAlsoAt(folder.path("u/Documents"), folder.path("u/documents")) ||
            !mountAlsoAt(folder.path("u/Library"), folder.path("u/LIBRARY")))
            return "not permitted";
        const RemovalGuards guards({System::macOS, FileURL(folder.path("u")), {}});
        for (const char *kept : {"u/Documents", "u/documents", "u/LIBRARY", "u/LIBRARY/Caches"})
            EXPECT_EQ(guards.check(FileURL(folder.path(kept))),
                      folder.path(kept) + " is a structural directory and is never removed.");
        for (const char *admitted :
             {"u/documents/inner", "u/LIBRARY/Caches/app", "u/music", "u/Music/MOVIES"})
            EXPECT_EQ(guards.check(FileURL(folder.path(admitted))), std::nullopt) << admitted;
        return ::testing::Test::HasFailure() ? "failed" : "passed";
    });
    if (answer == "not permitted")
        GTEST_SKIP() << "mounting is not permitted here";
    EXPECT_EQ(answer, "passed");
}

TEST(Mounts, PseudoMountsAreListedAndSkipped) {
    const std::vector<std::string> points = pseudoMountPoints();
    EXPECT_THAT(points, ::testing::Contains("/proc"));
    EXPECT_THAT(points, ::testing::Not(::testing::Contains("/")));
    // Skipped by name or by kind, whatever is mounted there.
    const PathSet skipped = ScanOptions::defaultSkippedPaths({System::linux, FileURL("/home/u"), {}});
    for (const char *path : {"/proc", "/sys", "/dev", "/run"})
        EXPECT_TRUE(skipped.contains(path)) << path;
}

TEST(Mounts, PseudoMountIsHiddenByAMountOverIt) {
    const TemporaryFolder folder;
    const std::string trigger = folder.makeFolder("trigger");
    testing::inChild([&] {
        if (!ownMounts() || mount("none", trigger.c_str(), "devpts", 0, "newinstance") != 0)
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_THAT(pseudoMountPoints(), ::testing::Contains(trigger));
        // As an automount does it when somebody comes by.
        if (!mountMemory(trigger))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_THAT(pseudoMountPoints(), ::testing::Not(::testing::Contains(trigger)));
    });
}

TEST(Mounts, ScanOfEndlessFolderCanBeStopped) {
    const TemporaryFolder folder;
    const std::string root = folder.makeFolder("root");
    testing::inChild([&] {
        if (!ownMounts() || !mountEndless(root))
            GTEST_SKIP() << "mounting is not permitted here";
        alarm(60);
        EXPECT_EQ(DiskScanner::quickSize(root + "/file 7", {}), 0);
        ScanOptions options;
        options.skippedPaths = {root + "/file 900", root + "/file 100000000"};
        ScanStats stats;
        std::thread user([&] {
            while (stats.unreadable() < 100)
                std::this_thread::yield();
            stats.cancel();
        });
        const auto tree = DiskScanner::scan(root, options, stats);
        user.join();
        EXPECT_GE(tree->children().size(), 100U);
        EXPECT_EQ(tree->size, 0);

        // Cancelled at once, it only shows what is skipped, unless that is far away.
        const auto skipped = DiskScanner::scan(root, options, stats);
        ASSERT_EQ(skipped->children().size(), 1U);
        EXPECT_EQ(skipped->children().front()->name, "file 900");
    });
}

// Anyone can make empty files whose lengths no 64 bits can add up.
TEST(Mounts, LengthsThatNoVolumeHoldsAreUnreadable) {
    const TemporaryFolder folder;
    folder.makeFolder("memory");
    testing::inChild([&] {
        if (!ownMounts() || !mountMemory(folder.path("memory")))
            GTEST_SKIP() << "mounting is not permitted here";
        constexpr std::int64_t longest = std::numeric_limits<std::int64_t>::max();
        for (const char *name : {"memory/a", "memory/b", "memory/sub/a", "memory/sub/b", "memory/sub/c"})
            makeSparse(folder, name, longest);
        folder.makeFile("memory/sub/file", 5000);
        for (const int workers : {0, 3}) {
            WalkPool pool(workers);
            ScanStats stats;
            const auto tree = DiskScanner::scan(folder.path("memory"), {}, stats, pool);
            EXPECT_EQ(stats.unreadable(), 5);
            EXPECT_EQ(tree->fileCount, 1);
            EXPECT_EQ(tree->logicalSize, 5000);
            EXPECT_EQ(tree->children().size(), 3U);
            for (const auto &child : tree->children())
                EXPECT_TRUE(child->unreadable) << child->path();
        }
        const auto same = DiskScanner::scan(folder.path("memory/a"), {}, *std::make_unique<ScanStats>());
        EXPECT_TRUE(same->unreadable && same->logicalSize == 0);

        // Each of these is possible alone.
        for (int i = 0; i < 200; ++i)
            makeSparse(folder, "memory/many/" + std::to_string(i % 3) + "/" + std::to_string(i),
                       mostBelievedBytes / 2);
        ScanStats stats;
        const auto many = DiskScanner::scan(folder.path("memory/many"), {}, stats);
        EXPECT_EQ(many->fileCount, 2);
        EXPECT_EQ(many->logicalSize, mostBelievedBytes);
        EXPECT_EQ(stats.unreadable(), 198);
        EXPECT_EQ(DiskScanner::quickSize(folder.path("memory"), {}),
                  DiskScanner::quickSize(folder.path("memory/sub/file"), {}));
    });
}

TEST(Mounts, UnreadableTableIsEmpty) {
    testing::inChild([] {
        // At its beginning, the memory of a process cannot be read.
        if (!ownMounts() || !mountAlsoAt("/proc/self/mem", "/proc/self/mountinfo"))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_TRUE(pseudoMountPoints().empty());
        EXPECT_FALSE(ScanOptions::standard().skippedPaths.empty());
    });
}

} // namespace brimvale
