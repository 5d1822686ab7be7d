#include "Platform/PrivilegedRunner.h"
#include "Platform/ShellQuoting.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

/// Tools with a stand-in for the one that asks: a script that gets what pkexec gets.
Tools toolsWithRunner(const TemporaryFolder &folder, const std::string &script) {
    Tools tools = platformTools();
    tools.administratorRunner = folder.makeScript("runner", script);
    return tools;
}

} // namespace

TEST(PrivilegedRunner, RunsCommandInShellAndIgnoresItsStatus) {
    const TemporaryFolder folder;
    const Tools tools = toolsWithRunner(folder, "exec \"$@\"");
    const std::string victim = folder.makeFile("it's \"a\\ victim$(touch ran)\n", 1);
    const std::string bystander = folder.makeFile("it", 1);
    EXPECT_FALSE(runAsAdministrator("/bin/rm -rf -- " + quotedForShell(victim), tools));
    EXPECT_FALSE(std::filesystem::exists(victim));
    EXPECT_TRUE(std::filesystem::exists(bystander));
    // However the command itself ends, the system reported nothing.
    EXPECT_FALSE(runAsAdministrator("exit 1", tools));
    EXPECT_FALSE(runAsAdministrator("kill -KILL $$", tools));
}

TEST(PrivilegedRunner, MissingAuthorizationIsAnErrorWithoutMessage) {
    const TemporaryFolder folder;
    const std::string command = "touch " + quotedForShell(folder.path("ran"));
    const auto isRefusedBy = [&](const Tools &tools) {
        const auto error = runAsAdministrator(command, tools);
        return error.has_value() && !error->message.has_value();
    };
    EXPECT_TRUE(isRefusedBy(toolsWithRunner(folder, "echo dismissed >&2; exit 126")));
    EXPECT_TRUE(isRefusedBy(toolsWithRunner(folder, "echo not authorized >&2; exit 127")));
    Tools without = platformTools();
    for (const std::string &missing : {folder.path("missing"), std::string(), std::string("pkexec")}) {
        without.administratorRunner = missing;
        EXPECT_TRUE(isRefusedBy(without)) << missing;
    }
    // More than the system takes as one argument.
    const Tools tools = toolsWithRunner(folder, "exec \"$@\"");
    EXPECT_TRUE(runAsAdministrator(command + std::string(200'000, ' '), tools));
    EXPECT_FALSE(std::filesystem::exists(folder.path("ran")));
}

} // namespace brimvale
