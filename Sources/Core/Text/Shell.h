#pragma once

#include "Platform/ProcessRunner.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Runs command line tools and returns their output as text. A tool is named by its absolute path and gets
/// its arguments unchanged; no shell is involved. Every function blocks until the tool has ended, so call it
/// off the main thread. Each returns nothing when the tool cannot be started or its output is not UTF-8.
namespace Shell {

/// The tool's standard output, whatever its exit status.
[[nodiscard]] std::optional<std::string> run(const std::string &executable,
                                             const std::vector<std::string> &arguments);

/// The tool's standard output and standard error in the order written, whatever its exit status.
[[nodiscard]] std::optional<std::string> runCombined(const std::string &executable,
                                                     const std::vector<std::string> &arguments);

/// The same for a tool that works long: `isStopped` is asked on this thread about ten times a second, which
/// is also the time to look how far it is. Once it answers true the tool is ended at once, and what it has
/// written until then is the answer.
[[nodiscard]] std::optional<std::string> runCombined(const std::string &executable,
                                                     const std::vector<std::string> &arguments,
                                                     const std::function<bool()> &isStopped);

/// A tool's text and end.
struct Result {
    std::string output;
    std::optional<int> exitStatus; ///< 0 to 255; nothing when a signal ended it, or how it ended is not known

    /// Whether the tool itself says so.
    [[nodiscard]] bool hasSucceeded() const { return exitStatus == 0; }
};

/// The same, where it matters how the tool ended.
[[nodiscard]] std::optional<Result> runWithStatus(const std::string &executable,
                                                  const std::vector<std::string> &arguments,
                                                  StandardError standardError = StandardError::discarded);

} // namespace Shell

} // namespace brimvale
