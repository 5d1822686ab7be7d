#pragma once

#include "Platform/Tools.h"

#include <optional>
#include <string>

namespace brimvale {

/// Why a command was not run with the rights of an administrator.
struct PrivilegedRunError {
    std::optional<std::string> message; ///< the system's own words, where it has any
};

/// Runs a command of a POSIX shell with the rights of an administrator, for which the system asks the user.
/// Nothing means that the system reported no error, not that the command did what it was meant to do: look at
/// its effects. Where only its exit status tells that it failed, that is no error here.
///
/// Blocks for as long as the question stands and the command runs, so never call it on the main thread. One
/// command runs at a time; others wait. On Linux a command of 128 KiB or more cannot be run, which is an
/// error.
[[nodiscard]] std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command,
                                                                   const Tools &tools);

} // namespace brimvale
