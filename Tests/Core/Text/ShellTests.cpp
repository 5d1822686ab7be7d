#include "Core/Text/Shell.h"
#include "Platform/Tools.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

const std::string shell = platformTools().shell;

/// The descriptors that this process has open.
int openDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        count += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

} // namespace

TEST(Shell, ReturnsOutputAndExitStatus) {
    struct Case {
        std::string script;
        std::string output, combined;
        std::optional<int> exitStatus;
    };
    for (const Case &one : {
             Case{"", "", "", 0},
             Case{"echo one; echo two >&2; echo three", "one\nthree\n", "one\ntwo\nthree\n", 0},
             Case{"echo failed; exit 1", "failed\n", "failed\n", 1},
             Case{"echo half; kill -KILL $$; echo whole", "half\n", "half\n", std::nullopt},
             Case{"printf 'a\\000\\303\\253'", std::string("a\0\u00EB", 4), std::string("a\0\u00EB", 4), 0},
             Case{"cat; echo nothing to read", "nothing to read\n", "nothing to read\n", 0},
         }) {
        const std::vector<std::string> arguments = {"-c", one.script};
        EXPECT_EQ(Shell::run(shell, arguments), one.output) << one.script;
        EXPECT_EQ(Shell::runCombined(shell, arguments), one.combined) << one.script;
        const auto result = Shell::runWithStatus(shell, arguments);
        ASSERT_TRUE(result) << one.script;
        EXPECT_EQ(result->output, one.output) << one.script;
        EXPECT_EQ(result->exitStatus, one.exitStatus) << one.script;
        EXPECT_EQ(result->hasSucceeded(), one.exitStatus == 0) << one.script;
    }
}

TEST(Shell, PassesArgumentsUnchanged) {
    EXPECT_EQ(Shell::run(shell, {"-c", "printf '<%s>' \"$@\"", shell, "a  b", "$HOME", "*", "", "'\"\\", "\n",
                                 "-n", "caf\u00E9"}),
              "<a  b><$HOME><*><><'\"\\><\n><-n><caf\u00E9>");
}

TEST(Shell, ReturnsNulloptWhenNotStartedOrNotUtf8) {
    const testing::TemporaryFolder folder;
    const std::string plain = folder.writeFile("plain", "echo plain");
    const std::string unfit = folder.writeFile("unfit", "#!/nowhere/at/all\n");
    const std::string headless = folder.writeFile("headless", "echo headless");
    std::filesystem::permissions(unfit, std::filesystem::perms::owner_all);
    std::filesystem::permissions(headless, std::filesystem::perms::owner_all);
    const std::string shorter = shell + std::string("\0x", 2);
    for (const std::string &tool : {folder.path("missing"), folder.path(), plain, unfit, headless, shorter,
                                    std::string("sh"), std::string()}) {
        EXPECT_EQ(Shell::run(tool, {}), std::nullopt) << tool;
        EXPECT_FALSE(Shell::runWithStatus(tool, {})) << tool;
    }
    // A zero byte would cut an argument short.
    EXPECT_EQ(Shell::run(shell, {"-c", std::string("echo cut\0 short", 15)}), std::nullopt);

    const std::vector<std::string> latin1OnError = {"-c", "printf 'caf\\351' >&2; echo fine"};
    EXPECT_EQ(Shell::run(shell, {"-c", "printf 'caf\\351'"}), std::nullopt);
    EXPECT_EQ(Shell::run(shell, latin1OnError), "fine\n");
    EXPECT_EQ(Shell::runCombined(shell, latin1OnError), std::nullopt);
}

TEST(Shell, ReadsLargeOutputDespiteSignals) {
    struct sigaction onAlarm {};
    struct sigaction earlierAction {};
    onAlarm.sa_handler = [](int) {};
    sigaction(SIGALRM, &onAlarm, &earlierAction);
    const itimerval often{{0, 200}, {0, 200}};
    setitimer(ITIMER_REAL, &often, nullptr);

    constexpr std::size_t flood = 10'000'000;
    const std::vector<std::string> arguments = {
        "-c", "head -c 10000000 /dev/zero & head -c 10000000 /dev/zero >&2 || exit 4; wait; exit 3"};
    const auto separate = Shell::runWithStatus(shell, arguments);
    const auto combined = Shell::runWithStatus(shell, arguments, StandardError::withOutput);
    // And one that works on without its output, so that its end is waited for.
    const auto silent = Shell::runWithStatus(
        shell, {"-c", "exec >&-; head -c 10000000 /dev/zero | wc -c >/dev/null; exit 5"});

    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &earlierAction, nullptr);
    ASSERT_TRUE(separate && combined && silent);
    EXPECT_EQ(separate->output.size(), flood);
    EXPECT_EQ(separate->exitStatus, 3);
    EXPECT_EQ(combined->output.size(), 2 * flood);
    EXPECT_EQ(combined->exitStatus, 3);
    EXPECT_EQ(silent->exitStatus, 5);
}

