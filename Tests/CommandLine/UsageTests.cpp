#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale::testing {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(Usage, WrongUsageIsExplained) {
    struct Case {
        std::vector<std::string> arguments;
        std::string sentence;
    };
    for (const Case &one : {
             Case{{}, "a command is missing (see \"brimvalectl --help\")"},
             Case{{"scna"}, "unknown command \"scna\""},
             Case{{"", "scan"}, "unknown command \"\""},
             Case{{"bad\033[2J\n\xFF"}, "unknown command \"bad␛[2J␊\uFFFD\""},
             Case{{"--json", "scan"}, "unknown option \"--json\""},
             Case{{"--system"}, "\"--system\" needs a value: macos|linux"},
             Case{{"--system", "beos", "scan"}, "\"--system\" takes macos or linux, not \"beos\""},
             Case{{"--version=2"}, "\"--version\" takes no value"},
             Case{{"scan", "--system", "linux"}, "scan: unknown option \"--system\""},
             Case{{"scan", "--dept", "1"},
                  "scan: unknown option \"--dept\" (see \"brimvalectl scan --help\")"},
             Case{{"scan", "a", "b"}, "scan: unexpected argument \"b\""},
             Case{{"scan", "--depth"}, "scan: \"--depth\" needs a value: N"},
             Case{{"scan", "--depth", "-1"}, "scan: \"--depth\" takes a whole number from 0 up, not \"-1\""},
             Case{{"scan", "--top", "1.5"}, "scan: \"--top\" takes a whole number"},
             Case{{"scan", "--top", "+1"}, "scan: \"--top\" takes a whole number"},
             Case{{"scan", "--min-size", " 1"}, "scan: \"--min-size\" takes a whole number"},
             Case{{"scan", "--min-size", "9223372036854775808"}, "scan: \"--min-size\" takes a whole number"},
             Case{{"scan", "--json=yes"}, "scan: \"--json\" takes no value"},
             Case{{"size"}, "size: missing argument: PATH…"},
             Case{{"install-update", "/a.app", "/b.app"}, "install-update: missing argument: STAGED-APP"},
             Case{{"install-update", "a.app", "/b.app", "2"}, "install-update: it takes two absolute paths"},
             Case{{"install-update", "/a.app", "b.app", "2"}, "install-update: it takes two absolute paths"},
             Case{{"install-update", "/a.app", "/b.app", "1"}, "install-update: it takes two absolute paths"},
             Case{{"install-update", "/a.app", "/b.app", "--", "-1"},
                  "install-update: it takes two absolute paths"},
             Case{{"install-update", "/a.app", "/b.app", "2x"},
                  "install-update: it takes two absolute paths"},
             Case{{"remove", "--yes=no", "/"}, "remove: \"--yes\" takes no value"},
             Case{{"treemap", "/"}, "treemap: missing option: --width"},
             Case{{"treemap", "/", "--width", "100"}, "treemap: missing option: --height"},
             Case{{"treemap", "/", "--width=1", "--height=1", "--svg"},
                  "treemap: \"--svg\" needs a value: FILE"},
         }) {
        const Outcome outcome = runProgram(one.arguments);
        EXPECT_EQ(outcome.status, 2) << one.sentence;
        EXPECT_EQ(outcome.out, "") << one.sentence;
        EXPECT_THAT(outcome.err, StartsWith("brimvalectl: " + one.sentence));
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << one.sentence;
    }
}

TEST(Usage, HelpIsPrinted) {
    struct Case {
        std::vector<std::string> arguments;
        std::string begins, holds;
    };
    for (const Case &one : {
             Case{{"--help"}, "Usage: brimvalectl ", "\n  scan [PATH]  "},
             Case{{"--system", "macos", "--help", "nonsense"},
                  "Usage: brimvalectl ",
                  "\n  --system macos|linux  "},
             Case{{"scan", "--help"},
                  "Usage: brimvalectl scan [PATH] [--min-size BYTES] [--depth N] [--top N] ",
                  "\n  --depth N "},
             Case{{"--version"}, "brimvalectl ", "."},
         }) {
        const Outcome outcome = runProgram(one.arguments);
        EXPECT_EQ(outcome.status, 0) << one.begins;
        EXPECT_EQ(outcome.err, "");
        EXPECT_THAT(outcome.out, StartsWith(one.begins));
        EXPECT_THAT(outcome.out, HasSubstr(one.holds));
    }
}

TEST(Usage, TwoDashesEndOptions) {
    const TemporaryFolder folder;
    folder.makeFile("--json/file", 2'000'000);
    const auto enter = inFolder(folder.path());
    const Outcome outcome = runProgram({"--", "scan", "--depth", "0", "--", "--json"}, enter);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("  " + folder.path("--json") + "\n"));
}

} // namespace brimvale::testing
