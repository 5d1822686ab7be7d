#include "Core/Export/SavedScan.h"

#include "Base/Hex.h"
#include "Core/Export/Comparison.h"
#include "Core/Scan/DiskScanner.h"
#include "Platform/Digest.h"
#include "Support/HostileTree.h"
#include "Support/RandomInputs.h"
#include "Support/ReferenceScan.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace brimvale {

using testing::describe;
using ::testing::ElementsAre;

namespace {

class SavedText final : public TextSink {
public:
    void write(std::string_view more) override { text += more; }
    std::string text;
};

std::string saved(const FSNode &root) {
    SavedText sink;
    writeSavedScan(sink, root, {.program = "p", .host = "h", .date = dateOfSeconds(9), .unreadable = 2});
    return sink.text;
}

std::unique_ptr<FSNode> scanned(const std::string &path, std::int64_t minimum = 0) {
    ScanOptions options;
    options.minimumNodeSize = minimum;
    ScanStats stats;
    std::unique_ptr<FSNode> root = DiskScanner::scan(path, options, stats);
    root->sortRecursively();
    return root;
}

/// The content with its checksum, as hostile programs also write it.
std::string withChecksum(const std::string &content) {
    Sha256 digest;
    digest.add(content);
    return content + *bytesOfHex(digest.finish());
}

/// The changes as "kind path before after", with paths from the root on.
std::vector<std::string> changesOf(const FSNode &before, const FSNode &after) {
    std::vector<std::string> lines;
    const std::size_t root = after.path().size() + 1;
    for (const TreeChange &one : compareTrees(before, after)) {
        static constexpr std::array kinds = {"new", "gone", "moved", "changed"};
        std::string line = kinds.at(static_cast<std::size_t>(one.kind));
        line.append(one.isAggregate ? " small " : " ");
        line.append(one.path.size() > root ? one.path.substr(root) : ".");
        if (!one.earlier.empty())
            line.append(" from ").append(one.earlier.substr(root));
        lines.push_back(line.append(" ").append(std::to_string(one.growth())));
    }
    return lines;
}

/// Saved scans have the days of changes only.
void keepDays(FSNode &tree) {
    constexpr std::uint32_t day = 86'400;
    std::vector<FSNode *> nodes = testing::everythingBeneath(tree);
    nodes.push_back(&tree);
    for (FSNode *node : nodes)
        if (node->modified != 0)
            node->modified = node->modified / day * day + day / 2;
}

} // namespace

TEST(SavedScan, ComesBackWithIdentities) {
    const testing::TemporaryFolder folder;
    testing::makeHostileTree(folder, 5, true);
    for (const std::int64_t minimum : {0, 4096, 1'048'576}) {
        const std::unique_ptr<FSNode> tree = scanned(folder.path(), minimum);
        keepDays(*tree);
        const std::string bytes = saved(*tree);
        const auto result = readSavedScan(bytes);
        ASSERT_TRUE(std::holds_alternative<ImportedTree>(result)) << std::get<ImportFault>(result).sentence;
        const auto &[root, origin] = std::get<ImportedTree>(result);
        EXPECT_EQ(describe(*root), describe(*tree));
        EXPECT_EQ(root->path(), tree->path());
        EXPECT_EQ(root->hasLinkedFiles, tree->hasLinkedFiles);
        EXPECT_EQ(origin.host, "h");
        EXPECT_EQ(origin.date, dateOfSeconds(9));
        EXPECT_TRUE(root->isImported());
        const auto before = testing::everythingBeneath(*tree), after = testing::everythingBeneath(*root);
        ASSERT_EQ(before.size(), after.size());
        for (std::size_t i = 0; i < before.size(); ++i)
            ASSERT_EQ(before[i]->identity(), after[i]->identity());
        EXPECT_EQ(saved(*root), bytes);
        EXPECT_TRUE(compareTrees(*tree, *root).empty());
    }
}

