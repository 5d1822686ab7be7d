// Where samples are kept.

#include "Sample/SampleFolder.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

namespace brimvale {

namespace {

using testing::isThere;
using testing::TemporaryFolder;

FileURL prepared(const FileURL &folder, bool isNew = false) {
    const auto disk = sample::preparedSample(System::linux, folder, isNew);
    EXPECT_TRUE(std::holds_alternative<FileURL>(disk)) << std::get<std::string>(disk);
    return std::get<FileURL>(disk);
}

mode_t modeOf(const std::string &path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

} // namespace

TEST(SampleFolder, IsBuiltOnceAndAgainWhenItIsNotComplete) {
    const TemporaryFolder place;
    const FileURL folder(place.path("caches/samples"));
    const FileURL disk = prepared(folder);
    EXPECT_EQ(modeOf(folder.path()), 0700U);
    EXPECT_EQ(modeOf(disk.path()), 0700U);
    const std::string document = disk.path() + "/home/sam/Documents/Recipes.odt";
    std::filesystem::remove(document);
    EXPECT_EQ(prepared(folder), disk);
    EXPECT_FALSE(isThere(document)); // it is used as it is
    place.writeFile("caches/samples/linux.complete", "of an older version\n");
    prepared(folder);
    EXPECT_TRUE(isThere(document));
    std::filesystem::remove(document);
    prepared(folder, true);
    EXPECT_TRUE(isThere(document));

    place.makeFile("caches/samples/other");
    EXPECT_TRUE(sample::removeSamples(folder));
    EXPECT_FALSE(isThere(disk.path()));
    EXPECT_TRUE(isThere(place.path("caches/samples/other")));
    std::filesystem::remove(place.path("caches/samples/other"));
    EXPECT_FALSE(sample::removeSamples(folder));
    EXPECT_FALSE(isThere(folder.path()));
}

TEST(SampleFolder, RefusesAPlaceThatIsNotTheUsersAlone) {
    const TemporaryFolder place;
    place.makeFolder("open");
    std::filesystem::permissions(place.path("open"), std::filesystem::perms(0777));
    place.makeFolder("private");
    std::filesystem::permissions(place.path("private"), std::filesystem::perms(0700));
    place.makeLink("link", place.path("private"));
    place.makeFile("file");
    for (const char *name : {"open", "link", "file"}) {
        const FileURL folder(place.path(name));
        EXPECT_TRUE(std::holds_alternative<std::string>(sample::preparedSample(System::linux, folder, false)))
            << name;
        EXPECT_TRUE(sample::removeSamples(folder)) << name;
        EXPECT_TRUE(isThere(folder.path()));
    }
}

} // namespace brimvale
