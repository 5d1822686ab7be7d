#include "Platform/ProcessRunner.h"

#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
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

std::string readToEnd(int descriptor) {
    std::string bytes;
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0)
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return bytes;
    }
}

std::optional<int> exitStatusOf(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return std::nullopt;
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

} // namespace

std::optional<ProcessResult> runProcess(const std::string &executable,
                                        const std::vector<std::string> &arguments,
                                        StandardError standardError) {
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
    std::string output = readToEnd(reading.number());
    // Had reading failed, the tool must not wait for a reader while it is waited for.
    reading.close();
    return ProcessResult{std::move(output), exitStatusOf(*child)};
}

} // namespace brimvale