TEST(SavedScan, DamageGetsASentence) {
    const testing::TemporaryFolder folder;
    testing::makeHostileTree(folder, 5, true);
    const std::string bytes = saved(*scanned(folder.path()));
    const auto fault = [](const std::string &text) {
        const auto result = readSavedScan(text);
        const auto *found = std::get_if<ImportFault>(&result);
        return found == nullptr ? "" : found->sentence;
    };
    const std::string damaged = "The saved scan is damaged.";
    for (std::size_t i = 8; i < bytes.size(); i += 7) {
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ 4);
        ASSERT_EQ(fault(changed), damaged) << i;
        ASSERT_EQ(fault(bytes.substr(0, i)), damaged) << i;
    }
    EXPECT_EQ(fault("PK\3\4"), "This is not a saved scan.");
    EXPECT_EQ(fault(withChecksum("BRIMSCAN\2something")),
              "This scan was saved by a later version of the program.");

    // What has the right checksum may still be anything.
    testing::RandomInputs inputs({bytes.substr(0, std::min<std::size_t>(bytes.size() - 32, 3000)),
                                  saved(*testing::makeRoot()).substr(0, 40)});
    for (int i = 0; i < 20'000; ++i) {
        const auto result = readSavedScan(withChecksum(inputs.next()));
        if (const auto *tree = std::get_if<ImportedTree>(&result)) {
            ASSERT_GE(tree->root->size, 0);
            ASSERT_GE(tree->root->fileCount, 0);
        }
    }
}

TEST(SavedScan, DepthIsNoLimit) {
    auto root = std::make_unique<FSNode>("r", "/r", true);
    FSNode *inner = root.get();
    constexpr int depth = 100'000;
    for (int i = 0; i < depth; ++i) {
        inner->adopt(std::make_unique<FSNode>("d", *inner, true));
        inner = inner->children().front().get();
    }
    const auto result = readSavedScan(saved(*root));
    ASSERT_TRUE(std::holds_alternative<ImportedTree>(result));
    EXPECT_EQ(std::get<ImportedTree>(result).root->dirCount, depth);
}

TEST(Comparison, TellsNewGoneMovedAndChangedApart) {
    const testing::TemporaryFolder folder;
    folder.makeFile("same", 40'960);
    folder.makeFile("log", 40'960);
    folder.makeFile("old/file", 81'920);
    folder.makeFile("old/kept", 4'096);
    folder.makeFile("project/a", 12'288);
    folder.makeFile("project/b", 12'288);
    const std::unique_ptr<FSNode> before = scanned(folder.path());

    folder.makeFile("log", 204'800);
    folder.makeFolder("new");
    std::filesystem::rename(folder.path("old/file"), folder.path("new/name"));
    std::filesystem::remove_all(folder.path("old"));
    std::filesystem::rename(folder.path("project"), folder.path("new/project 2"));
    folder.makeFile("new/more", 28'672);
    const std::unique_ptr<FSNode> after = scanned(folder.path());
    EXPECT_THAT(changesOf(*before, *after),
                ElementsAre("changed log 163840", "new new 28672", "moved new/name from old/file 0",
                            "moved new/project 2 from project 0", "gone old -4096"));
    EXPECT_EQ(after->size - before->size, 163'840 + 28'672 - 4'096);
    // A tree without identities knows nothing of moves, and counts the same.
    for (FSNode *node : testing::everythingBeneath(*before))
        node->setIdentity({});
    EXPECT_THAT(changesOf(*before, *after), ElementsAre("changed log 163840", "new new 135168",
                                                        "gone project -24576", "gone old -86016"));
}

TEST(Comparison, SmallFilesAreComparedTogether) {
    const auto tree = [](std::int64_t small) {
        auto root = testing::makeRoot();
        FSNode &folder = testing::addFolder(*root, "folder");
        testing::addAggregate(folder, 3, small);
        return root;
    };
    EXPECT_THAT(changesOf(*tree(5'000), *tree(9'000)), ElementsAre("changed small folder 4000"));
    EXPECT_TRUE(compareTrees(*tree(1), *tree(1)).empty());
}

} // namespace brimvale
