#include "CommandLine/Program.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <unistd.h>

namespace brimvale::testing {

using ::testing::EndsWith;

TEST(UnusualTrash, IsNamedAfterTheRemoval) {
    inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume"), file = volume + "/file";
        if (!ownMounts() || !mountMemory(volume))
            GTEST_SKIP() << "mounting is not permitted here";
        setenv("XDG_DATA_HOME", folder.makeLink("volume/data", "data").c_str(), 1);
        const std::string trash = volume + "/.Trash-" + std::to_string(geteuid());
        const auto remark = [&](const std::string &name) {
            return "It is now “" + trash + "/files/" + name +
                   "”, because the Trash in the home folder can’t be used.";
        };
        folder.makeFile("volume/file");
        const Outcome outcome = runProgram({"remove", "--yes", file});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, EndsWith("\n" + file + ": " + remark("file") + "\n"));
        folder.makeFile("volume/file");
        const QJsonArray remarks =
            jsonIn(runProgram({"remove", "--yes", "--json", file})).object()["remarks"].toArray();
        ASSERT_EQ(remarks.size(), 1);
        EXPECT_EQ(remarks[0].toObject()["url"].toString().toStdString(), file);
        EXPECT_EQ(remarks[0].toObject()["reason"].toString().toStdString(), remark("file.2"));
    });
}

} // namespace brimvale::testing
