#include "Core/CleanupEntries.h"

#include "Core/CleanupCatalog.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
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

} // namespace

TEST(CleanupEntries, KeepTheLargestFirstAndTheirOrderWhereEqual) {
    const std::vector<CleanupEntry> entries =
        CleanupEntries::measured({"/z", "/b", "/none", "/a", "/large", "/c"}, {5, 9, 0, 5, 100, 5});
    EXPECT_THAT(pathsOf(entries), ElementsAre("/large", "/b", "/z", "/a", "/c"));
    EXPECT_FALSE(entries.front().modified) << "what is gone has no date";
    EXPECT_EQ(CleanupEntries::totalSize(entries), 124);
    EXPECT_THAT(pathsOf(CleanupEntries::measured({"/a", "/b"}, {9'999'999, 10'000'000}, 10'000'000)),
                ElementsAre("/b"));
}

TEST(CleanupEntries, ComeFromRootsAsFarAsTheyExist) {
    const TemporaryFolder folder;
    folder.makeFile("root/.hidden", 1);
    folder.makeFile("root/.DS_Store", 1);
    folder.makeFile("root/folder/below", 1);
    folder.makeLink("link", "root/folder");
    folder.makeLink("dangling", "nowhere");
    const std::vector<std::string> roots = {folder.path("missing"), folder.path("link"), folder.path("root"),
                                            folder.path("dangling"), folder.path("root/.hidden")};
    EXPECT_THAT(CleanupEntries::paths(roots, false),
                ElementsAre(folder.path("link"), folder.path("root"), folder.path("root/.hidden")));
    EXPECT_THAT(CleanupEntries::paths(roots, true),
                ::testing::UnorderedElementsAre(folder.path("link/below"), folder.path("root/.hidden"),
                                                folder.path("root/folder")));
}

TEST(CleanupCatalog, IsMadeAfreshForEachHome) {
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
    EXPECT_EQ(ids.size(), 15U);
}

TEST(CleanupCatalog, TellsEveryTargetOnceEvenIfCancelled) {
    const TemporaryFolder home;
    for (int i = 0; i < 50; ++i)
        home.makeFile("Library/Caches/app " + std::to_string(i) + "/file", 5000);
    const Host host{System::macOS, home.path().empty() ? FileURL("/") : FileURL(home.path()),
                    platformTools()};
    const std::vector<CleanupTarget> targets = CleanupCatalog::definitions(host);
    for (const int patience : {0, 10, 1'000'000}) {
        WalkPool pool(3);
        std::atomic<int> left = patience;
        std::vector<std::string> told;
        std::size_t entries = 0;
        CleanupCatalog::measureAll(
            targets,
            [&](const CleanupTarget &target) {
                EXPECT_TRUE(target.scanned);
                told.push_back(target.id);
                entries += target.entries.size();
            },
            [&] { return --left < 0; }, host, pool);
        EXPECT_EQ(std::set<std::string>(told.begin(), told.end()).size(), targets.size());
        EXPECT_EQ(told.size(), targets.size());
        EXPECT_LE(entries, patience == 0 ? 0U : 50U);
        EXPECT_TRUE(patience < 1000 || entries == 50);
    }
}

} // namespace brimvale
