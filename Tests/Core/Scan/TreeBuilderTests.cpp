#include "Core/Scan/TreeBuilder.h"
#include "Platform/DirectoryWalk.h"
#include "Support/HostileTree.h"
#include "Support/ReferenceScan.h"
#include "Support/TemporaryFolder.h"

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace brimvale {

namespace {

using testing::describe;
using testing::makeChain;
using testing::TemporaryFolder;

/// One folder scanned by walks that run in turn on this thread, so that who takes over what, and where the
/// scan is cancelled, is decided by the test.
class SteppedScan {
public:
    SteppedScan(const TemporaryFolder &folder, const ScanOptions &options)
        : state(options, stats), root("root", folder.path(), true) {
        const std::string top = folder.path("top");
        root.adopt(std::make_unique<FSNode>("top", root, true));
        stats.growing().addFolder("top", root.children().front().get());
        start(PendingFolders(top, root.children().front().get(), fileStatus(top)->identity));
    }

    /// Runs a walk chosen at random for a step, until none is left; now and then it hands over some of its
    /// work.
    void run(
        unsigned seed, const std::function<void()> &beforeStep = [] {}) {
        std::mt19937 random(seed);
        while (!walks_.empty()) {
            beforeStep();
            const std::size_t chosen = random() % walks_.size();
            Walk &walk = *walks_[chosen];
            if (!walk.walk.step()) {
                walks_.erase(walks_.begin() + static_cast<std::ptrdiff_t>(chosen));
            } else if (random() % 2 == 0) {
                if (std::optional<PendingFolders> given = walk.walk.handOver())
                    start(std::move(*given));
            }
        }
        rollUp(root, state);
    }

    /// Cancels once the walks have told of `count` entries and folders.
    void cancelAfter(int count) {
        remaining_ = count + 1;
        this->count();
    }

    ScanStats stats;
    ScanState state;
    FSNode root;

private:
    /// Counts what is looked at.
    struct Counting final : TreeBuilder {
        explicit Counting(SteppedScan &owner) : TreeBuilder(owner.state), scan(owner) {}
        void enter(FolderHandle folder, const std::string &path, int depth) override {
            TreeBuilder::enter(folder, path, depth);
            scan.count();
        }
        void file(FolderHandle folder, std::string_view name, const FileStatus &status) override {
            TreeBuilder::file(folder, name, status);
            scan.count();
        }
        std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &path,
                                              std::string_view name, const FileIdentity &identity,
                                              SubfolderKind kind) override {
            const auto handle = TreeBuilder::subfolder(folder, path, name, identity, kind);
            scan.count();
            return handle;
        }

        SteppedScan &scan;
    };

    struct Walk {
        Walk(SteppedScan &scan, PendingFolders folders)
            : visitor(scan), walk(visitor, false, std::move(folders), scan.stats.stopFlag()) {}
        Counting visitor;
        DirectoryWalk walk;
    };

    void count() {
        if (--remaining_ == 0)
            stats.cancel();
    }

    void start(PendingFolders folders) {
        walks_.push_back(std::make_unique<Walk>(*this, std::move(folders)));
    }

    std::deque<std::unique_ptr<Walk>> walks_;
    int remaining_ = 0; ///< until the scan is cancelled; less where it is not
};

/// What must hold at every node of a partial tree: the sums of the rules for folders that were not finished.
void expectPartialSums(const FSNode &root) {
    std::vector<const FSNode *> waiting{&root};
    while (!waiting.empty()) {
        const FSNode &node = *waiting.back();
        waiting.pop_back();
        std::int64_t fromChildren = 0, filesFromChildren = 0, folders = 0;
        for (const auto &child : node.children()) {
            fromChildren += child->size;
            filesFromChildren += child->fileCount;
            folders += child->isDirectory ? child->dirCount() + 1 : 0;
            waiting.push_back(child.get());
        }
        if (!node.isDirectory)
            continue;
        EXPECT_LE(fromChildren, node.size) << node.path();
        EXPECT_LE(filesFromChildren, node.fileCount) << node.path();
        EXPECT_EQ(folders, node.dirCount()) << node.path();
    }
}

} // namespace

