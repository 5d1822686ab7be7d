#include "Core/Removal/NodesToRemove.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>

namespace brimvale {

using testing::TemporaryFolder;

// A link stands for the folder that has both names on a Mac.
TEST(JoinedFolders, AreKnownByTheirUsualNames) {
    const TemporaryFolder folder;
    for (const char *item : {"Users/sample/Downloads/doomed", "Users/sample/Downloads/kept",
                             "Users/sample/Library/CloudStorage/kept", "System/Volumes/Data/Library/kept"})
        folder.makeFile(item, 5000);
    folder.makeFolder("Library");
    folder.makeLink("System/Volumes/Data/Users", "/Users");
    chmod(folder.path().c_str(), 0755);
    chmod(folder.path("Users/sample/Downloads").c_str(), 0777);
    const std::string answers = testing::answerOfChild([&]() -> std::string {
        if (!testing::enterRoot(folder.path()))
            return "not permitted";
        const Host host{System::macOS, FileURL("/Users/sample"), platformTools()};
        Host::useSystem(host.system);
        setenv("HOME", host.home.path().c_str(), 1);
        const std::string onVolume = "/System/Volumes/Data";
        std::string text;
        for (const std::string item : {"/Users/sample", "/Users/sample/Downloads/kept", "/Library/kept"})
            text += Remover::check(FileURL(onVolume + item)).value_or("admitted") + "\n";

        FSNode downloads("Downloads", onVolume + "/Users/sample/Downloads", true);
        downloads.setIdentity(fileStatus("/Users/sample/Downloads")->identity);
        downloads.adopt(std::make_unique<FSNode>("doomed", downloads, false));
        FSNode *doomed = downloads.children().front().get();
        doomed->setIdentity(fileStatus("/Users/sample/Downloads/doomed")->identity);
        const RemovalResult result = Remover::remove(entriesOf(std::vector{doomed}), RemovalMode::deleteNow);
        for (const RemovalResult::Failure &failure : result.failed)
            text += failure.reason + "\n";
        const bool isGone = Remover::isGone(FileURL("/Users/sample/Downloads/doomed"));
        text += isGone ? "gone\n" : "still there\n";
        const auto gone = GonePaths::throughLinks({FileURL("/Users/sample/Downloads/doomed")});
        text += std::to_string(goneNodes(downloads, gone).size()) + " of the tree\n";

        ScanStats stats;
        const ScanOptions options = ScanOptions::standard(host);
        const auto tree = DiskScanner::scan(onVolume + "/Users/sample/Library", options, stats);
        const bool isCloud =
            tree->children().front()->isCloudProvider &&
            options.cloudProviderPaths.contains(onVolume + host.home.path() + "/Library/CloudStorage");
        return text + tree->path() + (isCloud ? ", cloud" : ", walked");
    });
    if (answers == "not permitted")
        GTEST_SKIP() << "a root folder of one's own is not permitted here";
    EXPECT_EQ(answers, "/Users/sample is a structural directory and is never removed.\n"
                       "admitted\n"
                       "/System/Volumes/Data/Library/kept lives inside a protected system location.\n"
                       "gone\n"
                       "1 of the tree\n"
                       "/Users/sample/Library, cloud");
    EXPECT_TRUE(testing::isThere(folder.path("Users/sample/Downloads/kept")));
}

// The second name is a mount here, so the table has the path of a mount inside by one of the names only.
TEST(JoinedFolders, AreKeptWithAVolumeInsideByWhicheverName) {
    const TemporaryFolder folder;
    const std::string users = folder.makeFolder("System/Volumes/Data/Users");
    const std::string volume = folder.makeFolder("System/Volumes/Data/Users/sample/Downloads/item/volume");
    for (const char *place : {"Users", "proc"})
        folder.makeFolder(place);
    chmod(folder.path().c_str(), 0755);
    const std::string answer = testing::answerOfChild([&]() -> std::string {
        if (!testing::ownMounts() || !testing::mountAlsoAt(users, folder.path("Users"), false) ||
            !testing::mountMemory(volume) || !testing::mountAlsoAt("/proc", folder.path("proc"), false) ||
            !testing::enterRoot(folder.path()))
            return "not permitted";
        Host::useSystem(System::macOS);
        setenv("HOME", "/Users/sample", 1);
        return Remover::check(FileURL("/Users/sample/Downloads/item")).value_or("admitted");
    });
    if (answer == "not permitted")
        GTEST_SKIP() << "mounting is not permitted here";
    EXPECT_EQ(answer, "“item” contains a mounted volume: "
                      "/System/Volumes/Data/Users/sample/Downloads/item/volume. Eject it first.");
}

} // namespace brimvale
