#include "CommandLine/Program.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <gmock/gmock.h>

namespace brimvale::testing {

// The program does not wait for the volume when it ends either.
TEST(DeadVolume, IsNotListed) {
    const TemporaryFolder folder;
    const std::string dead = folder.makeFolder("dead");
    inChild([&] {
        if (!ownMounts() || !mountSilent(dead))
            GTEST_SKIP() << "mounting is not permitted here";
        const auto start = std::chrono::steady_clock::now();
        const Outcome outcome = runProgram({"volumes"});
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, ::testing::HasSubstr("MOUNTED AT\n"));
        EXPECT_THAT(outcome.out, ::testing::Not(::testing::HasSubstr(dead)));
    });
}

} // namespace brimvale::testing
