#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <sstream>
#include <unistd.h>

namespace brimvale::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The NAME column of a scan's table. It starts in the same column in every line, which is checked.
std::vector<std::string> namesOf(const std::string &table) {
    std::vector<std::string> lines = linesOf(table);
    EXPECT_GE(lines.size(), 4U);
    const std::size_t column = lines.front().find("NAME");
    EXPECT_NE(column, std::string::npos);
    lines.erase(lines.end() - 2, lines.end()); // an empty one and the summary
    std::vector<std::string> names;
    for (const std::string &line : lines) {
        // Only "–", of three bytes, makes bytes and characters differ there.
        std::string plain = std::regex_replace(line, std::regex("–"), "-");
        EXPECT_EQ(plain.substr(column - 2, 2), "  ") << line;
        EXPECT_NE(plain[column - 3], ' ') << line;
        names.push_back(std::regex_replace(plain.substr(column), std::regex("-$"), "–"));
    }
    return names;
}

} // namespace

TEST(ScanTable, ShowsLargestAndSumsUpTheRest) {
    const TemporaryFolder folder;
    folder.makeFile("big/first", 900'000);
    folder.makeFile("big/second", 800'000);
    folder.makeFile("big/third", 300'000);
    folder.makeFile("big/deep/deeper/x", 200'000);
    folder.makeFile("middle", 500'000);
    folder.makeFile("small/one", 5'000);
    folder.makeFile("small/two", 5'000);
    folder.makeFile("tiny", 1'000);
    struct Case {
        std::vector<std::string> options;
        std::vector<std::string> names;
    };
    for (const Case &one : {
             Case{{"--depth=1", "--top=2"}, {"├─ big/", "├─ middle", "└─ … 2 more"}},
             Case{{"--depth=3", "--top=3"},
                  {"├─ big/", "│  ├─ first", "│  ├─ second", "│  ├─ third", "│  └─ … 1 more", "├─ middle",
                   "├─ small/", "│  └─ … 2 smaller items", "└─ … 1 more"}},
             Case{{"--depth=9"},
                  {"├─ big/", "│  ├─ first", "│  ├─ second", "│  ├─ third", "│  └─ deep/", "│     └─ deeper/",
                   "│        └─ x", "├─ middle", "├─ small/", "│  └─ … 2 smaller items", "└─ tiny"}},
             Case{{"--depth=0"}, {}},
             Case{{"--top=0"}, {"└─ … 4 more"}},
         }) {
        std::vector<std::string> arguments = {"scan", "--min-size", "100000", folder.path()};
        arguments.insert(arguments.end(), one.options.begin(), one.options.end());
        const Outcome outcome = runProgram(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        std::vector<std::string> expected = {"NAME", folder.path()};
        expected.insert(expected.end(), one.names.begin(), one.names.end());
        EXPECT_EQ(namesOf(outcome.out), expected) << outcome.out;
        EXPECT_THAT(linesOf(outcome.out).back(), HasSubstr("8 files in 4 folders, "));
    }
}

TEST(ScanTable, EscapesControlCharactersInNames) {
    const TemporaryFolder folder;
    const std::string name = "a\nb\tc\x1b[31md\x7f"
                             "e\u009b2Jf\u202Eg\u2028h";
    folder.makeFile(name + "/" + name, 100'000);
    const Outcome outcome = runProgram({"scan", "--min-size=1", folder.path(name)});
    const std::string shown = "a␊b␉c␛[31md␡e\\u{009B}2Jf\\u{202E}g\\u{2028}h";
    EXPECT_THAT(namesOf(outcome.out), ElementsAre("NAME", folder.path() + "/" + shown, "└─ " + shown));

    const Outcome missing = runProgram({"size", folder.path(name) + "?"});
    EXPECT_EQ(missing.err, "brimvalectl: " + folder.path() + "/" + shown + "?: No such file or directory\n");
}

TEST(ScanTable, MarksSkippedAndUnreadableFolders) {
    const TemporaryFolder folder;
    folder.makeFile("Library/CloudStorage/Provider/file", 10'000);
    folder.makeFile("Library/closed/file", 10'000);
    std::filesystem::permissions(folder.path("Library/closed"), std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    const EnvironmentVariable home("HOME", folder.path());
    const Outcome outcome =
        runProgramUnprivileged(folder.path(), {"--system=macos", "scan", folder.path("Library")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("–      –  ├─ CloudStorage/  [skipped: owned by a cloud provider]\n"));
    EXPECT_THAT(outcome.out, HasSubstr("└─ closed/  [not readable]\n"));
    EXPECT_THAT(outcome.out, HasSubstr("≥ "));
    EXPECT_THAT(outcome.out, HasSubstr("\n0 files in 2 folders, "));
    EXPECT_THAT(outcome.out, HasSubstr(", 1 unreadable, "));
}

TEST(ScanTable, UsesStylesOnlyOnSuitableTerminals) {
    const TemporaryFolder folder;
    folder.makeFile("sub/file", 1'000);
    const std::vector<std::string> arguments = {"scan", folder.path()};
    const auto tableFor = [&](const char *type, const char *noColor) {
        Terminal terminal;
        EXPECT_EQ(runProgram(arguments,
                             [&] {
                                 dup2(terminal.device(), STDOUT_FILENO);
                                 setenv("TERM", type, 1);
                                 setenv("NO_COLOR", noColor, 1);
                             })
                      .status,
                  0);
        const std::string written = terminal.written();
        return written.substr(0, written.find("\n\n")); // without the time it took
    };
    const std::string captured = runProgram(arguments).out;
    const std::string plain = captured.substr(0, captured.find("\n\n"));
    EXPECT_EQ(plain.find('\033'), std::string::npos);
    EXPECT_EQ(tableFor("dumb", ""), plain);
    EXPECT_EQ(tableFor("xterm", "1"), plain);
    const std::string styled = tableFor("xterm", "");
    EXPECT_NE(styled, plain);
    EXPECT_EQ(std::regex_replace(styled, std::regex("\033\\[[0-9]+m"), ""), plain);
}

} // namespace brimvale::testing
