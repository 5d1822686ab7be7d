#include "Core/Storage/VolumeInfo.h"
#include "Platform/Linux/DistantCapacity.h"
#include "Platform/ProcessRunner.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <set>
#include <sstream>

namespace brimvale {

namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::Not;
using testing::TemporaryFolder;

std::string outputOf(const std::string &script) {
    const auto result = runProcess(platformTools().shell, {"-c", script}, StandardError::discarded);
    return result ? result->output : "";
}

std::vector<std::string> pointsOf(const std::vector<MountedVolume> &volumes) {
    std::vector<std::string> points;
    for (const MountedVolume &volume : volumes)
        points.push_back(volume.url.path());
    return points;
}

const MountedVolume *volumeAt(const std::vector<MountedVolume> &volumes, const std::string &point) {
    const auto found = std::find_if(volumes.begin(), volumes.end(),
                                    [&](const MountedVolume &one) { return one.url.path() == point; });
    return found == volumes.end() ? nullptr : &*found;
}

} // namespace

TEST(Volumes, FiguresMatchDf) {
    for (const VolumeInfo &volume : VolumeInfo::current(2s)) {
        std::istringstream df(
            outputOf("df -B1 --output=used,avail -- '" + volume.url.path() + "' | tail -n 1"));
        std::int64_t used = 0, available = 0;
        if (!(df >> used >> available))
            continue; // there is no df, or it shows no figures
        // Others write to the disk meanwhile.
        const auto tolerance = static_cast<double>(volume.totalCapacity) / 200;
        EXPECT_NEAR(static_cast<double>(volume.totalCapacity - volume.trueFree), static_cast<double>(used),
                    tolerance)
            << volume.url.path();
        EXPECT_NEAR(static_cast<double>(volume.trueFree), static_cast<double>(available), tolerance);
    }
}

TEST(Volumes, MatchFindmnt) {
    std::set<std::string> devices;
    std::istringstream table(outputOf("findmnt -rno MAJ:MIN,FSTYPE,SOURCE --real"));
    for (std::string device, type, source; table >> device >> type >> source;)
        if (source.starts_with("/dev/") && type != "squashfs")
            devices.insert(device);
    const std::vector<MountedVolume> volumes = mountedVolumes(2s);
    std::set<std::string> shown;
    for (const MountedVolume &volume : volumes) {
        const std::string device =
            outputOf("findmnt -rno MAJ:MIN --mountpoint '" + volume.url.path() + "' | tail -n 1");
        EXPECT_TRUE(shown.insert(device.substr(0, device.find('\n'))).second) << volume.url.path();
    }
    ASSERT_NE(volumeAt(volumes, "/"), nullptr);
    EXPECT_TRUE(*volumeAt(volumes, "/")->isRootFileSystem);
    EXPECT_GT(*volumeAt(volumes, "/")->totalCapacity, 0);
    // Where single files of a disk are all that is mounted of it, the disk is not shown.
    for (const std::string &device : devices) {
        const std::string folders =
            outputOf("findmnt -rno TARGET,MAJ:MIN | grep ' " + device +
                     "$' | while read -r point _; do [ -d \"$point\" ] && echo folder; done");
        EXPECT_TRUE(folders.empty() || shown.count(device) > 0) << device;
    }
}

