#include "Support/ChildProcess.h"

#include "Support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace brimvale::testing {

namespace {

constexpr unsigned ordinaryUser = 65534;

[[noreturn]] void fail(const char *what) {
    throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void serve(const std::function<std::string()> &answer, int output) {
    int status = 1;
    try {
        const std::string text = answer();
        status = write(output, text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1;
    } catch (const std::exception &) {
    }
    _exit(status);
}

/// Lets every user make files in a folder: the child may become another one.
void makePublic(const std::string &folder) {
    if (chmod(folder.c_str(), S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO) != 0)
        fail("chmod");
}

/// Ends the program, and so the test, which has a process of its own: skipped, in the words of GoogleTest.
void skipIfForksMayHang() {
    if (BRIMVALE_FORKS_MAY_HANG == 0)
        return;
    std::puts("ChildProcess.cpp: Skipped\nthe thread sanitizer may hang in a new process here\n[  SKIPPED ]");
    std::fflush(nullptr);
    _exit(0);
}

} // namespace

std::string answerOfChild(const std::function<std::string()> &answer) {
    skipIfForksMayHang();
    // The child cannot remove a temporary folder in which something is still mounted. This process can, as
    // the mounts end with the child.
    const TemporaryFolder folders;
    makePublic(folders.path());
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        fail("pipe");
    std::fflush(nullptr); // or the child would write out what is buffered, too
    const pid_t child = fork();
    if (child < 0)
        fail("fork");
    if (child == 0) {
        close(ends[0]);
        setenv("TMPDIR", folders.path().c_str(), 1);
        serve(answer, ends[1]);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer;
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? text : "died";
}

void inChild(const std::function<void()> &test) {
    const std::string answer = answerOfChild([&] {
        test();
        return ::testing::Test::HasFailure() ? "failed" : ::testing::Test::IsSkipped() ? "skipped" : "passed";
    });
    if (answer == "skipped")
        GTEST_SKIP() << "for the reason that the child has told";
    EXPECT_EQ(answer, "passed");
}

void becomeOrdinaryUser() {
    if (geteuid() == 0 &&
        (setgroups(0, nullptr) != 0 || setgid(ordinaryUser) != 0 || setuid(ordinaryUser) != 0))
        fail("setuid");
}

} // namespace brimvale::testing
