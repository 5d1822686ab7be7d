#include "Platform/RunningApps.h"

#include "Support/SampleApps.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace brimvale {

TEST(RunningApps, FindsAppsByProgramsInTheirBundle) {
    const testing::TemporaryFolder folder;
    // An identifier of its own, since other programs run on this machine.
    const std::string unique = std::string(FileURL(folder.path()).fileName());
    const std::string outer = "com.example.outer." + unique;
    const std::string helper = "com.example.helper." + unique;
    testing::makeBundle(folder, "Outer.app", {outer, {}, {}, {}, {}});
    testing::makeBundle(folder, "Outer.app/Contents/Helper.app", {helper, {}, {}, {}, {}});
    testing::makeBundle(folder, "Idle.app", {"com.example.idle." + unique, {}, {}, {}, {}});
    const std::string program = folder.path("Outer.app/Contents/Helper.app/Contents/MacOS/cat");
    std::filesystem::copy_file("/bin/cat", program);
    EXPECT_FALSE(isApplicationRunning(outer));
    // It waits for the end of its input.
    std::FILE *input = popen(("exec '" + program + "'").c_str(), "w");
    ASSERT_NE(input, nullptr);
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!isApplicationRunning(outer) && std::chrono::steady_clock::now() < end)
        std::this_thread::yield(); // the shell has yet to make way for it
    EXPECT_TRUE(isApplicationRunning(outer));
    EXPECT_TRUE(isApplicationRunning(helper));
    EXPECT_FALSE(isApplicationRunning("com.example.idle." + unique));
    EXPECT_FALSE(isApplicationRunning(""));
    pclose(input);
    EXPECT_FALSE(isApplicationRunning(outer));
}

TEST(RunningApps, FindsProgramsByTheirName) {
    const testing::TemporaryFolder folder;
    const std::string name = std::string(FileURL(folder.path()).fileName());
    const std::string program = folder.path(name + "-bin");
    std::filesystem::copy_file("/bin/cat", program);
    EXPECT_FALSE(isApplicationRunning(name));
    std::FILE *input = popen(("exec '" + program + "'").c_str(), "w");
    ASSERT_NE(input, nullptr);
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!isApplicationRunning(name) && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_TRUE(isApplicationRunning(name));
    EXPECT_FALSE(isApplicationRunning(name + "-"));
    pclose(input);
    EXPECT_FALSE(isApplicationRunning(name));
}

} // namespace brimvale
