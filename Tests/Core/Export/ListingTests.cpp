#include "Core/Export/Listing.h"
#include "Core/Export/ListingReader.h"
#include "Core/Removal/NodesToRemove.h"
#include "Support/RandomInputs.h"
#include "Support/ReferenceScan.h"
#include "Support/SampleTree.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace brimvale {

using testing::add;
using testing::addAggregate;
using testing::addFolder;
using testing::describe;
using ::testing::EndsWith;
using ::testing::HasSubstr;

namespace {

class TextOfSink final : public TextSink {
public:
    void write(std::string_view more) override { text += more; }
    std::string text;
};

/// Hands out a text a few bytes at a time, so that every token is cut somewhere.
class Pieces final : public ByteSource {
public:
    explicit Pieces(std::string_view text, std::size_t length = 3) : rest_(text), length_(length) {}
    [[nodiscard]] std::optional<std::string_view> next() override {
        const std::string_view piece = rest_.substr(0, length_);
        rest_.remove_prefix(piece.size());
        return piece;
    }

private:
    std::string_view rest_;
    std::size_t length_;
};

std::string listing(const FSNode &root, ListingFormat format) {
    TextOfSink sink;
    writeListing(sink, root, {.program = "p 1", .host = "a\"b", .date = dateOfSeconds(1'772'357'400)},
                 format);
    return sink.text;
}

Result<ImportedTree, ImportFault> read(std::string_view text) {
    Pieces pieces(text);
    return readListing(pieces);
}

/// The tree in this list, which has no fault.
std::unique_ptr<FSNode> treeIn(std::string_view text) {
    Result<ImportedTree, ImportFault> result = read(text);
    if (const auto *fault = std::get_if<ImportFault>(&result)) {
        ADD_FAILURE() << fault->sentence << "\n" << text;
        return nullptr;
    }
    return std::move(std::get<ImportedTree>(result).root);
}

std::string faultIn(std::string_view text) {
    const Result<ImportedTree, ImportFault> result = read(text);
    const auto *fault = std::get_if<ImportFault>(&result);
    return fault == nullptr ? "" : fault->sentence;
}

std::shared_ptr<FSNode> sample() {
    auto root = std::make_shared<FSNode>("ho\xFFme", "/srv/ho\xFFme", true);
    std::string allBytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            allBytes += static_cast<char>(byte);
    add(*root, allBytes, 5'000'000);
    FSNode &folder = addFolder(*root, "Zo\u00EB \u6F22\u5B57 \U0001F600 \u009B");
    FSNode &quoted = add(folder, "=1+1,\"quoted\"\r\n", 3'000'000);
    quoted.logicalSize = 12;
    for (FSNode *node : {&quoted, &folder, root.get()})
        node->modified = 1'772'357'400;
    addAggregate(folder, 1'234, 70'000);
    folder.logicalSize = root->logicalSize = 12;
    for (FSNode *around : {&folder, root.get()}) {
        around->size += 70'000;
        around->fileCount += 1'234;
    }
    folder.setDirCount(1);
    root->setDirCount(3);
    addFolder(folder, "empty").unreadable = true;
    addFolder(*root, "skipped").markSkipped(false);
    root->sortRecursively();
    return root;
}

/// An entry of ncdu's format with these members, as the only one of a folder.
std::string ncduWith(const std::string &members) {
    return R"([1,2,{},[{"name":"/r"},{"name":"f",)" + members + "}]]";
}

} // namespace

TEST(Listing, ComesBackTheSame) {
    const std::shared_ptr<FSNode> tree = sample();
    for (const ListingFormat format : {ListingFormat::json, ListingFormat::ncdu}) {
        const std::string text = listing(*tree, format);
        const auto result = read(text);
        ASSERT_TRUE(std::holds_alternative<ImportedTree>(result)) << std::get<ImportFault>(result).sentence;
        const auto &imported = std::get<ImportedTree>(result);
        EXPECT_EQ(describe(*imported.root), describe(*tree)) << text;
        EXPECT_EQ(imported.root->path(), "/srv/ho\xFFme");
        EXPECT_EQ(imported.origin.host, "a\"b");
        EXPECT_EQ(imported.origin.date, dateOfSeconds(1'772'357'400));
        EXPECT_EQ(imported.origin.unreadable, 1);
        EXPECT_EQ(listing(*imported.root, format).size(), text.size());
    }
    EXPECT_THAT(listing(*tree, ListingFormat::csv),
                HasSubstr("/=1+1,\"\"quoted\"\"\r\n\",file,3000000,12,1,0,2026-03-01T09:30:00Z,\r\n"));
}

TEST(Listing, WhatWasRemovedIsInNone) {
    const std::shared_ptr<FSNode> tree = sample();
    FSNode &folder = *testing::descendant(*tree, {"Zo\u00EB \u6F22\u5B57 \U0001F600 \u009B"});
    folder.subtractFromAncestors();
    ASSERT_NE(folder.parent()->release(folder), nullptr);
    for (const ListingFormat format : {ListingFormat::json, ListingFormat::ncdu}) {
        const std::unique_ptr<FSNode> left = treeIn(listing(*tree, format));
        ASSERT_NE(left, nullptr);
        EXPECT_EQ(left->size, 5'000'000);
        EXPECT_EQ(left->logicalSize, 0);
        EXPECT_EQ(left->fileCount, 1);
        EXPECT_EQ(left->dirCount(), 1);
        EXPECT_EQ(left->modified, 0U);
    }
    EXPECT_THAT(listing(*tree, ListingFormat::csv), HasSubstr(",folder,5000000,0,1,1,,\r\n"));
}

TEST(Listing, DepthIsNoLimit) {
    constexpr int depth = 100'000;
    auto root = std::make_unique<FSNode>("r", "/r", true);
    FSNode *folder = root.get();
    for (int i = 0; i < depth; ++i) {
        folder->adopt(std::make_unique<FSNode>("d", *folder, true));
        folder = folder->children().front().get();
    }
    for (const ListingFormat format : {ListingFormat::json, ListingFormat::ncdu}) {
        const std::string text = listing(*root, format);
        Pieces pieces(text, 65'536);
        const auto result = readListing(pieces);
        ASSERT_TRUE(std::holds_alternative<ImportedTree>(result)) << std::get<ImportFault>(result).sentence;
        EXPECT_EQ(std::get<ImportedTree>(result).root->dirCount(), depth);
    }
    const std::string brackets(2'000'000, '[');
    EXPECT_THAT(faultIn("[1,2,{\"x\":" + brackets), HasSubstr("ends too early"));
}

TEST(Listing, NothingImportedCanBeRemoved) {
    const std::unique_ptr<FSNode> tree = treeIn(listing(*sample(), ListingFormat::ncdu));
    ASSERT_NE(tree, nullptr);
    const std::vector<FSNode *> nodes = testing::everythingBeneath(*tree);
    ASSERT_FALSE(nodes.empty());
    EXPECT_TRUE(removableNodes(nodes).empty());
    EXPECT_TRUE(entriesOf(nodes).empty());
}

TEST(Listing, NcdusOwnEntriesAreUnderstood) {
    const std::unique_ptr<FSNode> tree = treeIn(R"([1,3,{"progname":"ncdu","later":[{}]},
[{"name":"/srv/","asize":4096,"dsize":4096,"dev":5},
{"name":"a","asize":10,"dsize":512,"ino":7,"hlnkc":true,"nlink":3},
[{"name":"d","dsize":4096,"dev":5},{"name":"b","asize":10,"dsize":512,"ino":7,"hlnkc":true,"nlink":3}],
[{"name":"other","dev":6},{"name":"c","asize":10,"dsize":512,"ino":7,"hlnkc":true,"nlink":3}],
{"name":"proc","excluded":"kernfs","notreg":true},
[{"name":"locked","read_error":true,"mode":16877,"x":null}]],"later"])");
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->path(), "/srv");
    EXPECT_EQ(tree->size, 4096 + 4096 + 512 + 512); // one file on each device
    EXPECT_EQ(tree->fileCount, 2);
    EXPECT_EQ(tree->dirCount(), 4);
    EXPECT_TRUE(tree->hasLinkedFiles);
    EXPECT_TRUE(testing::descendant(*tree, {"proc"})->isNotDescended);
    EXPECT_TRUE(testing::descendant(*tree, {"locked"})->unreadable);
}

TEST(Listing, HostileFiguresCountAsUnreadable) {
    for (const char *number : {"-1", "1e3", "0.5", "72057594037927937", "9223372036854775807",
                               "99999999999999999999999999", "-9223372036854775808"})
        for (const char *key : {"asize", "dsize", "brimvale_files"}) {
            const std::unique_ptr<FSNode> tree = treeIn(ncduWith(
                std::string("\"") + key + "\":" + number + ",\"dsize\":" + (key[0] == 'd' ? number : "1")));
            ASSERT_NE(tree, nullptr);
            EXPECT_EQ(tree->size, 0) << key << number;
            EXPECT_TRUE(tree->children().front()->unreadable) << key << number;
        }

    // Figures that are believed one by one, but not together.
    std::string ncdu = R"([1,2,{},[{"name":"/r"})",
                json = R"({"root":{"path":"/r","isDirectory":true,"children":[)";
    constexpr int count = 300;
    for (int i = 0; i < count; ++i) {
        ncdu += R"(,{"name":"f","asize":72057594037927936,"brimvale_files":281474976710656})";
        json += R"({"name":"d","isDirectory":true,"size":72057594037927936,"dirCount":281474976710656},)";
    }
    const std::unique_ptr<FSNode> files = treeIn(ncdu + "]]");
    const std::unique_ptr<FSNode> folders = treeIn(json + R"({"name":"e"}]}})");
    ASSERT_TRUE(files != nullptr && folders != nullptr);
    EXPECT_EQ(files->logicalSize, mostBelievedBytes);
    EXPECT_EQ(folders->size, mostBelievedBytes);
    EXPECT_LT(folders->dirCount(), std::int64_t{1} << 49);
}

TEST(Listing, FaultsAreToldWithTheirPlace) {
    struct Case {
        std::string text;
        std::string sentence;
    };
    for (const Case &one : {
             Case{"", "Line 1, byte 0: the document ends too early."},
             Case{"\x89PNG\r\n", "Line 1, byte 0: a value is missing."},
             Case{"5", "neither a list of ncdu nor one of brimvalectl."},
             Case{"{}", "there is no folder in this list."},
             Case{"[2,0,{},[{\"name\":\"/\"}]]", "this is not an ncdu list, version 1."},
             Case{"[1,0,{},[]]", "the information about a folder is missing."},
             Case{"[1,0,{},[{\"name\":\"\"}]]", "the first folder has no path."},
             Case{"[1,0,{},\n[{\"name\":\"/\"}\n,{\"name\":\"a/b\"}]]",
                  "Line 3, byte 15: no file can have this name."},
             Case{"[1,0,{},[{\"name\":\"/\"},{\"name\":\"a\\u0000\"}]]", "no file can have this name."},
             Case{"[1,0,{},[{\"name\":\"/\"},[{\"name\":\"..\"}]]]", "no file can have this name."},
             Case{"[1,0,{},[{\"name\":\"/\"},{\"dsize\":1}]]", "an entry has no name."},
             Case{"[1,0,{},[{\"name\":\"/\"},7]]", "an entry is neither a file nor a folder."},
             Case{"[1,0,{},[{\"name\":\"/\"}]] x", "something follows the document."},
             Case{"[1,0,{},[{\"name\":\"/\"}}]", "this bracket does not close the last one."},
             Case{"[1,0,{},[{\"name\":\"\\ud800\"}]]", "there is no such character."},
             Case{"[1,0,{},[{\"name\":\"\\x\"}]]", "there is no such escape."},
             Case{"[1,0,{},[{\"name\":\"a\nb\"}]]", "a text contains a control character."},
             Case{"{\"root\":{\"path\":\"/\",\"children\":[]}}", "before \"isDirectory\", or of a file."},
             Case{"{\"root\":{\"path\":\"/\",\"isDirectory\":true,\"children\":[],\"children\":[]}}",
                  "a folder has children twice."},
             Case{"{\"root\":{\"path\":\"/\",\"isDirectory\":true,\"children\":[5]}}",
                  "a child is not an object."},
             Case{"{\"root\":{\"pathHex\":\"4g\"}}", "these are not hexadecimal digits."},
         })
        EXPECT_THAT(faultIn(one.text), EndsWith(one.sentence)) << one.text;
}

TEST(Listing, DamageGetsASentenceOrATree) {
    const std::shared_ptr<FSNode> tree = sample();
    testing::RandomInputs inputs({listing(*tree, ListingFormat::json), listing(*tree, ListingFormat::ncdu),
                                  ncduWith(R"("asize":72057594037927936,"ino":3,"hlnkc":true)")});
    int trees = 0;
    constexpr int rounds = 20'000;
    for (int i = 0; i < rounds; ++i) {
        const auto result = read(inputs.next());
        if (const auto *fault = std::get_if<ImportFault>(&result)) {
            ASSERT_THAT(fault->sentence, EndsWith("."));
            continue;
        }
        ++trees;
        const FSNode &root = *std::get<ImportedTree>(result).root;
        ASSERT_TRUE(root.isImported());
        for (const std::int64_t figure : {root.size, root.logicalSize, root.fileCount, root.dirCount()})
            ASSERT_GE(figure, 0);
    }
    EXPECT_GT(trees, 0);
    EXPECT_LT(trees, rounds);
}

} // namespace brimvale
