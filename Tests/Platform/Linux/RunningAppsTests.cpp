#include "Platform/RunningApps.h"

#include "Support/SampleApps.h"
#include "Support/TemporaryFolder.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// A program that waits for the end of its input, which comes with the object's.
class WaitingProgram {
public:
    explicit WaitingProgram(const std::string &path) {
        pipe(ends_.data());
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends_[0], 0);
        posix_spawn_file_actions_addclose(&actions, ends_[1]);
        std::string name = "cat";
        std::array<char *, 2> arguments{name.data(), nullptr};
        isStarted = posix_spawn(&process_, path.c_str(), &actions, nullptr, arguments.data(), environ) == 0;
        posix_spawn_file_actions_destroy(&actions);
    }
    ~WaitingProgram() {
        close(ends_[0]);
        close(ends_[1]);
        if (isStarted)
            waitpid(process_, nullptr, 0);
    }
    WaitingProgram(const WaitingProgram &) = delete;
    WaitingProgram &operator=(const WaitingProgram &) = delete;

    bool isStarted = false;

private:
    std::array<int, 2> ends_{};
    pid_t process_ = 0;
};

} // namespace

TEST(RunningApps, AreThoseWithAProgramInTheirBundle) {
    const testing::TemporaryFolder folder;
    // An identifier of its own, since other programs run on this machine.
    const std::string unique = std::string(FileURL(folder.path()).lastPathComponent());
    const std::string outer = "com.example.outer." + unique;
    const std::string helper = "com.example.helper." + unique;
    testing::makeBundle(folder, "Outer.app", {outer, {}, {}, {}, {}});
    testing::makeBundle(folder, "Outer.app/Contents/Helper.app", {helper, {}, {}, {}, {}});
    testing::makeBundle(folder, "Idle.app", {"com.example.idle." + unique, {}, {}, {}, {}});
    const std::string program = folder.path("Outer.app/Contents/Helper.app/Contents/MacOS/cat");
    std::filesystem::copy_file("/bin/cat", program);
    EXPECT_FALSE(isApplicationRunning(outer));
    {
        const WaitingProgram running(program);
        ASSERT_TRUE(running.isStarted);
        EXPECT_TRUE(isApplicationRunning(outer));
        EXPECT_TRUE(isApplicationRunning(helper));
        EXPECT_FALSE(isApplicationRunning("com.example.idle." + unique));
        EXPECT_FALSE(isApplicationRunning(""));
    }
    EXPECT_FALSE(isApplicationRunning(outer));
}

} // namespace brimvale
