#include "CommandLine/ProgressLine.h"

#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <regex>
#include <sys/resource.h>
#include <unistd.h>

#include <QList>
#include <QString>

namespace brimvale::testing {

using commandLine::ScanProgress;
using ::testing::EndsWith;
using ::testing::StartsWith;

TEST(ScanProgress, PrintsOneSafeLineAndErasesIt) {
    for (const int columns : {5, 20, 40, 300}) {
        Terminal terminal(columns);
        ScanStats stats;
        stats.add(1'234, 5'000'000);
        stats.setCurrent("/somewhere/\033[2J\n\xFF/\u6F22\u5B57\u6F22\u5B57\u6F22\u5B57/end");
        const int realError = dup(STDERR_FILENO);
        dup2(terminal.device(), STDERR_FILENO);
        { const ScanProgress progress(stats); }
        dup2(realError, STDERR_FILENO);
        close(realError);

        const std::string wiped = "\r\033[K";
        const std::string written = terminal.written();
        ASSERT_THAT(written, StartsWith(wiped));
        ASSERT_THAT(written, EndsWith(wiped));
        const std::string line = written.substr(wiped.size(), written.size() - 2 * wiped.size());
        EXPECT_EQ(std::regex_replace(line, std::regex("\r\033\\[K"), "").find_first_of("\033\n\r"),
                  std::string::npos);
        std::size_t width = 0;
        for (const char32_t character : QString::fromStdString(line.substr(0, line.find('\r'))).toUcs4())
            width += character == U'\u6F22' || character == U'\u5B57' ? 2 : 1;
        EXPECT_LT(static_cast<int>(width), columns) << line;
        if (columns >= 40) {
            EXPECT_THAT(line, ::testing::HasSubstr("\u5B57/end"));
        }
    }
}

TEST(ScanProgress, IsSilentWithoutAThread) {
    EXPECT_EQ("passed", answerOfChild([] {
                  const Terminal terminal;
                  becomeOrdinaryUser();
                  const rlimit none{0, 0};
                  setrlimit(RLIMIT_NPROC, &none);
                  dup2(terminal.device(), STDERR_FILENO);
                  const ScanStats stats;
                  { const ScanProgress progress(stats); }
                  return "passed";
              }));
}

TEST(ScanProgress, ShowsOnATerminal) {
    const TemporaryFolder folder;
    folder.makeFile("file", 1'000);
    Terminal terminal;
    const Outcome outcome =
        runProgram({"scan", folder.path()}, [&] { dup2(terminal.device(), STDERR_FILENO); });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith(" "));
    const std::string written = terminal.written();
    EXPECT_THAT(written, StartsWith("\r\033[KScanning: "));
    EXPECT_THAT(written, EndsWith("\r\033[K"));
}

} // namespace brimvale::testing
