#pragma once

#include "Base/Result.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Tools.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Why a command was not run as administrator.
struct PrivilegedRunError {
    std::optional<std::string> message; ///< the system's message, if it has one
};

/// Runs a shell command as administrator; the system asks the user for permission. No error means only that
/// the system reported none, so check the effects of the command. A failing exit status of the command itself
/// is no error here.
///
/// Blocks while the question is open and the command runs, so never call it on the main thread. One command
/// runs at a time; others wait. A command longer than
/// the system takes does not run.
[[nodiscard]] std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command,
                                                                   const Tools &tools);

/// Runs a program, the first of these words, with the others as its arguments as administrator; the system
/// asks the user for permission. What it printed and how it ended. Blocks like `runAsAdministrator`. Always
/// an error on macOS, which has only that.
[[nodiscard]] Result<ProcessResult, PrivilegedRunError>
runProgramAsAdministrator(const std::vector<std::string> &words, const Tools &tools);

} // namespace brimvale
