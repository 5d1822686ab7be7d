#include "CommandLine/Interruption.h"

#include "CommandLine/Program.h"
#include "Core/DiskScanner.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace brimvale::testing {

using commandLine::Interruption;
using ::testing::ExitedWithCode;
using ::testing::KilledBySignal;

namespace {

constexpr const char *remark = "brimvalectl: interrupted: the figures are partial\n";

} // namespace

TEST(Interruption, StillPrintsWhatWasCounted) {
    const TemporaryFolder folder;
    folder.makeFile("sub/file", 2'000'000);
    for (const int signal : {SIGINT, SIGTERM}) {
        const Outcome json = runProgram({"scan", "--json", folder.path()}, pending(signal));
        EXPECT_EQ(json.status, 130);
        EXPECT_EQ(json.err, remark);
        const QJsonDocument document = jsonIn(json);
        EXPECT_EQ(document["root"]["path"].toString().toStdString(), folder.path());
        EXPECT_EQ(document["files"].toInteger(-1), 0);

        const Outcome table = runProgram({"scan", folder.path()}, pending(signal));
        EXPECT_EQ(table.status, 130);
        EXPECT_EQ(table.err, remark);
        EXPECT_THAT(table.out, ::testing::HasSubstr("\n0 files in 0 folders, "));

        const Outcome size = runProgram({"size", "--json", folder.path()}, pending(signal));
        EXPECT_EQ(size.status, 130);
        EXPECT_EQ(size.err, remark);
        EXPECT_EQ(size.out, "[]\n");
    }
}

TEST(Interruption, StopsAWalkThatIsUnderWay) {
    const TemporaryFolder folder;
    for (int i = 0; i < 50; ++i)
        folder.makeFile("sub/" + std::to_string(i), 8'192);
    const ScanOptions options;
    const std::int64_t whole = DiskScanner::quickSize(folder.path(), options);

    WalkPool pool(0);
    ScanStats stats;
    const Interruption interruption(stats);
    int asked = 0;
    const std::int64_t part = DiskScanner::quickSize(
        folder.path(), options,
        [&] {
            if (++asked == 20)
                std::raise(SIGINT);
            return stats.cancelled();
        },
        pool);
    EXPECT_EQ(asked, 20);
    EXPECT_GT(part, 0);
    EXPECT_LT(part, whole);
}

TEST(Interruption, LeavesTheSecondSignalItsForce) {
    // The first one is taken; whichever comes second ends the program.
    for (const int second : {SIGINT, SIGTERM})
        EXPECT_EXIT(
            {
                ScanStats stats;
                const Interruption interruption(stats);
                std::raise(SIGINT);
                if (stats.cancelled())
                    std::raise(second);
                _exit(0);
            },
            KilledBySignal(second), "");
    // None is taken once the work is done.
    EXPECT_EXIT(
        {
            ScanStats stats;
            { const Interruption interruption(stats); }
            std::raise(SIGTERM);
            _exit(0);
        },
        KilledBySignal(SIGTERM), "");
    // A program that was started to ignore it goes on.
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_IGN);
            ScanStats stats;
            {
                const Interruption interruption(stats);
                std::raise(SIGINT);
            }
            std::raise(SIGINT);
            _exit(stats.cancelled() ? 1 : 0);
        },
        ExitedWithCode(0), "");
}

} // namespace brimvale::testing
