#include "Core/Storage/LocalSnapshot.h"
#include "Platform/Host.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

Host macWith(const std::string &tmutil) {
    Host host = Host::current();
    host.system = System::macOS;
    host.tools.tmutil = tmutil;
    return host;
}

/// What is listed where the tool prints this, one name and date a line.
std::string listed(const std::string &printed, int status = 0) {
    const TemporaryFolder folder;
    const std::string tool = folder.makeScript(
        "tmutil", "[ \"$*\" = 'listlocalsnapshots /a volume' ] && cat '" +
                      folder.writeFile("printed", printed) + "'\nexit " + std::to_string(status));
    std::string text;
    for (const LocalSnapshot &one : LocalSnapshot::list("/a volume", macWith(tool)))
        text += one.name + " " + (one.date ? iso8601(*one.date) : "none") + "\n";
    return text;
}

} // namespace

TEST(LocalSnapshot, ListsNewestFirst) {
    const std::string expected = "com.apple.TimeMachine.2024-11-03-000000 2024-11-02T23:00:00Z\n"
                                 "com.apple.TimeMachine.2024-05-01-101500.local 2024-05-01T08:15:00Z\n"
                                 "com.apple.TimeMachine.2024-01-31-235959.local 2024-01-31T22:59:59Z\n"
                                 "com.apple.TimeMachine.garbage.local none\n";
    for (const char *header : {"Snapshots for disk /:\n", "Snapshots for volume group containing disk /:\n"})
        EXPECT_EQ(listed(std::string(header) + "\tcom.apple.TimeMachine.2024-01-31-235959.local \n\n"
                                               "com.apple.TimeMachine.garbage.local\n"
                                               "com.apple.os.update-0123456789ABCDEF\n"
                                               " com.apple.TimeMachine.2024-05-01-101500.local\n"
                                               "com.apple.TimeMachine.2024-11-03-000000"),
                  expected);
    // Whatever the tool's status, what it printed counts.
    EXPECT_EQ(listed("com.apple.TimeMachine.2024-05-01-101500.local\n", 3),
              "com.apple.TimeMachine.2024-05-01-101500.local 2024-05-01T08:15:00Z\n");
}

TEST(LocalSnapshot, HasNoDateWhenTheNameHoldsNone) {
    for (const char *name :
         {"2024-13-01-000000", "2024-02-30-000000", "2024-02-28-240000", "2024-02-28-006000",
          "2024-02-28-00600", "2024-02-28-000060", "-024-02-28-000000", "2024-+2-28-000000",
          "2024-02-28-0000001", "2024/02/28-000000", "9999-02-28-000000", "", "2024-02-28"}) {
        const std::string line = std::string("com.apple.TimeMachine.") + name + ".local";
        EXPECT_EQ(listed(line), line + " none\n");
    }
}

TEST(LocalSnapshot, ListsNothingWithoutTmutil) {
    EXPECT_EQ(LocalSnapshot::list("/", macWith("")).size(), 0U);
    EXPECT_EQ(LocalSnapshot::list("/", macWith("/nowhere/tmutil")).size(), 0U);
    EXPECT_EQ(listed("com.apple.TimeMachine.\xFF\n"), "") << "not text";
    EXPECT_EQ(listed(""), "");
    EXPECT_FALSE(snapshotNote(0));
    EXPECT_TRUE(snapshotNote(1)->starts_with("1 snapshot. These hold"));
    EXPECT_TRUE(snapshotNote(3)->starts_with("3 snapshots. These hold"));
}

} // namespace brimvale
