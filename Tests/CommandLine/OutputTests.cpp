#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
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

} // namespace brimvale::testing
