#include "Platform/ProcessRunner.h"

#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace brimvale {

namespace {

/// How a child's streams and signals are set up before the tool begins.
class Preparation {
public:
    Preparation(int output, StandardError standardError) {
        note(posix_spawn_file_actions_init(&streams));
        note(posix_spawnattr_init(&attributes));
        // The output goes first: where this program runs without standard streams, the pipe itself may have
        // one of their numbers, which the others then take.
        note(posix_spawn_file_actions_adddup2(&streams, output, STDOUT_FILENO));
        if (standardError == StandardError::withOutput)
            note(posix_spawn_file_actions_adddup2(&streams, STDOUT_FILENO, STDERR_FILENO));
        else
            note(posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, "/dev/null", O_WRONLY, 0));
        note(posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0));

        // Signals that this program, or only the calling thread, ignores or blocks would stay so in the tool.
        sigset_t none;
        sigset_t ignored;
        sigemptyset(&none);
        sigemptyset(&ignored);
        sigaddset(&ignored, SIGPIPE);
        note(posix_spawnattr_setsigmask(&attributes, &none));
        note(posix_spawnattr_setsigdefault(&attributes, &ignored));
        const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | inheritanceFlags();
        note(posix_spawnattr_setflags(&attributes, static_cast<short>(flags)));
    }
    ~Preparation() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&streams);
    }
    Preparation(const Preparation &) = delete;
    Preparation &operator=(const Preparation &) = delete;

    [[nodiscard]] bool isComplete() const { return isComplete_; }

    posix_spawn_file_actions_t streams{};
    posix_spawnattr_t attributes{};

private:
    void note(int error) { isComplete_ = isComplete_ && error == 0; }

    bool isComplete_ = true;
};

/// Whether the system's call would take the text for a shorter one.
bool hasZeroByte(const std::string &text) {
    return text.find('\0') != std::string::npos;
}

std::optional<pid_t> start(const std::string &executable, const std::vector<std::string> &arguments,
                           StandardError standardError, int output) {
    std::vector<char *> argumentList;
    argumentList.push_back(const_cast<char *>(executable.c_str()));
    for (const std::string &argument : arguments)
        argumentList.push_back(const_cast<char *>(argument.c_str()));
    argumentList.push_back(nullptr);

    const Preparation preparation(output, standardError);
    pid_t child = 0;
    if (!preparation.isComplete() || posix_spawn(&child, executable.c_str(), &preparation.streams,
                                                 &preparation.attributes, argumentList.data(), environ) != 0)
        return std::nullopt;
    return child;
}

/// Asks whether to stop, at most once an interval, and ends the child as soon as the answer is yes.
class Stopper {
public:
    static constexpr std::chrono::milliseconds interval{100};

    Stopper(const std::function<bool()> &isStopped, pid_t child) : isStopped_(isStopped), child_(child) {}

    [[nodiscard]] bool isNeeded() const { return isStopped_ && !hasStopped_; }
    [[nodiscard]] bool hasStopped() const { return hasStopped_; }

    void ask() {
        if (!isNeeded() || std::chrono::steady_clock::now() < next_)
            return;
        hasStopped_ = isStopped_();
        if (hasStopped_)
            kill(child_, SIGKILL);
        next_ = std::chrono::steady_clock::now() + interval;
    }

private:
    const std::function<bool()> &isStopped_;
    pid_t child_;
    bool hasStopped_ = false;
    std::chrono::steady_clock::time_point next_{};
};

/// Waits for the descriptor to become readable, and no longer than the stopper may.
void awaitOutput(int descriptor, const Stopper &stopper) {
    pollfd waited{.fd = descriptor, .events = POLLIN, .revents = 0};
    if (stopper.isNeeded())
        poll(&waited, 1, static_cast<int>(Stopper::interval.count()));
}

/// Whether reading the descriptor, which is not to wait, has to wait nevertheless.
bool isStillEmpty() {
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

/// All that is written until the last writer is gone, or the child has been stopped.
std::string readToEnd(int descriptor, Stopper &stopper) {
    if (stopper.isNeeded())
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    std::string bytes;
    std::array<char, 65536> buffer;
    while (!stopper.hasStopped()) {
        awaitOutput(descriptor, stopper);
        stopper.ask();
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0)
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || (errno != EINTR && !isStillEmpty()))
            break;
    }
    return bytes;
}

/// Waits for a child that may work on after its output is closed, so that it can be stopped even then.
std::optional<int> exitStatusOf(pid_t child, Stopper &stopper) {
    int status = 0;
    while (true) {
        const pid_t ended = waitpid(child, &status, stopper.isNeeded() ? WNOHANG : 0);
        if (ended > 0)
            return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
        if (ended < 0 && errno != EINTR)
            return std::nullopt;
        if (ended == 0) {
            stopper.ask();
            poll(nullptr, 0, 10); // a child's end wakes nobody here
        }
    }
}

} // namespace

std::optional<ProcessResult> runProcess(const std::string &executable,
                                        const std::vector<std::string> &arguments,
                                        StandardError standardError, const std::function<bool()> &isStopped) {
    if (!executable.starts_with('/') || hasZeroByte(executable) ||
        std::any_of(arguments.begin(), arguments.end(), hasZeroByte))
        return std::nullopt;
    std::array<int, 2> ends{};
    if (!openPipe(ends))
        return std::nullopt;
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);

    const std::optional<pid_t> child = start(executable, arguments, standardError, writing.number());
    if (!child)
        return std::nullopt;
    // The output ends only when nobody holds its writing end, so not this program either.
    writing.close();
    Stopper stopper(isStopped, *child);
    std::string output = readToEnd(reading.number(), stopper);
    // Had reading failed, the tool must not wait for a reader while it is waited for.
    reading.close();
    return ProcessResult{std::move(output), exitStatusOf(*child, stopper)};
}

} // namespace brimvale
