#include "Core/Scan/DiskScanner.h"

#include "Catalogs/Words.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/ReferenceScan.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace brimvale {

namespace {

using testing::describe;
using testing::makeChain;
using testing::makeHostileTree;
using testing::ReferenceScan;
using testing::referenceScan;
using testing::TemporaryFolder;

ScanOptions optionsFor(std::int64_t minimumNodeSize) {
    ScanOptions options;
    options.minimumNodeSize = minimumNodeSize;
    return options;
}

// Each with a pool of its own: no thread of it is left when a later test forks.

std::unique_ptr<FSNode> scan(const std::string &path, const ScanOptions &options = {}) {
    WalkPool pool(3);
    ScanStats stats;
    return DiskScanner::scan(path, options, stats, pool);
}

std::int64_t quickSize(const std::string &path, const ScanOptions &options = {},
                       const StopFlag &cancelled = {}) {
    WalkPool pool(3);
    return DiskScanner::quickSize(path, options, cancelled, pool);
}

FSNode &childOf(FSNode &node, std::string_view name) {
    return *testing::descendant(node, {name});
}

/// Compares a scan by `workers` workers with the sequential reference, figures, flags and order.
void expectLikeReference(const std::string &path, const ScanOptions &options, int workers) {
    WalkPool pool(workers);
    ScanStats stats;
    const auto tree = DiskScanner::scan(path, options, stats, pool);
    const ReferenceScan reference = referenceScan(path, options);
    EXPECT_EQ(describe(*tree), describe(*reference.root)) << workers << " workers";
    EXPECT_EQ(stats.files(), reference.files);
    EXPECT_EQ(stats.bytes(), reference.bytes);
    EXPECT_EQ(stats.unreadable(), reference.unreadable);
}

/// Whether every folder of the tree has the mark of an incomplete size exactly if it holds one of the items.
void expectMarksFor(const std::vector<UnreadableItem> &items, FSNode &root) {
    for (const FSNode *node : testing::everythingBeneath(root)) {
        const std::string path = node->path();
        const bool holdsOne = std::any_of(items.begin(), items.end(), [&](const UnreadableItem &item) {
            return item.path == path || item.path.starts_with(path + "/");
        });
        EXPECT_EQ(node->isAtLeast(), holdsOne && node->isDirectory) << path;
    }
}

} // namespace

TEST(DiskScanner, ScanMatchesSequentialReference) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const TemporaryFolder folder;
        makeHostileTree(folder, seed, false);
        for (const int workers : {0, 1, 3, 15})
            expectLikeReference(folder.path(), optionsFor(8192), workers);
    }
}

TEST(DiskScanner, MarksUnreadableFolders) {
    const TemporaryFolder folder;
    folder.makeFile("a/locked/hidden", 10);
    folder.makeFile("a/later/file", 10);
    folder.makeFile("b/names only/unknown 1");
    folder.makeFile("b/names only/unknown 2");
    folder.makeFile("top/file");
    makeHostileTree(folder, 4, false);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    chmod(folder.path("a/locked").c_str(), 0000);
    chmod(folder.path("b/names only").c_str(), 0444);
    chmod(folder.path("top").c_str(), 0000);

    testing::inChild([&] {
        testing::becomeOrdinaryUser();
        // A user without rights over the tree meets the closed folders and every locked one of the
        // hostile tree.
        for (const int workers : {0, 7})
            expectLikeReference(folder.path(), optionsFor(8192), workers);

        WalkPool pool(3);
        ScanStats stats;
        const auto tree = DiskScanner::scan(folder.path(), {}, stats, pool);
        const std::vector<UnreadableItem> items = stats.unreadableItems().listed();
        EXPECT_EQ(static_cast<std::int64_t>(items.size()), stats.unreadable());
        for (const char *path : {"a/locked", "b/names only/unknown 2", "top"})
            EXPECT_TRUE(std::find(items.begin(), items.end(), UnreadableItem{folder.path(path), EACCES}) !=
                        items.end())
                << path;
        EXPECT_TRUE(tree->isAtLeast());
        expectMarksFor(items, *tree);
    });
}

