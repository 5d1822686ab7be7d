#include "CommandLine/Program.h"
#include "Core/Text/Formatting.h"
#include "Support/TemporaryFolder.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QStringList>
#include <QXmlStreamReader>

namespace brimvale::testing {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::StartsWith;

QJsonArray tilesOf(const std::vector<std::string> &arguments) {
    const Outcome outcome = runProgram(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(jsonIn(outcome).isArray()) << outcome.out;
    return jsonIn(outcome).array();
}

/// What a picture shows of one tile.
struct DrawnTile {
    std::string name, size; ///< of its title
    double width = 0, height = 0;
    std::string fill = {};
    double opacity = 0;
    std::vector<std::string> label = {};
};

struct Picture {
    double width = 0, height = 0;
    std::string title;
    std::vector<DrawnTile> tiles;
};

/// Reads a picture, which has to be well-formed XML.
Picture read(const std::string &svg) {
    Picture picture;
    QXmlStreamReader xml(QByteArray::fromStdString(svg));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto number = [&](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toDouble();
        };
        if (xml.name() == QLatin1String("svg")) {
            picture.width = number("width");
            picture.height = number("height");
        } else if (xml.name() == QLatin1String("title")) {
            const QStringList lines = xml.readElementText().split('\n');
            if (lines.size() == 1)
                picture.title = lines[0].toStdString();
            else
                picture.tiles.push_back({.name = lines[0].toStdString(), .size = lines[1].toStdString()});
        } else if (xml.name() == QLatin1String("rect") &&
                   xml.attributes().hasAttribute(QLatin1String("fill-opacity"))) {
            DrawnTile &tile = picture.tiles.back();
            tile.width = number("width");
            tile.height = number("height");
            tile.fill = xml.attributes().value(QLatin1String("fill")).toString().toStdString();
            tile.opacity = number("fill-opacity");
        } else if (xml.name() == QLatin1String("text")) {
            picture.tiles.back().label.push_back(xml.readElementText().toStdString());
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString() << "\n" << svg;
    return picture;
}

/// The picture that the program draws with these arguments.
Picture drawn(std::vector<std::string> arguments) {
    const TemporaryFolder elsewhere;
    const std::string file = elsewhere.path("picture.svg");
    arguments.insert(arguments.end(), {"--svg", file});
    const Outcome outcome = runProgram(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
    return read(contentOf(file));
}

std::string paletteColor(const std::string &name) {
    const Color color = Palette::color(name);
    return QString::asprintf("#%02x%02x%02x", static_cast<unsigned>(std::lround(color.red * 255)),
                             static_cast<unsigned>(std::lround(color.green * 255)),
                             static_cast<unsigned>(std::lround(color.blue * 255)))
        .toStdString();
}

} // namespace

TEST(TreemapCommand, JsonListsTilesInLayoutOrder) {
    const TemporaryFolder folder;
    const std::int64_t large = allocatedBytes(folder.makeFile("large", 3'145'728));
    folder.makeFile("small/inside", 1'048'576);
    folder.makeFile("empty");
    const QJsonArray tiles = tilesOf({"treemap", folder.path(), "--width=400", "--height", "100", "--json"});
    ASSERT_EQ(tiles.size(), 2);
    EXPECT_THAT(tiles[0].toObject().keys(), ElementsAre("fraction", "height", "isAggregate", "isDirectory",
                                                        "name", "path", "size", "width", "x", "y"));
    const std::int64_t small = allocatedBytes(folder.path("small/inside"));
    const double share = static_cast<double>(large) / static_cast<double>(large + small);
    EXPECT_EQ(tiles[0]["name"].toString(), "large");
    EXPECT_EQ(tiles[0]["path"].toString().toStdString(), folder.path("large"));
    EXPECT_EQ(tiles[0]["size"].toInteger(), large);
    EXPECT_NEAR(tiles[0]["fraction"].toDouble(), share, 1e-9);
    EXPECT_EQ(tiles[0]["isDirectory"], QJsonValue(false));
    EXPECT_EQ(tiles[0]["isAggregate"], QJsonValue(false));
    EXPECT_EQ(tiles[1]["isDirectory"], QJsonValue(true));
    EXPECT_NEAR(tiles[0]["width"].toDouble(), 400 * share, 1e-9);
    EXPECT_NEAR(tiles[1]["x"].toDouble(), 400 * share, 1e-9);
    for (const QJsonValue &tile : tiles) {
        EXPECT_EQ(tile["y"].toDouble(-1), 0);
        EXPECT_NEAR(tile["height"].toDouble(), 100, 1e-9);
    }
}

TEST(TreemapCommand, GathersSmallerItems) {
    const TemporaryFolder folder;
    for (int i = 1; i <= 85; ++i)
        folder.makeFile(std::to_string(i), i * 8192);
    const std::vector<std::string> all = {"treemap", folder.path(), "--width=900", "--height=900", "--json"};
    const QJsonArray usual = tilesOf(all);
    ASSERT_EQ(usual.size(), 81);
    EXPECT_EQ(usual[80]["name"].toString(), "5 smaller items");
    EXPECT_EQ(usual[80]["path"].toString().toStdString(), folder.path());
    EXPECT_TRUE(usual[80]["isAggregate"].toBool());
    for (const auto &[option, count] : {std::pair("0", 1), std::pair("9223372036854775807", 85)}) {
        std::vector<std::string> arguments = all;
        arguments.insert(arguments.end(), {"--max-tiles", option});
        EXPECT_EQ(tilesOf(arguments).size(), count) << option;
    }
}

TEST(TreemapCommand, PrintsATable) {
    const TemporaryFolder folder;
    folder.makeFile("sub/inside", 3'000'000);
    folder.makeFile("bad\n\033[2Jname", 2'000'000);
    folder.makeFile("last", 1'000'000);
    const Outcome outcome =
        runProgram({"treemap", folder.path(), "--width", "300", "--height", "200", "--max-tiles", "2"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(
        outcome.out,
        ::testing::MatchesRegex(
            " +SIZE +SHARE +X +Y +WIDTH +HEIGHT  NAME\n"
            " +3 MB +50\\.[0-9]% +0\\.0 +0\\.0 +1(49|50)\\.[0-9] +200\\.0  sub/\n"
            " +2 MB +33\\.[0-9]% +1(49|50)\\.[0-9] +0\\.0 +[0-9.]+ +[0-9.]+  bad␊␛\\[2Jname\n"
            " +1 MB +16\\.[0-9]% +1(49|50)\\.[0-9] +13[0-9]\\.[0-9] +[0-9.]+ +[0-9.]+  … 1 smaller items\n"));
}

TEST(TreemapCommand, DrawsSvg) {
    const TemporaryFolder folder;
    folder.makeFile("folder/inside", 3'000'000);
    folder.makeFile("file", 2'000'000);
    for (int i = 0; i < 20; ++i)
        folder.makeFile("small " + std::to_string(i), 50'000);
    const Picture picture =
        drawn({"treemap", folder.path(), "--width", "400", "--height", "300", "--max-tiles", "3"});
    EXPECT_EQ(picture.width, 400);
    EXPECT_EQ(picture.height, 300);
    EXPECT_EQ(picture.title, folder.path());
    ASSERT_EQ(picture.tiles.size(), 4U);
    const auto &[sub, single, small, rest] =
        std::tie(picture.tiles[0], picture.tiles[1], picture.tiles[2], picture.tiles[3]);
    EXPECT_EQ(sub.name, "folder");
    EXPECT_EQ(sub.size, Fmt::byteFormatter(allocatedBytes(folder.path("folder/inside"))));
    EXPECT_EQ(sub.fill, paletteColor("folder"));
    EXPECT_EQ(sub.opacity, 0.85);
    EXPECT_EQ(sub.label, (std::vector<std::string>{"folder", sub.size}));
    EXPECT_EQ(single.fill, paletteColor("file"));
    EXPECT_EQ(single.opacity, 0.55);
    EXPECT_LT(small.width, 64);
    EXPECT_TRUE(small.label.empty());
    EXPECT_EQ(rest.name, "19 smaller items");
    EXPECT_NEAR(rest.opacity, 0.35 * 0.55, 0.001);
    EXPECT_THAT(rest.label, ElementsAre(StartsWith("19 "), rest.size));

    // Both at once.
    const TemporaryFolder elsewhere;
    const std::string file = elsewhere.path("picture.svg");
    EXPECT_EQ(
        tilesOf({"treemap", folder.path(), "--width=400", "--height=300", "--svg", file, "--json"}).size(),
        22);
    EXPECT_EQ(read(contentOf(file)).tiles.size(), 22U);
}

TEST(TreemapCommand, LaysOutADetailedMap) {
    const TemporaryFolder folder;
    folder.makeFile("folder/sub/inside", 3'000'000);
    folder.makeFile("folder/other", 2'000'000);
    folder.makeFile("file", 1'500'000);
    for (int i = 0; i < 20; ++i)
        folder.makeFolder("empty " + std::to_string(i)); // the disk has them in any order
    std::vector<std::string> arguments = {"treemap", folder.path(), "--width=400", "--height=300",
                                          "--detailed"};
    const Outcome table = runProgram(arguments);
    EXPECT_THAT(table.out,
                ::testing::ContainsRegex("  folder/\n.*    sub/\n.*      inside\n.*    other\n.*  file\n"));

    const Picture picture = drawn(arguments);
    std::vector<std::string> names;
    for (const DrawnTile &tile : picture.tiles)
        names.push_back(tile.name);
    EXPECT_THAT(names, ElementsAre("folder", "sub", "inside", "other", "file"));
    EXPECT_THAT(picture.tiles[0].label, ElementsAre("folder", picture.tiles[0].size));

    arguments.push_back("--json");
    const QJsonArray tiles = tilesOf(arguments);
    ASSERT_EQ(tiles.size(), 5);
    EXPECT_EQ(tiles[2]["depth"].toInt(), 2);
    EXPECT_EQ(tiles[2]["path"].toString().toStdString(), folder.path("folder/sub/inside"));

    arguments.insert(arguments.end(), {"--max-tiles", "3"});
    EXPECT_EQ(runProgram(arguments).status, 2);
}

TEST(TreemapCommand, SvgEscapesNamesOfAnyBytes) {
    struct Case {
        std::string name, shown;
    };
    for (const Case &one : {
             Case{"<svg onload=\"alert('1')\">&amp;", "<svg onload=\"alert('1')\">&amp;"},
             Case{"]]><!-- & --", "]]><!-- & --"},
             Case{"line\nfeed\x1b[2J\x01", "line␊feed␛[2J␁"},
             Case{"no character \uFFFE\uFFFF", "no character \uFFFD\uFFFD"},
             Case{"latin caf\xE9", "latin caf\uFFFD"},
             Case{"evil\u202Egpj.exe", "evil\\u{202E}gpj.exe"},
             Case{"漢字 \U0001F600 Ωμέγα", "漢字 \U0001F600 Ωμέγα"},
         }) {
        const TemporaryFolder folder;
        std::error_code error;
        // Some file systems take no name that is not text.
        if (!fs::create_directory(folder.path(one.name), error))
            continue;
        folder.makeFile(one.name + "/file", 10'000);
        const Picture picture = drawn({"treemap", folder.path(), "--width=900", "--height=90"});
        ASSERT_EQ(picture.tiles.size(), 1U);
        EXPECT_EQ(picture.tiles[0].name, one.shown);
        ASSERT_EQ(picture.tiles[0].label.size(), 2U);
        EXPECT_EQ(picture.tiles[0].label[0], one.shown);
        EXPECT_THAT(drawn({"treemap", folder.path(one.name), "--width=9", "--height=9"}).title,
                    ::testing::EndsWith("/" + one.shown));
    }
}

TEST(TreemapCommand, ElidesLabelsInTheMiddle) {
    const TemporaryFolder folder;
    std::string name = "Ω begin ";
    for (int i = 0; i < 40; ++i)
        name += "漢i";
    folder.makeFile(name + " end Ω", 10'000);
    const Picture picture = drawn({"treemap", folder.path(), "--width=200", "--height=90"});
    ASSERT_EQ(picture.tiles.size(), 1U);
    ASSERT_EQ(picture.tiles[0].label.size(), 2U);
    EXPECT_THAT(picture.tiles[0].label[0], ::testing::MatchesRegex("Ω begin .*….* end Ω"));
    const qsizetype length = QString::fromStdString(picture.tiles[0].label[0]).size();
    EXPECT_GT(length, 20);
    EXPECT_LT(length, 35);
}

TEST(TreemapCommand, ReplacesFileAtomically) {
    const TemporaryFolder folder;
    for (int i = 0; i < 200; ++i)
        folder.makeFile("some file " + std::to_string(i), 5'000);
    const TemporaryFolder elsewhere;
    const std::string file = elsewhere.writeFile("picture.svg", "before");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    const std::string link = elsewhere.makeLink("link.svg", "picture.svg");
    const std::vector<std::string> arguments = {"treemap", folder.path(), "--width=900", "--height=700",
                                                "--svg"};
    const auto drawInto = [&](
                              const std::string &path, const std::function<void()> &prepare = [] {}) {
        std::vector<std::string> words = arguments;
        words.push_back(path);
        return runProgram(words, prepare);
    };
    const auto entries = [&] {
        return std::distance(fs::directory_iterator(elsewhere.path()), fs::directory_iterator());
    };

    // A file system that is full, as near as it gets: no file may grow beyond a kilobyte.
    const Outcome failed = drawInto(file, [] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1024, 1024};
        setrlimit(RLIMIT_FSIZE, &limit);
    });
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out, "");
    EXPECT_EQ(contentOf(file), "before");
    EXPECT_EQ(entries(), 2);

    EXPECT_EQ(drawInto(link).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(read(contentOf(file)).tiles.size(), 81U);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
    EXPECT_EQ(entries(), 2);

    const std::string fresh = elsewhere.path("fresh.svg");
    EXPECT_EQ(drawInto(fresh, [] { umask(027); }).status, 0);
    EXPECT_EQ(fs::status(fresh).permissions(), fs::perms(0640));
    EXPECT_EQ(drawInto("relative.svg", inFolder(elsewhere.path())).status, 0);
    EXPECT_TRUE(fs::exists(elsewhere.path("relative.svg")));

    for (const auto &[path, sentence] :
         {std::pair(elsewhere.path("missing/p.svg"), "No such file or directory"),
          std::pair(elsewhere.path(), "Is a directory")}) {
        const Outcome outcome = drawInto(path);
        EXPECT_EQ(outcome.status, 1) << path;
        EXPECT_EQ(outcome.err, "brimvalectl: " + path + ": " + sentence + "\n");
    }
}

} // namespace brimvale::testing
