// Guarded folders keep being guarded, whatever link or mount a path leads through.

#include "Core/Removal/Remover.h"
#include "Support/ChildProcess.h"
#include "Support/EnvironmentVariable.h"
#include "Support/OwnMounts.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::TemporaryFolder;

std::string reasonFor(const std::string &path) {
    return Remover::check(FileURL(path)).value_or("");
}

/// A home that the guards of this process, a child, know.
void enterHome(const TemporaryFolder &folder) {
    folder.makeFile("homes/u/Documents/paper");
    folder.makeFile("homes/u/.ssh/key");
    folder.makeFile("homes/u/.cache/program/data");
    setenv("HOME", folder.path("homes/u").c_str(), 1);
}

} // namespace

TEST(GuardedPlaces, AreFoundThroughLinks) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        folder.makeFolder("data/pictures");
        folder.makeLink("homes/u/Pictures", folder.path("data/pictures"));
        folder.makeLink("link", "homes");
        folder.makeLink("deep", "link/u");
        folder.makeLink("root", "/");
        const std::string home = folder.path("homes/u");
        for (const char *path : {"link/u", "link/u/Documents", "deep/Documents", "deep/.ssh"})
            EXPECT_THAT(reasonFor(folder.path(path)),
                        EndsWith(" is a structural directory and is never removed."))
                << path;
        EXPECT_EQ(reasonFor(folder.path("data/pictures")),
                  home + "/Pictures is a structural directory and is never removed.");
        EXPECT_THAT(reasonFor(folder.path("root/usr/bin/env")),
                    EndsWith(" lives inside a protected system location."));
        EXPECT_NE(reasonFor(folder.path("root/usr")), "");
        EXPECT_EQ(reasonFor(folder.path("link/u/Documents/paper")), "");
        EXPECT_EQ(reasonFor(folder.path("deep/.cache/program")), "");
        EXPECT_EQ(reasonFor(folder.path("link")), "") << "the link itself";
    });
}

TEST(GuardedPlaces, AreFoundThroughBindMounts) {
    testing::inChild([] {
        const TemporaryFolder folder;
        enterHome(folder);
        for (const char *place : {"homes-again", "usr"})
            folder.makeFolder(place);
        if (!testing::ownMounts() ||
            !testing::mountAlsoAt(folder.path("homes"), folder.path("homes-again")) ||
            !testing::mountAlsoAt("/usr", folder.path("usr"), true))
            GTEST_SKIP() << "mounting is not permitted here";
        for (const char *path : {"homes-again/u", "homes-again/u/Documents", "homes-again/u/.ssh"})
            EXPECT_THAT(reasonFor(folder.path(path)),
                        EndsWith(" is a structural directory and is never removed."))
                << path;
        EXPECT_THAT(reasonFor(folder.path("usr/bin/env")),
                    EndsWith(" lives inside a protected system location."));
        EXPECT_EQ(reasonFor(folder.path("homes-again/u/.cache/program")), "");
    });
}

TEST(GuardedPlaces, FoldersWithVolumesInsideStay) {
    testing::inChild([] {
        const TemporaryFolder folder;
        folder.makeFolder("item/inner/volume");
        folder.makeFolder("volume");
        if (!testing::ownMounts() || !testing::mountMemory(folder.path("item/inner/volume")) ||
            !testing::mountMemory(folder.path("volume")))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("item/inner/volume/kept");
        for (const RemovalMode mode : {RemovalMode::trash, RemovalMode::deleteNow}) {
            testing::RecordingActions actions;
            const RemovalResult result =
                Remover::remove(std::vector{FileURL(folder.path("item")), FileURL(folder.path("volume"))},
                                mode, nullptr, actions);
            EXPECT_THAT(actions.calls, ElementsAre());
            ASSERT_EQ(result.failed.size(), 2U);
            EXPECT_EQ(result.failed[0].reason, "“item” contains a mounted volume: " +
                                                   folder.path("item/inner/volume") + ". Eject it first.");
            EXPECT_EQ(result.failed[1].reason, "“volume” is a mounted volume. Eject it instead.");
        }
    });
}

// The home of the account counts beside the one of the environment.
TEST(GuardedPlaces, HomesOfAccountsAreGuarded) {
    testing::inChild([] {
        const TemporaryFolder folder;
        setenv("HOME", folder.path().c_str(), 1);
        bool hasHome = false;
        for (const char *home : {"/root", "/home/user", "/var/roothome"})
            if (testing::isThere(home)) {
                hasHome = true;
                EXPECT_NE(reasonFor(home), "") << home;
            }
        EXPECT_TRUE(hasHome);
    });
}

} // namespace brimvale
