#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/StorageFigures.h"

#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

/// A Mac that has nothing else.
Host macWith(const std::string &home) {
    return {System::macOS, FileURL(home), platformTools(), joinPath(home, "nothing")};
}

} // namespace

TEST(StorageCategories, SystemDataListsLargeUnclaimedFolders) {
    const TemporaryFolder folder;
    const std::string home = folder.path("Library");
    folder.makeFile("Library/Library/Large/file", 10'100'000);
    folder.makeFile("Library/Library/Small/file", 9'000'000);
    folder.makeFile("Library/.tool/file", 10'200'000);
    folder.makeFile("Library/Documents/file", 10'300'000);
    folder.makeFile("Library/.npm/file", 10'300'000);
    folder.makeFile("Library/.Trash/file", 10'300'000);
    WalkPool pool(2);
    std::vector<std::string> rows;
    for (const CleanupEntry &entry : StorageCategories::measureSystemDataEntries({}, macWith(home), pool))
        rows.push_back(entry.url.path());
    EXPECT_EQ(rows, (std::vector<std::string>{home + "/.tool", home + "/Library/Large"}));
}

TEST(StorageCategories, CountOnlyTheMeasuredVolume) {
    const TemporaryFolder folder;
    folder.makeFile("Documents/file", 70'000);
    folder.makeFile("Documents/folder/file", 9'000);
    const Host host = macWith(folder.path());
    WalkPool pool(2);
    const std::vector<StorageCategory> all = StorageCategories::all(host);
    const auto documents = std::find_if(all.begin(), all.end(),
                                        [](const StorageCategory &one) { return one.id == "documents"; });
    const auto measuredOn = [&](const FileURL &volume) {
        return StorageCategories::measure(*documents, {}, host, pool, volume);
    };
    const MeasuredCategory here = measuredOn(FileURL(folder.path()));
    EXPECT_GE(here.size, 79'000);
    EXPECT_FALSE(StorageFigures::elsewhereSentence(here));
    const MeasuredCategory elsewhere = measuredOn(FileURL("/dev"));
    EXPECT_EQ(elsewhere.size, 0);
    EXPECT_EQ(elsewhere.entries, here.entries) << "listed all the same";
    EXPECT_TRUE(StorageFigures::elsewhereSentence(elsewhere));
}

TEST(StorageCategories, TheTrashIsNotReachedThroughALink) {
    const TemporaryFolder folder;
    folder.makeFile("home/u/Documents/letter");
    folder.makeFile("home/u/.local/share/Trash/expunged/1");
    folder.makeLink("home/u/.local/share/Trash/files", folder.path("home/u/Documents"));
    const Host host{System::linux, FileURL(folder.path("home/u")), platformTools(), folder.path()};
    WalkPool pool(2);
    for (const StorageCategory &category : StorageCategories::all(host))
        if (category.id == "trash") {
            const MeasuredCategory trash = StorageCategories::measure(category, {}, host, pool);
            ASSERT_EQ(trash.entries.size(), 1U);
            EXPECT_EQ(trash.entries.front().url.path(), folder.path("home/u/.local/share/Trash/expunged/1"));
        }
}

TEST(StorageCategories, NoteWhatCouldNotBeRead) {
    testing::inChild([] {
        testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        folder.makeFile("Documents/open/file", 9'000);
        folder.makeFile("Documents/part/inner/closed/file", 9'000);
        folder.makeFile("Documents/whole/file", 9'000);
        folder.makeFile("Library/Small/closed/file", 9'000);
        const std::vector<std::string> closed = {folder.path("Documents/part/inner/closed"),
                                                 folder.path("Documents/whole"),
                                                 folder.path("Library/Small/closed")};
        for (const std::string &path : closed)
            std::filesystem::permissions(path, std::filesystem::perms::none);
        const Host host = macWith(folder.path());
        WalkPool pool(2);
        std::vector<std::string> incomplete;
        const auto systemData = StorageCategories::measureAll(
            StorageCategories::all(host),
            [&](const MeasuredCategory &one) {
                incomplete.insert(incomplete.end(), one.incomplete.begin(), one.incomplete.end());
            },
            {}, host, pool);
        EXPECT_THAT(incomplete, ::testing::UnorderedElementsAre(folder.path("Documents/part"),
                                                                folder.path("Documents/whole")));
        EXPECT_THAT(systemData.entries, ::testing::IsEmpty());
        EXPECT_THAT(systemData.incomplete, ::testing::ElementsAre(folder.path("Library/Small")));
        for (const std::string &path : closed)
            std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    });
}

} // namespace brimvale
