#pragma once

#include "Platform/Tools.h"

#include <cstddef>
#include <optional>
#include <string>

namespace brimvale {

/// Why a command was not run as administrator.
struct PrivilegedRunError {
    std::optional<std::string> message; ///< the system's message, if it has one
};

/// The number of bytes in the longest command that can be run as administrator.
[[nodiscard]] std::size_t longestAdministratorCommand();

/// Runs a shell command as administrator; the system asks the user for permission. No error means only that
/// the system reported none, so check the effects of the command. A failing exit status of the command itself
/// is no error here.
///
/// Blocks while the question is open and the command runs, so never call it on the main thread. One command
/// runs at a time; others wait. A command longer than `longestAdministratorCommand` may not run at all.
[[nodiscard]] std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command,
                                                                   const Tools &tools);

} // namespace brimvale
