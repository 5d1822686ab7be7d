#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace brimvale::faults {

/// A system call that can be watched, and the errors with which it may fail.
struct CallKind {
    long number;
    const char *name;
    int path; ///< which of its arguments is a path; -1: none
    std::vector<int> errors;
};

/// All of them that this machine has.
[[nodiscard]] const std::vector<CallKind> &callKinds();
[[nodiscard]] const CallKind *callKind(long number);

/// A system call that a watched program, or one that it has started, is about to make. It waits for the
/// answer.
struct Call {
    const CallKind &kind;
    std::array<std::uint64_t, 6> arguments;
    pid_t process;

    /// The path that it names; empty where it names none or where it cannot be read.
    [[nodiscard]] std::string path() const;
};

struct Answer {
    enum { letIt, fail, kill } what = letIt;
    int error = 0;
};

struct Program {
    std::vector<std::string> arguments;
    std::function<Answer(const Call &)> onCall = {}; ///< empty: its calls are not watched
    std::function<void()> onQuestion = {}; ///< before "y" is typed on its terminal; empty: it has none
};

struct Ending {
    int status = 0; ///< the exit status; of a program that a signal has ended, the signal's negative number
    bool isHanging = false; ///< it did not end, and was killed
    std::string words;      ///< standard output and standard error
};

/// Whether system calls can be watched here.
[[nodiscard]] bool canWatchCalls();

/// Tells which brimvalectl is run from now on.
void useProgram(const std::string &path);

/// Runs brimvalectl to its end, and to the ends of all that it has started.
[[nodiscard]] Ending run(const Program &program);

} // namespace brimvale::faults
