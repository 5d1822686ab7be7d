#include "Core/Duplicates/DuplicateSearch.h"
#include "Core/Duplicates/SpaceSharing.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

DuplicatesFound duplicatesIn(const std::string &folder) {
    DuplicateProgress progress;
    return findDuplicates({FileURL(folder)}, 1, ScanOptions{}, progress);
}

/// Makes a copy that shares all blocks.
void reflink(const std::string &original, const std::string &copy) {
    const int from = open(original.c_str(), O_RDONLY | O_CLOEXEC);
    const int to = open(copy.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_EQ(ioctl(to, FICLONE, from), 0);
    close(from);
    close(to);
}

struct stat statusOf(const std::string &path) {
    struct stat record {};
    EXPECT_EQ(stat(path.c_str(), &record), 0);
    return record;
}

/// The blocks in use, once everything is written out.
std::int64_t usedBytes(const std::string &folder) {
    sync();
    const auto space = std::filesystem::space(folder);
    return static_cast<std::int64_t>(space.capacity - space.free);
}

/// What has to hold on every file system that shares blocks.
void expectSharing(const TemporaryFolder &folder, const std::string &volume) {
    const std::string contents(4'000'000, 'x');
    const auto write = [&](const std::string &name) {
        return folder.writeFile(std::filesystem::path(volume).filename().string() + "/" + name, contents);
    };
    const std::string original = write("original");
    sync(); // before that its blocks have no place
    reflink(original, volume + "/shared");
    EXPECT_THAT(duplicatesIn(volume).groups, IsEmpty()) << "a copy that shares its blocks is none";

    const std::string copy = write("copy");
    sync();
    DuplicatesFound found = duplicatesIn(volume);
    ASSERT_THAT(found.groups, SizeIs(1));
    ASSERT_THAT(found.groups[0].files, SizeIs(3));
    EXPECT_EQ(found.groups[0].files[2].url.path(), copy) << "only this one may go";
    EXPECT_EQ(found.groups[0].removableBytes(), testing::allocatedBytes(copy));
    ASSERT_THAT(filesToShare(found.groups[0]), SizeIs(2));

    const std::int64_t before = usedBytes(volume);
    const struct stat earlier = statusOf(copy);
    const SpaceSharing done = shareSpace(found.groups, {});
    EXPECT_THAT(done.shared, ::testing::ElementsAre(FileURL(copy)));
    EXPECT_THAT(done.failed, IsEmpty());
    EXPECT_EQ(done.bytes, testing::allocatedBytes(copy));
    EXPECT_LE(usedBytes(volume), before - 3'500'000);
    EXPECT_EQ(testing::contentOf(copy), contents);
    const struct stat later = statusOf(copy);
    EXPECT_EQ(later.st_ino, earlier.st_ino);
    EXPECT_EQ(later.st_mtim.tv_sec, earlier.st_mtim.tv_sec);
    EXPECT_EQ(later.st_mtim.tv_nsec, earlier.st_mtim.tv_nsec);
    EXPECT_THAT(duplicatesIn(volume).groups, IsEmpty());

    // What has changed since the search is left alone, even if only its date says so.
    const std::string second = write("second");
    sync();
    found = duplicatesIn(volume);
    std::filesystem::last_write_time(second, std::filesystem::file_time_type::clock::now());
    EXPECT_THAT(shareSpace(found.groups, {}).failed, SizeIs(1));
}

void onFileSystem(const char *reason, const std::function<bool(const std::string &)> &mountAt) {
    testing::inChild([&] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume");
        if (!testing::ownMounts() || !mountAt(volume))
            GTEST_SKIP() << reason;
        expectSharing(folder, volume);
    });
}

} // namespace

TEST(SharedSpace, IsFoundAndMadeOnBtrfs) {
    onFileSystem("there is no Btrfs here", testing::mountBtrfs);
}

TEST(SharedSpace, IsFoundAndMadeOnXfs) {
    onFileSystem("there is no XFS here", testing::mountXfs);
}

TEST(SharedSpace, SubvolumesOfOneBtrfsShareIt) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume");
        if (!testing::ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        ASSERT_TRUE(testing::makeSubvolume(volume, "one"));
        folder.writeFile("volume/one/file", std::string(1'000'000, 'x'));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/one", volume, "working", false));
        sync();
        EXPECT_THAT(duplicatesIn(volume).groups, IsEmpty()) << "the snapshot has the same blocks";
        folder.writeFile("volume/copy", std::string(1'000'000, 'x'));
        sync();
        const DuplicatesFound found = duplicatesIn(volume);
        ASSERT_THAT(found.groups, SizeIs(1));
        EXPECT_THAT(shareSpace(found.groups, {}).shared, SizeIs(1));
        EXPECT_THAT(duplicatesIn(volume).groups, IsEmpty());
    });
}

TEST(SharedSpace, OneFileOnTwoMountsIsNoDuplicate) {
    testing::inChild([] {
        const TemporaryFolder folder;
        for (const char *name : {"lower", "upper", "work", "merged"})
            folder.makeFolder(name);
        folder.writeFile("upper/file", std::string(100'000, 'x'));
        const std::string layers = "lowerdir=" + folder.path("lower") + ",upperdir=" + folder.path("upper") +
                                   ",workdir=" + folder.path("work");
        if (!testing::ownMounts() || geteuid() != 0 ||
            mount("overlay", folder.path("merged").c_str(), "overlay", 0, layers.c_str()) != 0)
            GTEST_SKIP() << "there is no overlay here";
        ScanOptions options;
        options.crossesMountPoints = true;
        DuplicateProgress progress;
        EXPECT_THAT(findDuplicates({FileURL(folder.path())}, 1, options, progress).groups, IsEmpty());
        folder.writeFile("copy", std::string(100'000, 'x'));
        DuplicateProgress again;
        const DuplicatesFound found = findDuplicates({FileURL(folder.path())}, 1, options, again);
        ASSERT_THAT(found.groups, SizeIs(1));
        EXPECT_FALSE(found.groups[0].mayGo(0, 2) || found.groups[0].mayGo(1, 2))
            << "removing one removes both";
    });
}

} // namespace brimvale
