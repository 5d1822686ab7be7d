#include "Core/Scan/SubtreeSizes.h"

#include "Core/Scan/DiskScanner.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <sys/stat.h>

namespace brimvale {

namespace {

using SubtreeSizes::Group;
using testing::TemporaryFolder;

using Sizes = std::vector<std::vector<std::int64_t>>;

/// What is told for the groups. Checks that each is told once. Cancels when the group `last` is told.
Sizes measured(const std::vector<Group> &groups, const ScanOptions &options, int workers,
               std::optional<std::size_t> last = std::nullopt) {
    WalkPool pool(workers);
    Sizes sizes(groups.size());
    std::vector<int> told(groups.size());
    const StopFlag cancelled;
    SubtreeSizes::measure(
        groups, options, cancelled,
        [&](std::size_t group, const std::vector<MeasuredItem> &items) {
            ++told[group];
            for (const MeasuredItem &item : items)
                sizes[group].push_back(item.bytes);
            if (group == last)
                cancelled.set();
        },
        pool);
    EXPECT_EQ(told, std::vector<int>(groups.size(), 1));
    return sizes;
}

Sizes eachAlone(const std::vector<Group> &groups, const ScanOptions &options) {
    WalkPool pool(0);
    Sizes sizes;
    for (const Group &group : groups) {
        sizes.emplace_back();
        for (const std::string &path : group)
            sizes.back().push_back(DiskScanner::quickSize(path, options, {}, pool));
    }
    return sizes;
}

/// Every path in a folder that is short enough to be named at once.
std::vector<std::string> pathsIn(const std::string &folder) {
    std::vector<std::string> paths{folder};
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator
             entry(folder, std::filesystem::directory_options::skip_permission_denied, error),
         end;
         !error && entry != end; entry.increment(error)) {
        paths.push_back(entry->path().native());
        if (entry.depth() > 40)
            entry.disable_recursion_pending();
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// Paths at random in groups at random: nested, repeated, missing, in other spellings.
std::vector<Group> randomGroups(const std::vector<std::string> &paths, std::mt19937 &engine) {
    const auto below = [&](std::size_t limit) { return engine() % limit; };
    std::vector<Group> groups(1 + below(8));
    for (std::size_t i = below(60); i > 0; --i) {
        std::string path = paths[below(paths.size())];
        switch (below(12)) {
        case 0:
            path += "/missing";
            break;
        case 1:
            path += "/.";
            break;
        case 2:
            path = std::filesystem::path(path).parent_path().native();
            break;
        default:
            break;
        }
        groups[below(groups.size())].push_back(path);
    }
    return groups;
}

void expectAsAlone(const TemporaryFolder &folder, unsigned seed) {
    std::mt19937 engine(seed);
    const std::vector<std::string> paths = pathsIn(folder.path());
    for (int round = 0; round < 8; ++round) {
        const std::vector<Group> groups = randomGroups(paths, engine);
        ScanOptions options;
        for (std::size_t i = engine() % 4; i > 0; --i)
            options.skippedPaths.insert(paths[engine() % paths.size()]);
        const Sizes expected = eachAlone(groups, options);
        for (const int workers : {0, 3, 15})
            EXPECT_EQ(measured(groups, options, workers), expected)
                << "seed " << seed << " round " << round << " workers " << workers;
    }
}

} // namespace

TEST(SubtreeSizes, MatchQuickSizeOfEachPath) {
    for (const unsigned seed : {1U, 2U}) {
        const TemporaryFolder folder;
        testing::makeHostileTree(folder, seed, true);
        expectAsAlone(folder, seed);
    }
}

TEST(SubtreeSizes, MatchQuickSizeWithUnreadableFolders) {
    const TemporaryFolder folder;
    testing::makeHostileTree(folder, 4, true);
    folder.makeFile("closed/inside/deeper/file", 5000);
    folder.makeFile("through/inside/deeper/file", 5000);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    chmod(folder.path("closed").c_str(), 0000);
    // What lies inside can be measured, but no walk from outside finds it.
    chmod(folder.path("through").c_str(), 0111);
    testing::inChild([&] {
        testing::becomeOrdinaryUser();
        expectAsAlone(folder, 4);
        const std::vector<Group> groups = {{folder.path(), folder.path("closed"), folder.path("through")},
                                           {folder.path("through/inside"), folder.path("closed/inside")}};
        const Sizes sizes = measured(groups, {}, 3);
        EXPECT_EQ(sizes, eachAlone(groups, {}));
        EXPECT_GT(sizes[1][0], sizes[0][2]);
    });
}

TEST(SubtreeSizes, DoNotFollowLinks) {
    const TemporaryFolder folder;
    folder.makeFile("real/inside/file", 5000);
    folder.makeFile("outer/file", 5000);
    folder.makeLink("outer/link", "../real");
    const std::vector<Group> groups = {{folder.path("outer"), folder.path("outer/link")},
                                       {folder.path("outer/link/inside"), folder.path("real")}};
    const Sizes sizes = measured(groups, {}, 0);
    EXPECT_EQ(sizes, eachAlone(groups, {}));
    EXPECT_GT(sizes[1][0], 0);
}

TEST(SubtreeSizes, ReportEachGroupWhenDone) {
    const TemporaryFolder folder;
    folder.makeFile("outer/first/file", 5000);
    folder.makeFile("outer/inner/file", 5000);
    const std::vector<Group> groups = {
        {folder.path("outer")}, {}, {folder.path("outer/inner")}, {folder.path("outer/first/file")}};
    WalkPool pool(0);
    std::vector<std::size_t> order;
    SubtreeSizes::measure(
        groups, {}, {}, [&](std::size_t group, const auto &) { order.push_back(group); }, pool);
    // What takes no walk comes first, what others are part of last.
    EXPECT_EQ(order, (std::vector<std::size_t>{1, 3, 2, 0}));
    const Sizes sizes = measured(groups, {}, 0, 3);
    EXPECT_GT(sizes[3][0], 0);
    EXPECT_EQ(sizes[2][0] + sizes[0][0], 0) << "a file is told before anything is walked";
}

TEST(SubtreeSizes, CancelGivesPartialSizes) {
    const TemporaryFolder folder;
    testing::makeHostileTree(folder, 7, true);
    const std::vector<std::string> paths = pathsIn(folder.path());
    std::mt19937 engine(7);
    for (int round = 0; round < 30; ++round) {
        const std::vector<Group> groups = randomGroups(paths, engine);
        const Sizes whole = eachAlone(groups, {});
        for (const int workers : {0, 7}) {
            const Sizes partial = measured(groups, {}, workers, engine() % groups.size());
            for (std::size_t i = 0; i < groups.size(); ++i)
                for (std::size_t j = 0; j < groups[i].size(); ++j)
                    EXPECT_LE(partial[i][j], whole[i][j]);
        }
    }
}

} // namespace brimvale
