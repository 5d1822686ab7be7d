#pragma once

#include <csignal>
#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <vector>

namespace brimvale {

/// Starts a tool as a child process: chooses its streams and unblocks all signals.
class ToolStart {
public:
    /// The tool does not ignore the signals in `unignored`, even if this program does. `flags` are added to
    /// those of posix_spawn.
    explicit ToolStart(const sigset_t &unignored, short flags = 0);
    ~ToolStart();
    ToolStart(const ToolStart &) = delete;
    ToolStart &operator=(const ToolStart &) = delete;

    // The streams are set up in the order of these calls.

    /// Makes `stream` of the tool a copy of `descriptor`.
    void copy(int descriptor, int stream);
    /// Opens "/dev/null" as `stream` of the tool; `mode` as for open(2).
    void discard(int stream, int mode);

    /// Starts the tool at an absolute path with these arguments and sets `child`. Returns 0, or the error
    /// number.
    [[nodiscard]] int run(const std::string &executable, const std::vector<std::string> &arguments,
                          pid_t &child) const;

private:
    void note(int error);

    posix_spawn_file_actions_t streams_{};
    posix_spawnattr_t attributes_{};
    int error_ = 0; ///< the first
};

/// A set of just one signal.
[[nodiscard]] sigset_t onlySignal(int signal);
/// The set of all signals.
[[nodiscard]] sigset_t allSignals();

} // namespace brimvale
