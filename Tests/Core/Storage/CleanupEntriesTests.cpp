#include "Core/Storage/CleanupEntries.h"

#include "Core/Storage/CleanupCatalog.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <set>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using testing::TemporaryFolder;

std::vector<std::string> pathsOf(const std::vector<CleanupEntry> &entries) {
    std::vector<std::string> paths;
    for (const CleanupEntry &entry : entries)
        paths.push_back(entry.url.path());
    return paths;
}

std::vector<MeasuredItem> itemsOf(const std::vector<std::int64_t> &sizes) {
    std::vector<MeasuredItem> items;
    for (const std::int64_t size : sizes)
        items.push_back({.bytes = size});
    return items;
}

} // namespace

TEST(CleanupEntries, SortBySizeAndAreStable) {
    const std::vector<CleanupEntry> entries =
        CleanupEntries::measured({"/z", "/b", "/none", "/a", "/large", "/c"}, itemsOf({5, 9, 0, 5, 100, 5}));
    EXPECT_THAT(pathsOf(entries), ElementsAre("/large", "/b", "/z", "/a", "/c"));
    EXPECT_EQ(CleanupEntries::totalSize(entries), 124);
    EXPECT_THAT(pathsOf(CleanupEntries::measured({"/a", "/b"}, itemsOf({9'999'999, 10'000'000}), 10'000'000)),
                ElementsAre("/b"));
}

TEST(CleanupEntries, ListRootsOrTheirContents) {
    const TemporaryFolder folder;
    folder.makeFile("root/.hidden", 1);
    folder.makeFile("root/.DS_Store", 1);
    folder.makeFile("root/folder/below", 1);
    folder.makeLink("link", "root/folder");
    folder.makeLink("dangling", "nowhere");
    const std::vector<std::string> roots = {folder.path("missing"), folder.path("link"), folder.path("root"),
                                            folder.path("dangling"), folder.path("root/.hidden")};
    EXPECT_EQ(CleanupEntries::paths(roots, false), roots);
    EXPECT_THAT(CleanupEntries::paths(roots, true),
                ::testing::UnorderedElementsAre(folder.path("link/below"), folder.path("root/.hidden"),
                                                folder.path("root/folder")));
}

TEST(CleanupCatalog, DefinitionsFollowTheHome) {
    const auto definitions = [](const char *home) {
        return CleanupCatalog::definitions({System::macOS, FileURL(home), platformTools()});
    };
    EXPECT_EQ(definitions("/Users/a"), definitions("/Users/a/"));
    const std::vector<CleanupTarget> targets = definitions("/Users/a"), others = definitions("/Users/b");
    std::set<std::string> ids;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const CleanupTarget &target = targets[i];
        EXPECT_TRUE(ids.insert(target.id).second);
        EXPECT_TRUE(target.contentsOnly && target.entries.empty() && !target.scanned) << target.id;
        for (std::size_t root = 0; root < target.roots.size(); ++root) {
            const std::string &path = target.roots[root];
            EXPECT_TRUE(path.starts_with("/Users/a/") || path.starts_with("/Library/")) << path;
            EXPECT_EQ(path == others[i].roots[root], path.starts_with("/Library/"));
        }
    }
}

TEST(CleanupCatalog, TellsFoldersFromOtherItems) {
    const TemporaryFolder folder;
    folder.makeFile("root/folder/file", 9000);
    folder.makeFile("root/file", 5000);
    std::string way = "root/folder";
    while (way.size() < 200)
        way.insert(0, "./");
    folder.makeLink("link to a folder", way); // long enough to take space
    const Host mac{System::macOS, FileURL(folder.path()), platformTools()};
    CleanupTarget target = CleanupCatalog::definitions(mac).front();
    const auto rows = [&](const std::vector<std::string> &roots, bool contentsOnly) {
        target.roots = roots;
        target.contentsOnly = contentsOnly;
        std::vector<std::string> lines;
        for (const CleanupEntry &entry : CleanupCatalog::measure(target, {}, mac).entries)
            lines.push_back(std::string(entry.url.fileName()) + (entry.isFolder ? "/" : "") +
                            (entry.modified ? "" : " undated"));
        return lines;
    };
    EXPECT_THAT(rows({folder.path("root"), folder.path("missing")}, true), ElementsAre("folder/", "file"));
    EXPECT_THAT(rows({folder.path("missing"), folder.path("root")}, false), ElementsAre("root/"));
    for (const std::string &row : rows({folder.path()}, true))
        EXPECT_TRUE(row == "root/" || row == "link to a folder") << row;
}

TEST(CleanupCatalog, MeasuresNothingAfterCancel) {
    const TemporaryFolder folder;
    folder.makeFile("file", 5000);
    const Host mac{System::macOS, FileURL(folder.path()), platformTools()};
    CleanupTarget target = CleanupCatalog::definitions(mac).front();
    target.roots = {folder.path()};
    const StopFlag cancelled;
    EXPECT_FALSE(CleanupCatalog::measure(target, cancelled, mac).entries.empty());
    cancelled.set();
    EXPECT_TRUE(CleanupCatalog::measure(target, cancelled, mac).entries.empty());
}

} // namespace brimvale
