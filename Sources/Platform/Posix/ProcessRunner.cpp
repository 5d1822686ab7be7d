#include "Platform/ProcessRunner.h"

#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Spawn.h"
#include "Platform/Posix/ToolStart.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// Whether a system call would cut the text short.
bool hasZeroByte(const std::string &text) {
    return text.find('\0') != std::string::npos;
}

bool canBeStarted(const std::string &executable, const std::vector<std::string> &arguments) {
    return executable.starts_with('/') && !hasZeroByte(executable) &&
           std::none_of(arguments.begin(), arguments.end(), hasZeroByte);
}

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

/// The same descriptor with a number above those of the standard streams, which `start` sets up. On macOS a
/// descriptor that is copied onto itself is closed when the tool starts.
Descriptor aboveStandardStreams(const Descriptor &descriptor) {
    return Descriptor(fcntl(descriptor.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (!openPipe(ends))
        return std::nullopt;
    const Descriptor reading(ends[0]), writing(ends[1]);
    Pipe pipe{aboveStandardStreams(reading), aboveStandardStreams(writing)};
    return pipe.reading.isOpen() && pipe.writing.isOpen() ? std::optional(std::move(pipe)) : std::nullopt;
}

/// Both ends of a terminal: a tool reads from the first one what is written to the second.
std::optional<Pipe> makeTerminal() {
    const Descriptor master(posix_openpt(O_RDWR | O_NOCTTY));
    std::array<char, 256> name{};
    if (!master.isOpen() || grantpt(master.number()) != 0 || unlockpt(master.number()) != 0 ||
        ptsname_r(master.number(), name.data(), name.size()) != 0)
        return std::nullopt;
    const Descriptor device(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    Pipe ends{aboveStandardStreams(device), aboveStandardStreams(master)};
    return ends.reading.isOpen() && ends.writing.isOpen() ? std::optional(std::move(ends)) : std::nullopt;
}

/// Starts the tool. Without `input` it reads nothing.
std::optional<pid_t> start(const std::string &executable, const std::vector<std::string> &arguments,
                           StandardError standardError, int output, std::optional<int> input) {
    ToolStart tool(onlySignal(SIGPIPE));
    tool.copy(output, STDOUT_FILENO);
    if (standardError == StandardError::withOutput)
        tool.copy(STDOUT_FILENO, STDERR_FILENO);
    else
        tool.discard(STDERR_FILENO, O_WRONLY);
    if (input)
        tool.copy(*input, STDIN_FILENO);
    else
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

using Pieces = std::function<void(std::string_view)>;

/// Passes on everything written until the last writer closes or the child is stopped, which it also is after
/// `mostBytes`. Returns whether that was too much.
bool readToEnd(int descriptor, Stopper &stopper, std::size_t mostBytes, const Pieces &take) {
    if (stopper.isNeeded())
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    std::size_t length = 0;
    std::array<char, 65536> buffer;
    while (!stopper.hasStopped()) {
        awaitOutput(descriptor, stopper);
        stopper.ask();
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            length += static_cast<std::size_t>(count);
            take(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        } else if (count == 0 || (errno != EINTR && !isStillEmpty())) {
            break;
        }
        if (length > mostBytes)
            stopper.stop();
    }
    return length > mostBytes;
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

/// Writes everything to the pipe and closes it.
void feed(const Descriptor &pipe, const std::string &input) {
    // A tool that stops reading must not end this program; the signal would be for this thread.
    const sigset_t brokenPipe = onlySignal(SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    std::size_t written = 0;
    while (written < input.size()) {
        const ssize_t count = write(pipe.number(), input.data() + written, input.size() - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return;
    }
}

/// Writes to a tool on a thread of its own, because the tool may print before it has read everything.
class Feeder {
public:
    /// `input` must outlive it.
    Feeder(Descriptor pipe, const std::string &input) {
        try {
            thread_ = std::thread(
                [&input, end = std::move(pipe)]() mutable { feed(std::exchange(end, Descriptor()), input); });
        } catch (const std::system_error &) { // no thread is available: the tool reads nothing
        }
    }
    ~Feeder() {
        if (thread_.joinable())
            thread_.join();
    }
    Feeder(const Feeder &) = delete;
    Feeder &operator=(const Feeder &) = delete;

private:
    std::thread thread_;
};

/// Passes on what a started tool prints until it ends.
ProcessResult awaitEnd(pid_t child, Pipe output, const std::function<bool()> &isStopped,
                       std::size_t mostBytes, const Pieces &take) {
    // The output ends only when every writing end is closed, including this one.
    output.writing.close();
    Stopper stopper(isStopped, child);
    const bool isTooLong = readToEnd(output.reading.number(), stopper, mostBytes, take);
    // If reading failed, the tool must not block on writing while we wait for it.
    output.reading.close();
    return ProcessResult{{}, exitStatusOf(child, stopper), isTooLong};
}

/// Collects what a started tool prints until it ends.
ProcessResult awaitEnd(pid_t child, Pipe output, const std::function<bool()> &isStopped,
                       std::size_t mostBytes) {
    std::string bytes;
    ProcessResult result = awaitEnd(child, std::move(output), isStopped, mostBytes,
                                    [&](std::string_view piece) { bytes += piece; });
    result.output = std::move(bytes);
    return result;
}

} // namespace

std::optional<ProcessResult> runProcess(const std::string &executable,
                                        const std::vector<std::string> &arguments,
                                        StandardError standardError, const std::function<bool()> &isStopped,
                                        std::size_t mostBytes) {
    std::string bytes;
    std::optional<ProcessResult> result = runProcessInPieces(
        executable, arguments, standardError, [&](std::string_view piece) { bytes += piece; }, isStopped,
        mostBytes);
    if (result)
        result->output = std::move(bytes);
    return result;
}

std::optional<ProcessResult> runProcessInPieces(const std::string &executable,
                                                const std::vector<std::string> &arguments,
                                                StandardError standardError, const Pieces &take,
                                                const std::function<bool()> &isStopped,
                                                std::size_t mostBytes) {
    if (!canBeStarted(executable, arguments))
        return std::nullopt;
    std::optional<Pipe> output = makePipe();
    if (!output)
        return std::nullopt;
    const std::optional<pid_t> child =
        start(executable, arguments, standardError, output->writing.number(), std::nullopt);
    if (!child)
        return std::nullopt;
    return awaitEnd(*child, *std::move(output), isStopped, mostBytes, take);
}

std::optional<ProcessResult> runProcessWithTerminal(const std::string &executable,
                                                    const std::vector<std::string> &arguments,
                                                    const std::function<bool()> &isStopped,
                                                    std::size_t mostBytes) {
    if (!canBeStarted(executable, arguments))
        return std::nullopt;
    std::optional<Pipe> output = makePipe();
    const std::optional<Pipe> terminal = makeTerminal(); // open as long as the tool runs
    if (!output || !terminal)
        return std::nullopt;
    const std::optional<pid_t> child = start(executable, arguments, StandardError::withOutput,
                                             output->writing.number(), terminal->reading.number());
    if (!child)
        return std::nullopt;
    return awaitEnd(*child, *std::move(output), isStopped, mostBytes);
}

std::optional<ProcessResult> runProcessWithInput(const std::string &executable,
                                                 const std::vector<std::string> &arguments,
                                                 StandardError standardError, const std::string &input) {
    if (!canBeStarted(executable, arguments))
        return std::nullopt;
    std::optional<Pipe> output = makePipe();
    std::optional<Pipe> given = makePipe();
    if (!output || !given)
        return std::nullopt;
    const std::optional<pid_t> child =
        start(executable, arguments, standardError, output->writing.number(), given->reading.number());
    if (!child)
        return std::nullopt;
    given->reading.close(); // or a tool that ends early would not break the pipe
    const Feeder feeder(std::move(given->writing), input);
    return awaitEnd(*child, *std::move(output), {}, std::numeric_limits<std::size_t>::max());
}

} // namespace brimvale
