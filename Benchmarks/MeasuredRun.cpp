#include "MeasuredRun.h"

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

double secondsOf(const timeval &time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Linux tells the peak in KiB, macOS in bytes: a child that fills a known amount shows which.
std::int64_t unitOfPeak() {
    constexpr std::size_t filled = 16 << 20;
    constexpr std::size_t page = 4096;
    const pid_t child = fork();
    if (child == 0) {
        volatile char *memory = static_cast<char *>(std::malloc(filled));
        for (std::size_t i = 0; memory != nullptr && i < filled; i += page)
            memory[i] = 1;
        _exit(0);
    }
    rusage usage{};
    if (child < 0 || wait4(child, nullptr, 0, &usage) != child)
        return 1024;
    return usage.ru_maxrss >= static_cast<long>(filled) ? 1 : 1024;
}

/// 0 when it could not be started.
pid_t start(std::vector<std::string> &command) {
    std::vector<char *> words;
    for (std::string &word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
    pid_t process = 0;
    const int error = posix_spawnp(&process, words.front(), &files, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? process : 0;
}

} // namespace

std::optional<MeasuredRun> measure(std::vector<std::string> command) {
    static const std::int64_t unit = unitOfPeak();
    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = start(command);
    int status = 0;
    rusage usage{};
    if (process == 0 || wait4(process, &status, 0, &usage) != process)
        return std::nullopt;
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    return MeasuredRun{seconds.count(), secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
                       usage.ru_maxrss * unit, WIFEXITED(status) && WEXITSTATUS(status) == 0};
}
