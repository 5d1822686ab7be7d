#include "Core/Export/SavedScan.h"

#include "Base/Hex.h"
#include "Core/Export/Comparison.h"
#include "Core/Export/PackedBlocks.h"
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
using ::testing::UnorderedElementsAre;

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

/// The content of all blocks; empty where they are damaged.
std::string unpacked(std::string_view blocks) {
    BlockReader reader(blocks);
    std::string content;
    while (reader.appendNext(content)) {
    }
    return reader.isComplete() ? content : std::string();
}

/// A saved scan as the first version wrote it, without its checksum.
std::string inVersion1(const std::string &saved) {
    constexpr std::size_t head = 9, digest = 32;
    return "BRIMSCAN\1" + unpacked(std::string_view(saved).substr(head, saved.size() - head - digest));
}

/// The changes as "kind path before after", with paths from the root on.
std::vector<std::string> changesOf(const FSNode &before, const FSNode &after) {
    std::vector<std::string> lines;
    const std::size_t root = after.path().size() + 1;
    const TreeComparison comparison(before, after);
    for (const TreeChange &one : comparison.changes()) {
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
        const auto earlier = readSavedScan(withChecksum(inVersion1(bytes)));
        ASSERT_TRUE(std::holds_alternative<ImportedTree>(earlier)) << "of an earlier version";
        EXPECT_EQ(describe(*std::get<ImportedTree>(earlier).root), describe(*tree));
        EXPECT_TRUE(TreeComparison(*tree, *root).changes().empty());
    }
}

TEST(SavedScan, KeepsWhyFoldersWereNotEntered) {
    const auto root = testing::makeRoot();
    constexpr int reasons = static_cast<int>(SkipReason::otherVolume);
    for (int reason = 0; reason < reasons; ++reason)
        testing::addFolder(*root, std::to_string(reason))
            .markSkipped(false, SkipReason{std::uint8_t(reason)});
    testing::addFolder(*root, "mount point").skipReason = SkipReason::otherVolume;
    const auto result = readSavedScan(saved(*root));
    ASSERT_TRUE(std::holds_alternative<ImportedTree>(result));
    const FSNode &found = *std::get<ImportedTree>(result).root;
    ASSERT_EQ(found.children().size(), root->children().size());
    for (std::size_t i = 0; i < found.children().size(); ++i) {
        const FSNode &before = *root->children()[i], &after = *found.children()[i];
        EXPECT_EQ(after.skipReason, before.skipReason) << after.name.view();
        EXPECT_EQ(after.isNotDescended, before.isNotDescended) << after.name.view();
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
    EXPECT_EQ(fault(withChecksum("BRIMSCAN\3something")),
              "This scan was saved by a later version of the program.");

    // What has the right checksum may still be anything.
    const std::string plain = inVersion1(bytes);
    testing::RandomInputs inputs({plain.substr(0, 3000), bytes.substr(0, 200),
                                  inVersion1(saved(*testing::makeRoot())),
                                  "BRIMSCAN\2" + packedBlock(plain.substr(9, 200)) + endOfBlocks()});
    for (int i = 0; i < 20'000; ++i) {
        const auto result = readSavedScan(withChecksum(inputs.next()));
        if (const auto *tree = std::get_if<ImportedTree>(&result)) {
            ASSERT_GE(tree->root->size, 0);
            ASSERT_GE(tree->root->fileCount, 0);
        }
    }
}

TEST(SavedScan, SmallFileCannotClaimToBeHuge) {
    std::string claim("BRIMSCAN\2");
    const std::string block = packedBlock(std::string(usualBlock, 'x'));
    EXPECT_GT(block.size(), usualBlock) << "it would shrink to nothing, so it is stored as it is";
    appendPackedNumber(claim, std::uint64_t{1} << 40);
    appendPackedNumber(claim, 10);
    const auto result = readSavedScan(withChecksum(claim + std::string(10, 'x') + endOfBlocks()));
    EXPECT_TRUE(std::holds_alternative<ImportFault>(result));
    for (const std::size_t length : {std::size_t{1}, usualBlock / 2, 3 * usualBlock}) {
        std::string content;
        for (std::size_t i = 0; content.size() < length; ++i)
            content += std::to_string(i * i);
        EXPECT_EQ(unpacked(packedBlock(content) + packedBlock("more") + endOfBlocks()), content + "more");
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
    EXPECT_EQ(std::get<ImportedTree>(result).root->dirCount(), depth);
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
    const TreeComparison comparison(*before, *after);
    std::vector<std::string> nodes;
    for (const FSNode *node : testing::everythingBeneath(*after)) {
        static constexpr std::array kinds = {"unchanged", "new", "moved", "grew", "shrank"};
        const NodeChange change = comparison.of(*node);
        nodes.push_back(std::string(node->name)
                            .append(" ")
                            .append(kinds.at(static_cast<std::size_t>(change.kind)))
                            .append(" ")
                            .append(std::to_string(change.growth)));
    }
    EXPECT_THAT(nodes, UnorderedElementsAre("same unchanged 0", "log grew 163840", "new new 135168",
                                            "more new 28672", "name moved 0", "project 2 moved 0",
                                            "a moved 0", "b moved 0"));
    EXPECT_EQ(comparison.of(*after).growth, after->size - before->size);
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
    EXPECT_TRUE(TreeComparison(*tree(1), *tree(1)).changes().empty());
}

// The command line lists every file, the window groups the small ones.
TEST(Comparison, ListedFilesAreComparedWithAnAggregate) {
    const testing::TemporaryFolder folder;
    folder.makeFile("folder/large", 2'097'152);
    folder.makeFile("folder/small", 8'192);
    folder.makeFile("folder/tiny", 4'096);
    const std::unique_ptr<FSNode> all = scanned(folder.path());
    const std::unique_ptr<FSNode> grouped = scanned(folder.path(), ScanOptions().minimumNodeSize);
    EXPECT_TRUE(TreeComparison(*all, *grouped).changes().empty());
    EXPECT_TRUE(TreeComparison(*grouped, *all).changes().empty());
    folder.makeFile("folder/small", 28'672);
    EXPECT_THAT(changesOf(*all, *scanned(folder.path(), ScanOptions().minimumNodeSize)),
                ElementsAre("changed small folder 20480"));
}

} // namespace brimvale
