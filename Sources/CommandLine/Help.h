#pragma once

#include "CommandLine/Command.h"

#include <span>
#include <string>

namespace brimvale::commandLine {

/// What "brimvalectl --help" prints. `globalOptions` stand before the command.
[[nodiscard]] std::string programHelp(std::span<const Option> globalOptions);

/// What "brimvalectl COMMAND --help" prints.
[[nodiscard]] std::string helpOf(const Command &command);

} // namespace brimvale::commandLine
