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

/// The tool's text and how it ended. For a tool that works long, `isStopped` is called on this thread about
/// ten times a second, so it may also look how far the tool is. When it returns true the tool is killed, and
/// the text is what it has written until then.
[[nodiscard]] std::optional<ProcessResult>
runWithStatus(const std::string &executable, const std::vector<std::string> &arguments,
              StandardError standardError = StandardError::discarded,
              const std::function<bool()> &isStopped = {});

} // namespace Shell

} // namespace brimvale
