#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A Linux computer whose user has a package manager and a model that another program looks after.
class CleanupOnLinux : public ::testing::Test {
protected:
    CleanupOnLinux() {
        disk.makeFile("home/u/.ollama/models/blobs/a", 8'192);
        disk.makeFile("home/u/.cache/uv/archive-v0/a", 4'096);
        disk.writeFile("proc/12/comm", "uv\n");
    }
    [[nodiscard]] Outcome run(const std::vector<std::string> &arguments) const {
        return runProgramOnLinux(disk.path(), arguments, inHome(disk.path("home/u")));
    }

    const TemporaryFolder disk;
};

} // namespace

TEST_F(CleanupOnLinux, ListsTheTargetsThatHaveAPlace) {
    const std::string table = run({"cleanup"}).out;
    for (const char *id : {"package-caches", "user-caches", "ai-models", "trash"})
        EXPECT_THAT(table, HasSubstr(id));
    for (const char *id : {"game-caches", "containers", "logs"})
        EXPECT_THAT(table, Not(HasSubstr(id)));
    // only the commands of tools that are used
    disk.makeFolder("var/cache/apt/archives");
    EXPECT_EQ(run({"cleanup", "system-packages"}).out,
              "Downloaded system packages, 0 bytes (Safe)\nInstallation files of software that is already "
              "installed. Needs your password.\nIn a terminal: sudo apt-get clean\n");
}

TEST_F(CleanupOnLinux, SaysWhatIsKnownOfAnEntry) {
    const std::string table = run({"cleanup", "ai-models", "package-caches"}).out;
    EXPECT_THAT(table, HasSubstr("archive-v0  uv: archive-v0; uv is running; may free less\n"));
    EXPECT_THAT(
        table,
        HasSubstr(
            "models  kept: Models share files there. Remove a model with Ollama; run ollama rm NAME\n"));

    const QJsonArray targets = jsonIn(run({"cleanup", "ai-models", "package-caches", "--json"})).array();
    ASSERT_EQ(targets.size(), 2);
    const QJsonObject cache = targets[0]["entries"][0].toObject();
    EXPECT_EQ(cache["name"], "uv: archive-v0");
    EXPECT_EQ(cache["runningProgram"], "uv");
    EXPECT_EQ(cache["mayFreeLess"], true);
    EXPECT_TRUE(cache["keptBecause"].isNull() && cache["command"].isNull());
    const QJsonObject models = targets[1]["entries"][0].toObject();
    EXPECT_EQ(models["keptBecause"], "Models share files there. Remove a model with Ollama.");
    EXPECT_EQ(models["command"], "ollama rm NAME");
    EXPECT_TRUE(models["name"].isNull() && models["runningProgram"].isNull());
}

} // namespace brimvale::testing