TEST(TreeBuilder, HandOverOrderDoesNotChangeTheTree) {
    const TemporaryFolder folder;
    folder.makeFolder("top");
    for (int i = 0; i < 12; ++i)
        folder.makeFile("top/" + std::to_string(i % 4) + "/" + std::to_string(i) + "/deep/er/file", i * 1000);
    makeChain(folder.makeFolder("top/chain"), "d", 60);
    const std::string expected = describe(*testing::referenceScan(folder.path(), {}).root);
    for (unsigned seed = 0; seed < 40; ++seed) {
        SteppedScan scan(folder, {});
        scan.run(seed);
        const std::string found = describe(scan.root);
        EXPECT_EQ(found.substr(found.find('\n')), expected.substr(expected.find('\n'))) << "seed " << seed;
    }
}

TEST(TreeBuilder, ShowsGrowingFiguresThatEndAsTheTree) {
    const TemporaryFolder folder;
    for (int i = 0; i < 12; ++i)
        folder.makeFile("top/" + std::to_string(i % 4) + "/" + std::to_string(i) + "/deep/er/file", i * 1000);
    for (int i = 0; i < 5000; ++i) // more than are shown at once
        folder.makeFile("top/many/" + std::to_string(i));
    for (unsigned seed = 0; seed < 6; ++seed) {
        SteppedScan scan(folder, {});
        GrowingRow last{.name = "top", .isDirectory = true};
        scan.run(seed, [&] {
            const std::vector<GrowingRow> rows = scan.stats.growing().rows();
            ASSERT_EQ(rows.size(), 1U);
            EXPECT_GE(rows.front().size, last.size);
            EXPECT_GE(rows.front().files, last.files);
            EXPECT_FALSE(rows.front().isFinished && rows.front().files < 5012);
            last = rows.front();
        });
        EXPECT_EQ(scan.stats.growing().rows(), (std::vector<GrowingRow>{{.name = "top",
                                                                         .isDirectory = true,
                                                                         .isFinished = true,
                                                                         .size = scan.root.size,
                                                                         .files = 5012}}));
    }
}

TEST(TreeBuilder, MarksFoldersOfCloudProvidersAndOtherVolumes) {
    ScanStats stats;
    ScanState state({}, stats);
    FSNode root("root", "/root", true);
    root.adopt(std::make_unique<FSNode>("top", root, true));
    FSNode *top = root.children().front().get();
    {
        TreeBuilder builder(state);
        EXPECT_FALSE(builder.subfolder(top, "/root/top", "cloud", {1, 2}, SubfolderKind::dataless));
        EXPECT_FALSE(builder.subfolder(top, "/root/top", "volume", {2, 2}, SubfolderKind::otherVolume));
        builder.leave(top);
    }
    rollUp(root, state);
    ASSERT_EQ(top->children().size(), 2U);
    const FSNode &cloud = *top->children().front();
    EXPECT_TRUE(cloud.isNotDescended && cloud.isCloudProvider);
    EXPECT_EQ(top->children().back()->skipReason, SkipReason::otherVolume);
    EXPECT_EQ(top->dirCount(), 2);
}

TEST(TreeBuilder, CancelLeavesConsistentPartialTree) {
    const TemporaryFolder folder;
    for (int i = 0; i < 12; ++i)
        folder.makeFile("top/" + std::to_string(i % 3) + "/" + std::to_string(i) + "/file", 3000);
    for (int count = 0; count < 60; ++count) {
        SteppedScan scan(folder, {});
        scan.cancelAfter(count);
        scan.run(static_cast<unsigned>(count));
        expectPartialSums(scan.root);
        EXPECT_EQ(scan.stats.bytes(), scan.root.size);
        EXPECT_EQ(scan.stats.files(), scan.root.fileCount);
    }

    // In the walk's own order: top, then the first of its folders, which is left unfinished.
    const TemporaryFolder nested;
    nested.makeFile("top/outer/inner/file", 3000);
    nested.makeFile("top/outer/file", 3000);
    SteppedScan scan(nested, {});
    scan.cancelAfter(6);
    scan.run(0);
    const FSNode &top = *scan.root.children().front();
    const FSNode &outer = *top.children().front();
    EXPECT_EQ(outer.fileCount, top.fileCount);
    EXPECT_EQ(top.logicalSize, 0) << "an unfinished folder keeps its logical size to itself";
    for (const auto &child : outer.children())
        EXPECT_FALSE(child->isAggregate);
}

} // namespace brimvale
