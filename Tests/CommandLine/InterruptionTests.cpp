#include "CommandLine/Interruption.h"

#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <unistd.h>

namespace brimvale::testing {

using commandLine::Interruption;
using ::testing::ExitedWithCode;
using ::testing::KilledBySignal;

TEST(Interruption, PrintsPartialResult) {
    const TemporaryFolder folder;
    folder.makeFile("sub/file", 2'000'000);
    struct Case {
        std::vector<std::string> arguments;
        std::string output; ///< a part of it
    };
    for (const int signal : {SIGINT, SIGTERM})
        for (const Case &one :
             {Case{{"scan", "--json", folder.path()}, "\"files\":0,"},
              Case{{"scan", folder.path()}, "\n0 files in 0 folders, "},
              Case{{"size", "--json", folder.path()}, "[]\n"}, Case{{"cleanup", "--json"}, "\"entries\":[]"},
              Case{{"overview"}, "\n"}, Case{{"category", "systemData", "--json"}, "\"measured\":"}}) {
            const Outcome outcome = runProgram(one.arguments, pending(signal));
            EXPECT_EQ(outcome.status, 130) << one.arguments.front();
            EXPECT_EQ(outcome.err, "brimvalectl: interrupted: the figures are partial\n");
            EXPECT_THAT(outcome.out, ::testing::HasSubstr(one.output)) << one.arguments.front();
        }
}

TEST(Interruption, SecondSignalEndsTheProgram) {
    // The first one is taken; whichever comes second ends the program.
    for (const int second : {SIGINT, SIGTERM})
        EXPECT_EXIT(
            {
                const StopFlag flag;
                const Interruption interruption(flag);
                std::raise(SIGINT);
                if (flag.isSet())
                    std::raise(second);
                _exit(0);
            },
            KilledBySignal(second), "");
    // None is taken once the work is done.
    EXPECT_EXIT(
        {
            const StopFlag flag;
            { const Interruption interruption(flag); }
            std::raise(SIGTERM);
            _exit(0);
        },
        KilledBySignal(SIGTERM), "");
    // A program that was started to ignore it goes on.
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_IGN);
            const StopFlag flag;
            {
                const Interruption interruption(flag);
                std::raise(SIGINT);
            }
            std::raise(SIGINT);
            _exit(flag.isSet() ? 1 : 0);
        },
        ExitedWithCode(0), "");
}

} // namespace brimvale::testing