TEST(DiskScanner, ListsTheFirstItemsThatCouldNotBeRead) {
    UnreadableItems items;
    for (std::size_t i = 0; i < UnreadableItems::mostListed + 5; ++i)
        items.add("/a/" + std::to_string(i), EIO);
    EXPECT_EQ(items.count(), static_cast<std::int64_t>(UnreadableItems::mostListed) + 5);
    EXPECT_EQ(items.listed().size(), UnreadableItems::mostListed);
    EXPECT_TRUE(items.reachInto("/b")) << "the others may be there";
    items.dropWithin("/a/1");
    EXPECT_EQ(items.listed().size(), UnreadableItems::mostListed - 1) << "/a/10 is no part of it";
    UnreadableItems more;
    more.add("/a/1", EACCES);
    items.add(more);
    EXPECT_EQ(items.count(), static_cast<std::int64_t>(UnreadableItems::mostListed) + 5)
        << "scanned again, and still there";
    items.dropWithin("/a");
    EXPECT_TRUE(items.reachInto("/b"));

    UnreadableItems few;
    few.add("/a/1", EIO);
    few.add("/c", EACCES);
    few.dropWithin("/a");
    EXPECT_EQ(few.count(), 1);
    more.add(few);
    EXPECT_EQ(more.count(), 2);
    more.dropWithin("/a");
    EXPECT_FALSE(more.reachInto("/a"));
    EXPECT_EQ(reasonFor(more.listed().front()), "You don’t have permission to access it");
}

