#include "Platform/Linux/BtrfsSnapshots.h"
#include "Platform/Linux/Snapper.h"
#include "Platform/Linux/Timeshift.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;
using ::testing::UnorderedElementsAre;

/// Tools with a stand-in for Snapper, which prints these tables for two configurations.
Tools toolsWithSnapper(const TemporaryFolder &folder, const std::string &configurations,
                       const std::string &snapshots) {
    Tools tools = platformTools();
    tools.snapper = folder.makeScript("snapper", "case $* in\n'--csvout --iso --utc list-configs') cat '" +
                                                     folder.writeFile("configurations", configurations) +
                                                     "' ;;\n'--csvout --iso --utc -c root list --columns "
                                                     "number,default,active,date,used-space,description') "
                                                     "cat '" +
                                                     folder.writeFile("snapshots", snapshots) +
                                                     "' ;;\n*) exit 1 ;;\nesac\n");
    return tools;
}

std::vector<std::string> namesOf(const std::vector<SnapperSnapshot> &snapshots) {
    std::vector<std::string> names;
    for (const SnapperSnapshot &one : snapshots)
        names.push_back(one.snapshot.name);
    return names;
}

bool isAny(const std::string & /*subvolume*/) {
    return true;
}

std::string nameIn(const std::string &folder, const std::string &path) {
    return path.substr(folder.size() + 1);
}

} // namespace

TEST(Snapshots, SnapperListsAllButTheRunningSystem) {
    const TemporaryFolder folder;
    const std::string titles = "number,default,active,date,used-space,description\n";
    const Tools tools = toolsWithSnapper(
        folder, "config,subvolume\nroot,/\nhome,/home\n-x,/x\n",
        titles + "0,no,no,,,current\n1,yes,no,2026-05-01 10:15:00,16384,first root filesystem\n"
                 "2,no,yes,2026-05-01 10:15:00,16384,booted\n"
                 "31,no,no,2026-05-01 10:15:00,16384,\"before, \"\"upgrade\"\"\nof all\"\n"
                 "32,no,no,,,\n007,no,no,,,\n33;reboot,no,no,,,\n-1,no,no,,,\n");
    const std::vector<SnapperSnapshot> listed = snapperSnapshots(tools, isAny);
    ASSERT_THAT(namesOf(listed), ElementsAre("root 31", "root 32"));
    EXPECT_EQ(listed[0].path, "/.snapshots/31/snapshot");
    EXPECT_EQ(listed[0].snapshot.description, "before, \"upgrade\"\nof all");
    EXPECT_EQ(listed[0].snapshot.exclusiveBytes, 16384);
    EXPECT_EQ(iso8601(*listed[0].snapshot.date), "2026-05-01T10:15:00Z");
    EXPECT_THAT(listed[0].snapshot.deletion, ElementsAre(tools.snapper, "-c", "root", "delete", "31"));
    EXPECT_FALSE(listed[1].snapshot.date || listed[1].snapshot.exclusiveBytes);

    const auto isHome = [](const std::string &subvolume) { return subvolume == "/home"; };
    EXPECT_THAT(snapperSnapshots(tools, isHome), IsEmpty()) << "it is refused";
    // Another version prints other columns.
    EXPECT_THAT(
        snapperSnapshots(toolsWithSnapper(folder, "config,subvolume\nroot,/\n", "number\n1\n"), isAny),
        IsEmpty());
    EXPECT_THAT(snapperSnapshots(toolsWithSnapper(folder, "no settings\n", titles), isAny), IsEmpty());
    Tools without = tools;
    without.snapper = folder.path("missing");
    EXPECT_THAT(snapperSnapshots(without, isAny), IsEmpty());
}

TEST(Snapshots, TimeshiftNamesAreTimes) {
    const TemporaryFolder folder;
    folder.makeFolder("timeshift/snapshots/2026-05-01_10-00-01/localhost");
    folder.makeFolder("timeshift/snapshots/2026-05-01_10-00");
    folder.makeFolder("timeshift/snapshots/--all");
    folder.makeFolder("timeshift/snapshots-hourly/2026-05-01_11-00-01");
    folder.makeFolder("timeshift-btrfs/snapshots/2026-06-02_23-59-59/@");
    Tools tools = platformTools();
    tools.timeshift = folder.makeScript("program", "exit 1");
    const std::vector<VolumeSnapshot> listed = timeshiftSnapshotsIn(folder.path(), tools);
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0].name, "2026-05-01_10-00-01");
    EXPECT_THAT(listed[0].deletion, ElementsAre(tools.timeshift, "--delete", "--snapshot",
                                                "2026-05-01_10-00-01", "--yes", "--scripted"));
    EXPECT_EQ(*listed[1].date - *listed[0].date,
              std::chrono::days(32) + std::chrono::hours(13) + std::chrono::seconds(59 * 60 + 58));
    tools.timeshift = folder.path("missing");
    EXPECT_THAT(timeshiftSnapshotsIn(folder.path(), tools)[0].deletion, IsEmpty());
    EXPECT_EQ(timeshiftNameOf("/run/x/timeshift-btrfs/snapshots/2026-06-02_23-59-59/@home"),
              "2026-06-02_23-59-59");
    EXPECT_EQ(timeshiftNameOf("/timeshift-btrfs/snapshots/mine"), "");
    EXPECT_EQ(timeshiftNameOf("/home/2026-06-02_23-59-59"), "");
}

TEST(Snapshots, BtrfsListsReadOnlyOnesToEveryone) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string volume = folder.makeFolder("volume");
        EXPECT_THAT(btrfsSnapshotsIn(folder.path()), IsEmpty()) << "no Btrfs, or one without snapshots";
        if (!testing::ownMounts() || !testing::mountBtrfs(volume))
            GTEST_SKIP() << "there is no Btrfs here";
        ASSERT_TRUE(testing::makeSubvolume(volume, "home"));
        folder.makeFolder("volume/home/inner");
        folder.makeFolder("volume/closed");
        ASSERT_TRUE(testing::makeSubvolume(volume + "/home/inner", "sub"));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/home", volume, "kept", true));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/home", volume, "working", false));
        ASSERT_TRUE(
            testing::makeSnapshot(volume + "/home/inner/sub", volume + "/working/inner", "deep", true));
        ASSERT_TRUE(testing::makeSnapshot(volume + "/home", volume + "/closed", "secret", true));
        const auto names = [&] {
            std::vector<std::string> paths;
            for (const BtrfsSnapshot &one : btrfsSnapshotsIn(volume)) {
                paths.push_back(nameIn(volume, one.path));
                EXPECT_LT(std::chrono::abs(now() - one.date.value()), std::chrono::hours(1));
                EXPECT_FALSE(one.exclusiveBytes) << "there are no quotas";
            }
            return paths;
        };
        EXPECT_THAT(names(), UnorderedElementsAre("kept", "working/inner/deep", "closed/secret"));
        std::filesystem::permissions(volume + "/closed", std::filesystem::perms::none);
        for (const std::string &path : {folder.path(), volume})
            std::filesystem::permissions(path, std::filesystem::perms(0755));
        testing::becomeOrdinaryUser();
        EXPECT_THAT(names(), UnorderedElementsAre("kept", "working/inner/deep"));
    });
}

} // namespace brimvale
