#include "Core/Backup/Archiver.h"
#include "Core/Backup/CopyVerdict.h"
#include "Core/Text/Formatting.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;

struct stat statusOf(const std::string &path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

std::string attributeOf(const std::string &path) {
    std::string value(100, '\0');
    const ssize_t size = getxattr(path.c_str(), "user.brimvale", value.data(), value.size());
    value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return value;
}

ArchiveResult archive(const TemporaryFolder &folder, const std::vector<FileURL> &items,
                      const std::string &root) {
    return Archiver::archive(items, "x", FileURL(root), {},
                             {System::linux, FileURL(folder.path()), platformTools()}, Date{});
}

} // namespace

TEST(Copy, KeepsModesTimesLinksHolesAndAttributes) {
    const TemporaryFolder folder;
    const std::string item = folder.makeFolder("item");
    const std::string file = folder.makeFile("item/file", 20'000);
    const std::string hole = folder.makeFile("item/hole");
    fs::create_hard_link(file, folder.path("item/again"));
    folder.makeLink("item/link", "../elsewhere");
    folder.makeFile("item/sub/\xFF\n", 10);
    ASSERT_EQ(truncate(hole.c_str(), 50'000'000), 0);
    const bool hasAttributes = setxattr(file.c_str(), "user.brimvale", "kept", 4, 0) == 0;
    fs::permissions(file, fs::perms(0751));
    fs::permissions(folder.path("item/sub"), fs::perms(0700));
    for (const char *path : {"item/file", "item/sub"})
        fs::last_write_time(folder.path(path), fs::file_time_type::clock::now() - std::chrono::hours(50));

    const ArchiveResult result = archive(folder, {FileURL(item)}, folder.path("to"));
    ASSERT_THAT(result.copied, ::testing::ElementsAre(FileURL(item)));
    EXPECT_THAT(result.differing, ::testing::IsEmpty());
    const auto copy = [&](const std::string &name) { return result.destination.appending(name).path(); };
    for (const char *path : {"item/file", "item/sub", "item/link", "item/sub/\xFF\n"}) {
        const struct stat before = statusOf(folder.path(path)), after = statusOf(copy(path));
        EXPECT_EQ(before.st_mode, after.st_mode) << path;
        EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec) << path;
        EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec) << path;
    }
    EXPECT_EQ(statusOf(copy("item/file")).st_ino, statusOf(copy("item/again")).st_ino);
    EXPECT_LT(statusOf(copy("item/hole")).st_blocks, 1000);
    EXPECT_EQ(attributeOf(copy("item/file")), hasAttributes ? "kept" : "");
    EXPECT_THAT(result.remarks, ::testing::IsEmpty());

    // A link that is an item is copied with all that belongs to it as well.
    const std::string link = folder.path("item/link");
    const ArchiveResult copied = archive(folder, {FileURL(link)}, folder.path("to another"));
    const struct stat before = statusOf(link), after = statusOf(copied.destination.appending("link").path());
    EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST(Copy, IsGoodWhereEveryByteIsThereWhateverRoomItTakes) {
    const TemporaryFolder folder;
    const FileURL item(folder.writeFile("item", std::string(1'000'000, '\0'))); // the copy has holes for it
    Host host{System::linux, FileURL(folder.path()), platformTools()};
    host.tools.copierOptions = {"-aT", "--sparse=always", "--"};
    const ArchiveResult good =
        Archiver::archive({item}, "x", FileURL(folder.path("Linux")), {}, host, Date{});
    ASSERT_THAT(good.copied, ::testing::ElementsAre(item));
    EXPECT_LT(good.items[0].copiedBytes, good.items[0].originalBytes / 2);
    EXPECT_FALSE(Archiver::isMismatched(good.items[0]));
    // The file system decides what room a file takes, whatever catalog is in use.
    host.system = System::macOS;
    EXPECT_THAT(Archiver::archive({item}, "x", FileURL(folder.path("macOS")), {}, host, Date{}).copied,
                ::testing::ElementsAre(item));
    // On a Mac the size is asked for too.
    EXPECT_EQ(CopyVerdict::failure(good.items[0], {}, {.words = {}, .bytesDecide = true}), std::nullopt);
    EXPECT_THAT(
        CopyVerdict::failure(good.items[0], {}, {.words = {}, .bytesDecide = false}).value_or(""),
        ::testing::StartsWith("The copy is " + Fmt::byteFormatter(good.items[0].copiedBytes) + " against"));
}

TEST(Copy, TellsWhichExtendedAttributesAreLost) {
    const TemporaryFolder folder;
    const FileURL item(folder.makeFolder("item"));
    const std::string file = folder.writeFile("item/file", "content");
    if (setxattr(file.c_str(), "user.brimvale", "kept", 4, 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    Host host{System::linux, FileURL(folder.path()), platformTools()};
    host.tools.copierOptions = {"-rT", "--preserve=mode,timestamps,links", "--"};
    const ArchiveResult result = Archiver::archive({item}, "x", FileURL(folder.path("to")), {}, host, Date{});
    EXPECT_THAT(result.copied, ::testing::ElementsAre(item));
    EXPECT_THAT(result.remarks, ::testing::ElementsAre("Extended attributes of “item/file” were lost."));
}

TEST(Copy, FullDiskFailsAndKeepsOriginals) {
    const TemporaryFolder folder;
    const std::string disk = folder.makeFolder("disk");
    const FileURL large(folder.makeFolder("large"));
    for (int i = 0; i < 30; ++i)
        folder.makeFile("large/" + std::to_string(i), 100'000);
    const FileURL small(folder.makeFile("small", 1000));
    testing::inChild([&] {
        if (!testing::ownMounts() || !testing::mountMemory(disk, 1 << 20))
            GTEST_SKIP() << "mounting is not permitted here";
        const ArchiveResult result = archive(folder, {large, small}, disk);
        EXPECT_EQ(result.failed.size(), 2U);
        EXPECT_TRUE(result.failed[0].second.starts_with("The copy is ")) << result.failed[0].second;
        EXPECT_THAT(result.failed[0].second, ::testing::HasSubstr(": No space left on device."));
        EXPECT_THAT(result.failed[0].second, ::testing::HasSubstr("“large/"));
        EXPECT_EQ(result.items.size(), 0U);
        EXPECT_FALSE(result.manifest);
        // Without the room for a manifest there is none, but no part of one either.
        for (const auto &entry : fs::directory_iterator(result.destination.path()))
            EXPECT_TRUE(entry.path().filename() == "large" || entry.path().filename() == "small") << entry;
    });
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(fs::file_size(folder.path("large/" + std::to_string(i))), 100'000U);
    EXPECT_EQ(fs::file_size(small.path()), 1000U);
}

} // namespace brimvale
