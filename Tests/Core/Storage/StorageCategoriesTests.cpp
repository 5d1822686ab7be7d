#include "Core/Storage/StorageCategories.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

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

} // namespace brimvale
