#include "CommandLine/Program.h"
#include "Support/HostileTree.h"
#include "Support/ReferenceScan.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <QDateTime>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale::testing {

namespace {

namespace fs = std::filesystem;

/// The document that a successful run prints.
QJsonObject documentOf(
    const std::vector<std::string> &arguments, const std::function<void()> &prepare = [] {}) {
    const Outcome outcome = runProgram(arguments, prepare);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    // A document on a terminal must not command it: no control in one byte or (C1) in two.
    EXPECT_EQ(outcome.out.find_first_of("\x1b\x07\x7f\n\r\t"), outcome.out.size() - 1);
    EXPECT_FALSE(std::regex_search(outcome.out, std::regex("\xC2[\x80-\x9F]")));
    EXPECT_TRUE(jsonIn(outcome).isObject()) << outcome.out;
    return jsonIn(outcome).object();
}

/// A node and what is beneath it as a tree, with every figure and flag that the document has.
void adoptFrom(FSNode &node, const QJsonObject &json) {
    if (json["isAggregate"].toBool(true))
        node.markAggregate();
    node.unreadable = json["unreadable"].toBool(true);
    node.isNotDescended = json["isNotDescended"].toBool(true);
    node.isCloudProvider = json["isCloudProvider"].toBool(true);
    node.size = json["size"].toInteger(-1);
    node.logicalSize = json["logicalSize"].toInteger(-1);
    node.fileCount = json["fileCount"].toInteger(-1);
    node.setDirCount(json["dirCount"].toInteger(-1));
    if (const QString modified = json["modified"].toString(); !modified.isEmpty())
        node.modified =
            static_cast<std::uint32_t>(QDateTime::fromString(modified, Qt::ISODate).toSecsSinceEpoch());
    const QJsonArray children = json["children"].toArray();
    EXPECT_EQ(json.contains("children"), !children.isEmpty());
    for (const QJsonValue &child : children) {
        node.adopt(std::make_unique<FSNode>(child["name"].toString().toStdString(), node,
                                            child["isDirectory"].toBool(false)));
        adoptFrom(*node.children().back(), child.toObject());
    }
}

void fill(const TemporaryFolder &folder) {
    for (const char *place : {"", "one/", "one/two/", "one/two/three/", "other/"}) {
        const std::string inside = place;
        folder.makeFile(inside + "large", 200'000 + static_cast<std::int64_t>(inside.size()) * 10'000);
        folder.makeFile(inside + "medium", 100'000);
        folder.makeFile(inside + "small", 1'000);
        folder.makeFile(inside + "nothing");
        folder.makeLink(inside + "link", "large");
    }
    folder.makeFolder("empty/emptier");
    folder.makeLink("loop", ".");
    EXPECT_EQ(mkfifo(folder.path("one/fifo").c_str(), 0600), 0);
    EXPECT_EQ(truncate(folder.makeFile("other/hole").c_str(), 50'000'000), 0);
}

/// A node with no more than `top` children a level, `depth` levels down.
QJsonObject pruned(QJsonObject node, int depth, qsizetype top) {
    const QJsonArray children = node.take("children").toArray();
    QJsonArray kept;
    for (qsizetype i = 0; depth > 0 && i < std::min(top, children.size()); ++i)
        kept.append(pruned(children[i].toObject(), depth - 1, top));
    if (!kept.isEmpty())
        node["children"] = kept;
    return node;
}

} // namespace

TEST(ScanJson, MatchesReferenceScan) {
    const TemporaryFolder folder;
    fill(folder);
    ScanOptions options;
    for (const std::int64_t minimum : {0, 50'000, 1'048'576}) {
        options.minimumNodeSize = minimum;
        const QJsonObject document =
            documentOf({"scan", folder.path(), "--json", "--min-size", std::to_string(minimum)});
        const ReferenceScan expected = referenceScan(folder.path(), options);
        expected.root->sortRecursively();
        EXPECT_EQ(document["root"]["path"].toString().toStdString(), folder.path());
        FSNode root(document["root"]["name"].toString().toStdString(), folder.path(), true);
        adoptFrom(root, document["root"].toObject());
        EXPECT_EQ(describe(root), describe(*expected.root)) << minimum;
        EXPECT_EQ(document["files"].toInteger(), expected.files);
        EXPECT_EQ(document["bytes"].toInteger(), expected.bytes);
        EXPECT_EQ(document["unreadable"].toInteger(-1), 0);
        EXPECT_GT(document["elapsed"].toDouble(), 0);
        EXPECT_LT(document["elapsed"].toDouble(), 200);
    }
}

TEST(ScanJson, DepthAndTopLimitTheTree) {
    const TemporaryFolder folder;
    fill(folder);
    const std::vector<std::string> all = {"scan", "--json", "--min-size=0", folder.path()};
    const QJsonObject whole = documentOf(all)["root"].toObject();
    struct Case {
        std::vector<std::string> options;
        int depth;
        qsizetype top;
    };
    constexpr int unlimited = 1000;
    for (const Case &one : {Case{{"--depth", "0"}, 0, unlimited}, Case{{"--depth=2"}, 2, unlimited},
                            Case{{"--top", "0"}, unlimited, 0}, Case{{"--top", "2"}, unlimited, 2},
                            Case{{"--depth", "3", "--top", "1"}, 3, 1},
                            Case{{"--depth", "1", "--depth", "9223372036854775807"}, unlimited, unlimited}}) {
        std::vector<std::string> arguments = all;
        arguments.insert(arguments.end(), one.options.begin(), one.options.end());
        EXPECT_EQ(documentOf(arguments)["root"].toObject(), pruned(whole, one.depth, one.top))
            << one.options.front();
    }
}

TEST(ScanJson, WritesNamesOfAnyBytes) {
    struct Case {
        std::string name;
        QString text;
    };
    const QChar replacement(0xFFFD);
    for (const Case &one : {
             Case{"line\nfeed\ttab\rreturn", "line\nfeed\ttab\rreturn"},
             Case{"escape\x1b[2Jbell\x07\x01", "escape\x1b[2Jbell\x07\x01"},
             Case{"\"quotes\" and \\back\\slashes\\", "\"quotes\" and \\back\\slashes\\"},
             Case{"{\"json\":[1,2]},", "{\"json\":[1,2]},"},
             Case{"delete\x7f and \u009b31m", QString::fromUtf8("delete\x7f and \u009b31m")},
             Case{"Zo\u00EB \u6F22\u5B57 \U0001F600 \u2028",
                  QString::fromUtf8("Zo\u00EB \u6F22\u5B57 \U0001F600 \u2028")},
             Case{"latin caf\xE9", QString("latin caf") + replacement},
             Case{"cut \xF0\x9F\x98", QString("cut ") + replacement},
             Case{std::string(255, '\xFF'), QString(255, replacement)},
             Case{"-option", "-option"},
         }) {
        const TemporaryFolder folder;
        std::error_code error;
        // Some file systems take no name that is not text.
        if (!fs::create_directory(folder.path(one.name), error))
            continue;
        const QJsonObject document = documentOf({"scan", "--json", folder.path(one.name)});
        EXPECT_EQ(document["root"]["name"].toString(), one.text);
        EXPECT_TRUE(document["root"]["path"].toString().endsWith("/" + one.text));
        const QJsonObject parent = documentOf({"scan", "--json", folder.path()});
        EXPECT_EQ(parent["root"]["children"][0]["name"].toString(), one.text);
    }
}

TEST(ScanJson, WritesDeepTree) {
    constexpr int depth = BRIMVALE_CHAIN_DEPTH;
    const TemporaryFolder folder;
    makeChain(folder.path(), "d", depth);

    // Parsers give up on such a depth, so the whole document is only weighed, and a part of it is parsed.
    const Outcome whole = runProgram({"scan", "--json", folder.path()});
    EXPECT_EQ(whole.status, 0);
    int brackets = 0;
    int deepest = 0;
    for (const char byte : whole.out) {
        brackets += byte == '{' || byte == '[' ? 1 : byte == '}' || byte == ']' ? -1 : 0;
        deepest = std::max(deepest, brackets);
    }
    EXPECT_EQ(brackets, 0);
    EXPECT_EQ(deepest, 2 * depth + 2); // a child adds an array and an object

    constexpr int told = 400;
    QJsonObject node =
        documentOf({"scan", "--json", "--depth", std::to_string(told), folder.path()})["root"].toObject();
    for (int level = 0; level < told; ++level) {
        ASSERT_EQ(node["dirCount"].toInt(), 2 * (depth - level)); // each has a sibling
        node = node["children"].toArray().first().toObject();
    }
    EXPECT_FALSE(node.contains("children"));
}

TEST(ScanJson, MarksCloudProviderFolders) {
    const TemporaryFolder home;
    home.makeFile("Library/CloudStorage/Provider/file", 10'000);
    const QJsonObject document =
        documentOf({"--system", "macos", "scan", "--json", home.path("Library")}, inHome(home.path()));
    const QJsonObject folder = document["root"]["children"][0].toObject();
    EXPECT_EQ(folder["name"].toString(), "CloudStorage");
    EXPECT_TRUE(folder["isNotDescended"].toBool());
    EXPECT_TRUE(folder["isCloudProvider"].toBool());
    EXPECT_EQ(document["files"].toInteger(), 0);
}

} // namespace brimvale::testing