TEST(DiskScanner, ShowsTheEntriesOfTheRootWhileItRuns) {
    const TemporaryFolder folder;
    makeHostileTree(folder, 6, false);
    for (int i = 0; i < 30; ++i)
        folder.makeFile("folder " + std::to_string(i % 5) + "/" + std::to_string(i), 3000);
    folder.makeFile("file", 70'000);
    WalkPool pool(3);
    ScanStats stats;
    const auto tree = DiskScanner::scan(folder.path(), {}, stats, pool);
    const std::vector<GrowingRow> rows = stats.growing().rows();
    EXPECT_EQ(rows.size(), tree->children().size());
    for (const GrowingRow &row : rows) {
        const FSNode &node = childOf(*tree, row.name);
        EXPECT_EQ(row, (GrowingRow{row.name, node.isDirectory, true, node.size, node.fileCount}));
    }
}

TEST(DiskScanner, CountsHardLinksOnce) {
    const TemporaryFolder folder;
    makeHostileTree(folder, 5, true);
    const std::string file = folder.makeFile("one/file", 50'000);
    for (int i = 0; i < 20; ++i)
        std::filesystem::create_hard_link(file, folder.makeFolder("names " + std::to_string(i)) + "/name");
    const ReferenceScan reference = referenceScan(folder.path(), {});
    for (const int workers : {0, 15}) {
        WalkPool pool(workers);
        ScanStats stats;
        const auto tree = DiskScanner::scan(folder.path(), {}, stats, pool);
        EXPECT_EQ(tree->size, reference.root->size);
        EXPECT_EQ(tree->logicalSize, reference.root->logicalSize);
        EXPECT_EQ(tree->fileCount, reference.root->fileCount);
        EXPECT_EQ(stats.bytes(), reference.bytes);
    }
    // Right in the scan root every name counts.
    const TemporaryFolder flat;
    std::filesystem::create_hard_link(flat.makeFile("a", 5000), flat.path("b"));
    EXPECT_EQ(scan(flat.path())->fileCount, 2);
}

// Else two scans of the same files would show changes.
TEST(DiskScanner, TheFirstNameByPathCounts) {
    const TemporaryFolder folder;
    folder.makeFile("b/1/alone", 2000);
    for (const char *other : {"b/2", "c/deep/er", "e"})
        folder.makeFolder(other);
    for (int i = 0; i < 300; ++i) {
        const std::string name = "name " + std::to_string(i);
        const std::string file = folder.makeFile("d/" + name, i % 3 == 0 ? 2'000'000 : 1000 + i);
        for (const char *other : {"b/2/", "c/deep/er/", "b/1/", "e/", "b/1/z "})
            std::filesystem::create_hard_link(file, folder.path(other + name));
    }
    std::vector<std::string> scans;
    for (const int workers : {0, 1, 15, 15, 15, 15}) {
        WalkPool pool(workers);
        ScanStats stats;
        ScanOptions options;
        options.moment = now();
        const auto tree = DiskScanner::scan(folder.path(), options, stats, pool);
        EXPECT_EQ(stats.files(), 301);
        const FSNode &counted = childOf(childOf(*tree, "b"), "1");
        EXPECT_EQ(counted.fileCount, 301);
        EXPECT_EQ(counted.size, tree->size);
        ASSERT_EQ(counted.children().size(), 101U);
        const FSNode &small = *counted.children().back();
        EXPECT_TRUE(small.isAggregate);
        EXPECT_EQ(small.fileCount, 201);
        EXPECT_EQ(small.largestSmallFiles().size(), 201U);
        EXPECT_FALSE(std::string_view(small.largestSmallFiles().front()->name).starts_with("z"));
        EXPECT_TRUE(childOf(*tree, "e").hasLinkedFiles);
        tree->sortRecursively();
        scans.push_back(describe(*tree));
    }
    for (const std::string &one : scans)
        EXPECT_EQ(one, scans.front());
}

TEST(DiskScanner, TellsWhatDeletingFrees) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("item/file", 50'000);
    const std::string twice = folder.makeFile("item/sub/twice", 40'000);
    const std::string linked = folder.makeFile("outside", 30'000);
    std::filesystem::create_hard_link(twice, folder.path("item/again"));
    std::filesystem::create_hard_link(linked, folder.path("item/linked"));
    const auto sizeOf = [](const std::string &path) { return fileStatus(path)->allocatedBytes; };
    for (const int workers : {0, 3}) {
        WalkPool pool(workers);
        const DiskScanner::QuickFigures figures =
            DiskScanner::quickFigures(folder.path("item"), {}, StopFlag(), pool);
        EXPECT_EQ(figures.bytes, sizeOf(file) + 2 * sizeOf(twice) + sizeOf(linked));
        EXPECT_EQ(figures.freedBytes, sizeOf(file) + sizeOf(twice));
        EXPECT_EQ(figures.entries, 6) << "with the folder itself";
        EXPECT_EQ(figures.unreadable, 0);
        EXPECT_EQ(DiskScanner::quickFigures(linked, {}, StopFlag(), pool).freedBytes, 0);
        EXPECT_EQ(DiskScanner::quickFigures(file, {}, StopFlag(), pool).freedBytes, sizeOf(file));
    }
}

TEST(DiskScanner, CountsWhatCannotBeRead) {
    testing::inChild([] {
        testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        folder.makeFile("a/closed/file", 5'000);
        folder.makeFile("a/unsearchable/file", 5'000);
        const std::string readable = folder.makeFile("a/file", 5'000);
        std::filesystem::permissions(folder.path("a/closed"), std::filesystem::perms(0000));
        std::filesystem::permissions(folder.path("a/unsearchable"), std::filesystem::perms(0444));
        WalkPool pool(0);
        const auto figures = DiskScanner::quickFigures(folder.path("a"), {}, StopFlag(), pool);
        EXPECT_EQ(figures.unreadable, 2);
        EXPECT_EQ(figures.bytes, fileStatus(readable)->allocatedBytes);
    });
}

TEST(DiskScanner, ScansAFolderAgainAsThePartOfALargerScan) {
    const TemporaryFolder folder;
    makeHostileTree(folder, 9, false);
    folder.makeFile("inner/folder/large", 2'000'000);
    for (int i = 0; i < 5; ++i)
        folder.makeFile("inner/folder/" + std::to_string(i), 5'000);
    folder.makeFile("inner/folder/below/small", 5'000);
    ScanOptions options;
    options.skippedPaths = {folder.path("inner/folder/below")};
    const auto tree = scan(folder.path(), options);
    FSNode &part = *testing::descendant(*tree, {"inner", "folder"});
    WalkPool pool(3);
    ScanStats stats;
    const auto again = DiskScanner::scanInside(folder.path("inner/folder"), options, stats, pool);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->path(), part.path());
    const auto parent = testing::descendant(*tree, {"inner"})->release(part);
    EXPECT_EQ(describe(*again), describe(*parent)) << "small files in an aggregate too";
    folder.makeLink("link", "inner");
    for (const char *name : {"link", "missing", "inner/folder/large"})
        EXPECT_EQ(DiskScanner::scanInside(folder.path(name), options, stats, pool), nullptr) << name;
}

TEST(DiskScanner, SkippedFoldersAreNotEntered) {
    const TemporaryFolder folder;
    folder.makeFile("dev/device", 5000);
    folder.makeFile("a/Library/CloudStorage/remote", 5000);
    folder.makeFile("a/Library/dev/local", 5000);
    folder.makeFile("a/dev/local", 5000);
    ScanOptions options;
    options.cloudProviderPaths = {folder.path("a/Library/CloudStorage")};
    options.skippedPaths = {folder.path("dev"), folder.path("a/Library/CloudStorage")};
    const auto tree = scan(folder.path(), options);
    EXPECT_EQ(describe(*tree), describe(*referenceScan(folder.path(), options).root));
    const FSNode &dev = *tree->children().front();
    EXPECT_TRUE(dev.name == "dev" && dev.isNotDescended && !dev.isCloudProvider);
    const FSNode &cloud = *testing::descendant(*tree, {"a", "Library", "CloudStorage"});
    EXPECT_TRUE(cloud.isNotDescended && cloud.isCloudProvider && cloud.size == 0);
    EXPECT_EQ(tree->fileCount, 2);
    EXPECT_EQ(tree->dirCount(), 6);

    EXPECT_EQ(quickSize(folder.path(), options), tree->size);
    EXPECT_EQ(quickSize(folder.path("dev/"), options), 0);
    EXPECT_GT(quickSize(folder.path("dev/device"), options), 0);
}

TEST(DiskScanner, RootMayBeLinkFileOrMissing) {
    const TemporaryFolder folder;
    folder.makeFile("real/file", 5000);
    const std::string toFolder = folder.makeLink("to folder", "real");
    const std::string toFile = folder.makeLink("to file", "real/file");
    const std::string dangling = folder.makeLink("dangling", "nowhere");

    const auto linked = scan(toFolder + "/");
    EXPECT_EQ(linked->path(), toFolder);
    EXPECT_EQ(linked->name, "to folder");
    EXPECT_EQ(linked->children().front()->path(), toFolder + "/file");

    const auto file = scan(folder.path("real/file"));
    EXPECT_TRUE(file->isDirectory && file->children().empty());
    EXPECT_EQ(file->fileCount, 1);
    EXPECT_EQ(file->logicalSize, 5000);
    EXPECT_EQ(scan(toFile)->logicalSize, static_cast<std::int64_t>(std::string("real/file").size()));

    for (const std::string &path : {folder.path("missing"), dangling}) {
        const auto missing = scan(path);
        EXPECT_TRUE(missing->children().empty()) << path;
        EXPECT_EQ(missing->fileCount, 0) << path;
    }
    EXPECT_EQ(DiskScanner::displayName("/"), Words::current().rootName);
    EXPECT_EQ(quickSize(folder.path("missing")), 0);
    EXPECT_EQ(quickSize(toFolder), fileStatus(toFolder)->allocatedBytes);
}

TEST(DiskScanner, ScansDeepTreeWithFewDescriptors) {
    const TemporaryFolder folder;
    constexpr int depth = BRIMVALE_CHAIN_DEPTH;
    makeChain(folder.makeFolder("short"), "d", depth);
    // Each name alone is a twentieth of PATH_MAX.
    makeChain(folder.makeFolder("long"), std::string(200, 'n'), 400);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    testing::inChild([&] {
        testing::becomeOrdinaryUser();
        rlimit limit{64, 64};
        setrlimit(RLIMIT_NOFILE, &limit);
        for (const int workers : {0, 3}) {
            WalkPool pool(workers);
            ScanStats stats;
            const auto tree = DiskScanner::scan(folder.path(), {}, stats, pool);
            EXPECT_EQ(stats.unreadable(), 0);
            EXPECT_EQ(tree->fileCount, depth + 400);
            EXPECT_EQ(tree->dirCount(), 2 * (depth + 400) + 2);
            EXPECT_EQ(DiskScanner::quickSize(folder.path(), {}, {}, pool), tree->size);
        }
    });

    // A root whose own path is longer than one system call takes.
    std::string inside = folder.path("long");
    for (int i = 0; i < 300; ++i)
        inside.append("/").append(200, 'n');
    EXPECT_EQ(scan(inside)->fileCount, 100);
    EXPECT_EQ(quickSize(inside), quickSize(folder.path("long")) / 4);
}

// A Mac starts programs with 256 descriptors.
TEST(DiskScanner, HasAllWorkersAfterTheLimitOfDescriptorsIsRaised) {
    testing::inChild([] {
        rlimit limit{256, 4096};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_LT(WalkPool::usualWorkerCount(), 15);
        raiseDescriptorLimit();
        EXPECT_EQ(WalkPool::usualWorkerCount(), 15);
        EXPECT_EQ(descriptorLimit(), 1024U);
        limit = {256, 300};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        raiseDescriptorLimit();
        EXPECT_EQ(descriptorLimit(), 300U);
    });
}

TEST(DiskScanner, ScansWithoutExtraThreads) {
    const TemporaryFolder folder;
    folder.makeFile("a/b/file", 5000);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    testing::inChild([&] {
        testing::becomeOrdinaryUser();
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NPROC, &none);
        EXPECT_EQ(scan(folder.path())->fileCount, 1);
    });
}

TEST(DiskScanner, TreeMayChangeDuringScan) {
    const TemporaryFolder folder;
    for (int i = 0; i < 50; ++i)
        folder.makeFile("stable/" + std::to_string(i) + "/file", 5000);
    const std::int64_t stable = scan(folder.path("stable"))->size;
    std::atomic<bool> isDone = false;
    std::thread vandal([&] {
        while (!isDone) {
            for (int i = 0; i < 40; ++i)
                folder.makeFile("moving/" + std::to_string(i) + "/a/b", 100);
            std::filesystem::rename(folder.path("moving"), folder.path("moved"));
            folder.makeLink("moving", folder.path("stable"));
            std::filesystem::remove_all(folder.path("moved"));
            std::filesystem::remove(folder.path("moving"));
        }
    });
    for (int i = 0; i < 60; ++i) {
        const auto tree = scan(folder.path());
        EXPECT_EQ(childOf(*tree, "stable").size, stable);
        for (const auto &child : tree->children())
            EXPECT_LE(child->fileCount, 50) << "a link was followed";
    }
    isDone = true;
    vandal.join();
}

TEST(DiskScanner, CancelStopsScan) {
    const TemporaryFolder folder;
    folder.makeFile("skipped/file", 10);
    for (int i = 0; i < 30; ++i)
        folder.makeFile("folder " + std::to_string(i) + "/file", 5000);
    ScanOptions options;
    options.skippedPaths = {folder.path("skipped")};
    ScanStats stats;
    stats.cancel();
    WalkPool pool(3);
    const auto tree = DiskScanner::scan(folder.path(), options, stats, pool);
    ASSERT_EQ(tree->children().size(), 1U);
    EXPECT_TRUE(tree->children().front()->isNotDescended);

    EXPECT_EQ(quickSize(folder.path(), {}, stats.stopFlag()), 0);
}

} // namespace brimvale