TEST(Volumes, ListDiskOnceAndNoMemory) {
    const TemporaryFolder folder;
    const std::string disk = folder.makeFolder("disk"), again = folder.makeFolder("again"),
                      memory = folder.makeFolder("memory"), file = folder.makeFile("file"),
                      other = folder.makeFile("other");
    const std::string image = folder.path("image");
    testing::inChild([&] {
        if (!testing::ownMounts() || !testing::mountMemory(memory) || !testing::mountAlsoAt(file, other))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_THAT(pointsOf(mountedVolumes(0ms)), Not(Contains(memory)));
        EXPECT_THAT(pointsOf(mountedVolumes(0ms)), Not(Contains(other)));
        if (outputOf("PATH=$PATH:/sbin:/usr/sbin; truncate -s 16M " + image + " && mkfs.ext4 -q -m 5 " +
                     image + " && mount -o loop " + image + " " + disk + " && echo mounted") != "mounted\n")
            GTEST_SKIP() << "mounting is not permitted here";
        if (!testing::mountAlsoAt(disk, again))
            GTEST_SKIP() << "mounting is not permitted here";
        const std::vector<MountedVolume> volumes = mountedVolumes(0ms);
        EXPECT_THAT(pointsOf(volumes), Contains(disk));
        EXPECT_THAT(pointsOf(volumes), Not(Contains(again)));
        const MountedVolume *volume = volumeAt(volumes, disk);
        ASSERT_NE(volume, nullptr);
        // A file system that nobody else writes to is as df has it to the byte, reserved blocks included.
        std::int64_t used = 0, available = 0;
        std::istringstream(outputOf("df -B1 --output=used,avail " + disk + " | tail -n 1")) >> used >>
            available;
        EXPECT_EQ(*volume->totalCapacity - *volume->available, used);
        EXPECT_EQ(*volume->available, available);
        EXPECT_NEAR(static_cast<double>(*volume->reserved), 0.05 * 16 * 1024 * 1024, 0.02 * 16 * 1024 * 1024);
        EXPECT_EQ(volume->isInternal, true);
    });
}

TEST(Volumes, DeadFileSystemTimesOut) {
    const TemporaryFolder folder;
    const std::string dead = folder.makeFolder("dead"), second = folder.makeFolder("second");
    testing::inChild([&] {
        if (!testing::ownMounts() || !testing::mountSilent(dead) || !testing::mountSilent(second))
            GTEST_SKIP() << "mounting is not permitted here";
        for (int round = 0; round < 3; ++round) {
            const auto start = std::chrono::steady_clock::now();
            const std::vector<MountedVolume> volumes = mountedVolumes(20ms);
            // The bound is generous since the machine may be busy; without patience there would be no end.
            EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
            EXPECT_THAT(pointsOf(volumes), Contains(dead));
            const MountedVolume *volume = volumeAt(volumes, dead);
            EXPECT_TRUE(volume != nullptr && !volume->totalCapacity);
            EXPECT_TRUE(*volumeAt(volumes, "/")->totalCapacity > 0);
        }
    });
}

TEST(Volumes, RemoteCapacityIsCachedWhileAsking) {
    const TemporaryFolder folder;
    const Mount mount{1, 0, "0:99", "/", folder.path(), "nfs", "server:/"};
    const auto ask = [&](std::chrono::milliseconds patience, const std::string &tool) {
        Tools tools = platformTools();
        tools.fileStatus = tool;
        return distantCapacities({mount}, patience, tools).front();
    };
    const std::string release = folder.path("release");
    const std::string first = folder.makeScript("first", "echo 512 1000 400 300");
    const std::string slow =
        folder.makeScript("slow", "mkfifo " + release + "; echo > " + release + "; echo 512 10 4 4");
    const std::string same = folder.makeScript("same", "echo 512 10 4 4");
    const std::string failing = folder.makeScript("failing", "echo 1 1 1 1; exit 1");

    const std::optional<Capacity> known = ask(1min, first);
    ASSERT_TRUE(known);
    EXPECT_EQ(known->total, 512 * 900);
    EXPECT_EQ(known->available, 512 * 300);
    // While the question is open, nobody asks again and the old answer holds.
    EXPECT_EQ(ask(0ms, slow)->total, 512 * 900);
    EXPECT_EQ(ask(1ms, failing)->total, 512 * 900);
    outputOf("until [ -p " + release + " ]; do :; done; cat " + release);
    EXPECT_EQ(ask(1min, same)->total, 512 * 10);
    EXPECT_FALSE(ask(1min, failing));
    EXPECT_FALSE(ask(1min, folder.path("no such tool")));

    EXPECT_FALSE(capacityOf(4096, ~0ULL, 0, ~0ULL)) << "more than can be counted";
    EXPECT_FALSE(capacityOf(4096, 10, 11, 0));
}

} // namespace brimvale
