#pragma once

#include "CommandLine/Command.h"

#include <span>
#include <string>

namespace brimvale::commandLine {

/// The output of "brimvalectl --help". `globalOptions` come before the command.
[[nodiscard]] std::string programHelp(std::span<const Option> globalOptions);

/// The output of "brimvalectl COMMAND --help".
[[nodiscard]] std::string helpOf(const Command &command);

} // namespace brimvale::commandLine