TEST(Shell, ReadsUntilLastProcessClosesOutput) {
    const testing::TemporaryFolder folder;
    const std::string gate = folder.path("gate");
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    std::thread late([&] { std::ofstream(gate) << "late\n"; });
    const auto output = Shell::run(shell, {"-c", "cat \"$0\" & exit 0", gate});
    late.join();
    EXPECT_EQ(output, "late\n");
}

TEST(Shell, LeaksNoDescriptorsOrProcesses) {
    const int before = openDescriptors();
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([number] {
            const std::string text = std::to_string(number);
            for (int i = 0; i < 20; ++i) {
                EXPECT_EQ(Shell::run(shell, {"-c", "echo \"$0\"", text}), text + "\n");
                EXPECT_EQ(Shell::run("/nowhere/at/all", {}), std::nullopt);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(Shell, CancelEndsTheTool) {
    const testing::TemporaryFolder folder;
    // One that prints for ever, one that ignores requests, one that has closed its output, and one that
    // leaves it to another process.
    for (const char *script :
         {"while echo y; do :; done", "trap '' TERM INT HUP; echo y; while :; do :; done",
          "exec >&- 2>&-; exec sleep 600", "echo y; sleep 6 & wait"}) {
        int asked = 0;
        const auto result = Shell::runWithStatus(shell, {"-c", script}, StandardError::withOutput,
                                                 [&] { return ++asked == 3; });
        ASSERT_TRUE(result) << script;
        EXPECT_EQ(asked, 3) << script;
        EXPECT_FALSE(result->hasSucceeded()) << script;
        EXPECT_EQ(result->output.find_first_not_of("y\n"), std::string::npos) << script;
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(Shell, RunsAToolToItsEndUnlessItIsStopped) {
    const auto output = [](const std::string &script) {
        const auto result =
            Shell::runWithStatus(shell, {"-c", script}, StandardError::withOutput, [] { return false; });
        return result ? result->output : "none";
    };
    EXPECT_EQ(output("echo one; sleep 0.3; echo two >&2"), "one\ntwo\n");
    EXPECT_EQ(output("head -c 3000000 /dev/zero; exec >&- 2>&-; sleep 0.1").size(), 3'000'000U);
    EXPECT_EQ(output("printf 'caf\\351'"), "none");
}

TEST(Shell, ToolsGetDefaultSignalHandling) {
    const std::string answer = testing::answerOfChild([] {
        std::signal(SIGPIPE, SIG_IGN);
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, nullptr);
        return Shell::run(shell, {"-c", "kill -PIPE $$; echo ignored"}).value_or("none") +
               Shell::run(shell, {"-c", "kill -TERM $$; echo blocked"}).value_or("none");
    });
    EXPECT_EQ(answer, "");
}

TEST(Shell, WorksWithClosedStandardStreams) {
    for (const std::vector<int> &closed :
         {std::vector{0, 1, 2}, std::vector{0}, std::vector{1}, std::vector{2}, std::vector{0, 1}}) {
        const std::string answer = testing::answerOfChild([&] {
            for (const int stream : closed)
                close(stream);
            const std::vector<std::string> arguments = {"-c", "cat; echo out; echo error >&2"};
            return Shell::run(shell, arguments).value_or("none") +
                   Shell::runCombined(shell, arguments).value_or("none");
        });
        EXPECT_EQ(answer, "out\nout\nerror\n") << closed.size() << " closed from " << closed.front();
    }
}

TEST(Shell, ReturnsOutputWhenSigchldIsIgnored) {
    const std::string answer = testing::answerOfChild([] {
        std::signal(SIGCHLD, SIG_IGN);
        const auto result = Shell::runWithStatus(shell, {"-c", "echo reaped"});
        return result ? result->output + (result->hasSucceeded() ? "succeeded" : "unknown") : "none";
    });
    EXPECT_EQ(answer, "reaped\nunknown");
}

// More than pipes hold, so both are read and written at the same time.
TEST(ProcessRunner, GivesInputToATool) {
    std::string input;
    for (int i = 0; i < 300'000; ++i)
        input += static_cast<char>(i % 251);
    const int before = openDescriptors();
    struct Case {
        const char *script;
        std::string output;
    };
    for (const Case &one : {Case{"cat", input}, Case{"head -c 3 | tail -c 2", input.substr(1, 2)},
                            Case{"exec <&-; sleep 0.1; echo closed", "closed\n"}, Case{"exit 0", ""}}) {
        const auto result = runProcessWithInput(shell, {"-c", one.script}, StandardError::discarded, input);
        ASSERT_TRUE(result && result->hasSucceeded()) << one.script;
        EXPECT_EQ(result->output, one.output) << one.script;
    }
    EXPECT_EQ(runProcessWithInput(shell, {"-c", "cat"}, StandardError::discarded, "")->output, "");
    EXPECT_FALSE(runProcessWithInput("/missing", {}, StandardError::discarded, input));
    EXPECT_EQ(openDescriptors(), before);

    // Without standard streams, the pipes have their numbers.
    EXPECT_EQ(testing::answerOfChild([&]() -> std::string {
                  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
                      close(stream);
                  const auto result =
                      runProcessWithInput(shell, {"-c", "cat; cat >&2"}, StandardError::withOutput, "in\n");
                  return result ? result->output : "";
              }),
              "in\n");
}

} // namespace brimvale
