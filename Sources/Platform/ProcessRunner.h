#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What to do with a tool's standard error.
enum class StandardError {
    discarded,
    withOutput ///< into the output, in the order in which it was written
};

/// What a tool printed and how it ended.
struct ProcessResult {
    std::string output;            ///< the unchanged bytes
    std::optional<int> exitStatus; ///< 0 to 255; nothing when a signal ended it or the status is unknown
    bool isTooLong = false;        ///< it was ended because it printed more than allowed

    [[nodiscard]] bool hasSucceeded() const { return exitStatus == 0; }
};

/// Runs the tool at an absolute path with these arguments, which reach it as they stand: no shell takes part.
/// It reads nothing from its standard input and otherwise has this program's environment and working folder.
/// Blocks until the tool has ended and its output is closed, which a process that it left behind may keep
/// open. Nothing when it cannot be started. Thread-safe.
///
/// `isStopped`, where there is one, is asked on this thread about ten times a second while the tool runs.
/// Once it answers true the tool is ended at once, with no chance to clean up, and what it has printed until
/// then is the result. A tool that prints more than `mostBytes` is ended in the same way.
[[nodiscard]] std::optional<ProcessResult>
runProcess(const std::string &executable, const std::vector<std::string> &arguments,
           StandardError standardError, const std::function<bool()> &isStopped = {},
           std::size_t mostBytes = std::numeric_limits<std::size_t>::max());

/// The same for a tool that prints much: `take` gets its output in pieces on this thread, as they come, and
/// the result has none.
[[nodiscard]] std::optional<ProcessResult>
runProcessInPieces(const std::string &executable, const std::vector<std::string> &arguments,
                   StandardError standardError, const std::function<void(std::string_view)> &take,
                   const std::function<bool()> &isStopped, std::size_t mostBytes);

/// The same for a tool whose standard input is a terminal on which nobody types: some programs ask for rights
/// in a window only if they have one. What it writes to standard error is in the output.
[[nodiscard]] std::optional<ProcessResult> runProcessWithTerminal(const std::string &executable,
                                                                  const std::vector<std::string> &arguments,
                                                                  const std::function<bool()> &isStopped,
                                                                  std::size_t mostBytes);

/// The same for a tool that is given `input` on its standard input. A tool that does not read all of it is no
/// failure.
[[nodiscard]] std::optional<ProcessResult> runProcessWithInput(const std::string &executable,
                                                               const std::vector<std::string> &arguments,
                                                               StandardError standardError,
                                                               const std::string &input);

} // namespace brimvale
