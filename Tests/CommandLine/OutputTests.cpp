#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace brimvale::testing {

TEST(Output, WriteFailureIsAnError) {
    const TemporaryFolder folder;
    for (int i = 0; i < 500; ++i) // more than one buffer full
        folder.makeFolder("folder " + std::to_string(i) + std::string(200, '.'));
    const auto closeIt = [] { close(STDOUT_FILENO); };
    const auto fillIt = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
    const bool hasFull = std::filesystem::exists("/dev/full");
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"--version"},
                                                      {"scan", folder.path()},
                                                      {"scan", "--json", folder.path()},
                                                      {"size", folder.path()}}) {
        const Outcome closed = runProgram(arguments, closeIt);
        EXPECT_EQ(closed.status, 1) << arguments.front();
        EXPECT_EQ(closed.err, "brimvalectl: standard output: Bad file descriptor\n");
        if (!hasFull)
            continue;
        const Outcome full = runProgram(arguments, fillIt);
        EXPECT_EQ(full.status, 1) << arguments.front();
        EXPECT_EQ(full.err, "brimvalectl: standard output: No space left on device\n");
    }
}

TEST(Output, LimitOnFileSizesIsAnError) {
    const TemporaryFolder folder;
    folder.makeFile("file");
    const Outcome outcome =
        runProgram({"treemap", folder.path(), "--width=9", "--height=9", "--svg", folder.path("svg")}, [] {
            const rlimit small{64, 64};
            setrlimit(RLIMIT_FSIZE, &small);
            dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("svg")));
    const Outcome printed = runProgram({"--help"}, [] {
        const rlimit small{64, 64};
        setrlimit(RLIMIT_FSIZE, &small);
    });
    EXPECT_EQ(printed.status, 1);
    EXPECT_EQ(printed.err, "brimvalectl: standard output: File too large\n");
}

} // namespace brimvale::testing
