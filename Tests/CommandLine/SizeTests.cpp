#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::testing {

namespace {

/// The path and the size of each element.
using Measured = std::vector<std::pair<std::string, std::int64_t>>;

Measured measuredIn(const Outcome &outcome) {
    Measured measured;
    for (const QJsonValue &element : jsonIn(outcome).array())
        measured.emplace_back(element["path"].toString().toStdString(), element["size"].toInteger(-1));
    return measured;
}

} // namespace

TEST(Size, MeasuresEachPathAlone) {
    const TemporaryFolder folder;
    const std::string first = folder.makeFile("folder/first", 300'000);
    const std::string second = folder.makeFile("folder/sub/second", 70'000);
    const std::string link = folder.makeLink("link", "folder");
    std::filesystem::create_hard_link(first, folder.path("folder/again"));
    const std::int64_t whole = 2 * allocatedBytes(first) + allocatedBytes(second);

    const Outcome outcome = runProgram({"size", "folder", "--json", "./folder/../folder/first", "link",
                                        "link/", "--", folder.path("folder/sub")},
                                       inFolder(folder.path()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(measuredIn(outcome), (Measured{{folder.path("folder"), whole},
                                             {first, allocatedBytes(first)},
                                             {link, allocatedBytes(link)},
                                             {link, allocatedBytes(link)},
                                             {folder.path("folder/sub"), allocatedBytes(second)}}));
}

TEST(Size, ContinuesAfterAnError) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 10'000);
    const Outcome json = runProgram({"size", "--json", folder.path("missing"), file});
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.err, "brimvalectl: " + folder.path("missing") + ": No such file or directory\n");
    EXPECT_EQ(measuredIn(json), (Measured{{file, allocatedBytes(file)}}));

    const Outcome table = runProgram({"size", file, folder.path("missing"), file});
    EXPECT_EQ(table.status, 1);
    EXPECT_THAT(table.out, ::testing::MatchesRegex(" +SIZE  PATH\n( +[0-9.]+ KB  " + file + "\n){2}"));
}

TEST(Size, SaysWhatItLeftOut) {
    const TemporaryFolder folder;
    folder.makeFile("item/closed/file", 50'000);
    std::filesystem::permissions(folder.path("item/closed"), std::filesystem::perms::none);
    const std::string program = folder.makeFolder("program");
    for (const std::string &open : {folder.path(), folder.path("item"), program})
        std::filesystem::permissions(open, std::filesystem::perms(0777));
    const Outcome outcome = runProgramUnprivileged(program, {"size", folder.path("item")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "brimvalectl: " + folder.path("item") +
                               ": the size leaves out 1 item that could not be read\n");
}

TEST(Size, SkipsCloudProviderFolders) {
    const TemporaryFolder home;
    home.makeFile("Library/CloudStorage/Provider/file", 10'000);
    const std::string cloud = home.path("Library/CloudStorage");
    const Outcome table = runProgram({"--system", "macos", "size", cloud}, inHome(home.path()));
    EXPECT_EQ(table.status, 0);
    EXPECT_THAT(table.out, ::testing::HasSubstr("–  " + cloud + "  [skipped]\n"));
    const Outcome json = runProgram({"--system", "macos", "size", "--json", cloud}, inHome(home.path()));
    EXPECT_EQ(measuredIn(json), (Measured{{cloud, 0}}));
}

} // namespace brimvale::testing
