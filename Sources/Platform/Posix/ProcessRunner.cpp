#include "Platform/ProcessRunner.h"

#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Spawn.h"
#include "Platform/Posix/ToolStart.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// Whether a system call would cut the text short.
bool hasZeroByte(const std::string &text) {
    return text.find('\0') != std::string::npos;
}

std::optional<pid_t> start(const std::string &executable, const std::vector<std::string> &arguments,
                           StandardError standardError, int output) {
    ToolStart tool(onlySignal(SIGPIPE));
    // The output goes first: if this program has no standard streams, the pipe itself may have one of their
    // numbers, which the others overwrite.
    tool.copy(output, STDOUT_FILENO);
    if (standardError == StandardError::withOutput)
        tool.copy(STDOUT_FILENO, STDERR_FILENO);
    else
        tool.discard(STDERR_FILENO, O_WRONLY);
    tool.discard(STDIN_FILENO, O_RDONLY);
    pid_t child = 0;
    return tool.run(executable, arguments, child) == 0 ? std::optional(child) : std::nullopt;
}

/// Kills the child when that is wanted. Asks whether to stop at most once an interval.
class Stopper {
public:
    static constexpr std::chrono::milliseconds interval{100};

    Stopper(const std::function<bool()> &isStopped, pid_t child) : isStopped_(isStopped), child_(child) {}

    [[nodiscard]] bool isNeeded() const { return isStopped_ && !hasStopped_; }
    [[nodiscard]] bool hasStopped() const { return hasStopped_; }

    void ask() {
        if (!isNeeded() || std::chrono::steady_clock::now() < next_)
            return;
        if (isStopped_())
            stop();
        next_ = std::chrono::steady_clock::now() + interval;
    }

    void stop() {
        hasStopped_ = true;
        kill(child_, SIGKILL);
    }

private:
    const std::function<bool()> &isStopped_;
    pid_t child_;
    bool hasStopped_ = false;
    std::chrono::steady_clock::time_point next_{};
};

/// Waits until the descriptor is readable or the stopper wants to ask again.
void awaitOutput(int descriptor, const Stopper &stopper) {
    pollfd waited{.fd = descriptor, .events = POLLIN, .revents = 0};
    if (stopper.isNeeded())
        poll(&waited, 1, static_cast<int>(Stopper::interval.count()));
}

/// Whether the last read, which does not block, found no data yet.
bool isStillEmpty() {
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

/// Everything written until the last writer closes or the child is stopped, which it also is after
/// `mostBytes`.
std::string readToEnd(int descriptor, Stopper &stopper, std::size_t mostBytes) {
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
        if (bytes.size() > mostBytes)
            stopper.stop();
    }
    return bytes;
}

/// Waits for a child that may keep running after its output is closed, and can still stop it.
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
            poll(nullptr, 0, 10); // the end of a child does not wake poll
        }
    }
}

} // namespace

std::optional<ProcessResult> runProcess(const std::string &executable,
                                        const std::vector<std::string> &arguments,
                                        StandardError standardError, const std::function<bool()> &isStopped,
                                        std::size_t mostBytes) {
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
    // The output ends only when every writing end is closed, including this one.
    writing.close();
    Stopper stopper(isStopped, *child);
    std::string output = readToEnd(reading.number(), stopper, mostBytes);
    const bool isTooLong = output.size() > mostBytes;
    // If reading failed, the tool must not block on writing while we wait for it.
    reading.close();
    return ProcessResult{std::move(output), exitStatusOf(*child, stopper), isTooLong};
}

} // namespace brimvale
