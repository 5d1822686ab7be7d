#pragma once

#include "Base/Options.h"
#include "CommandLine/Output.h"

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// The exit status of the program.
enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, interrupted = 130 };

/// The number of operands a command takes.
struct OperandCount {
    std::size_t minimum = 0;
    std::size_t maximum = std::numeric_limits<std::size_t>::max();
};

/// A command of the program. To add one, define it in a file of its own, and add a line to `Commands.h` and
/// to `allCommands`.
struct Command {
    std::string_view name;
    std::string_view operands; ///< as shown in the help: "[PATH]"
    OperandCount operandCount;
    std::span<const Option> options = {}; ///< without the options of all commands
    std::string_view summary;             ///< one line, for the list of commands
    std::string_view help;                ///< further explanation, in whole lines

    /// Does the work, and reports failures on standard error. The arguments match the declaration; the
    /// command itself handles "--json".
    ExitStatus (*run)(const Arguments &arguments, Output &output);
};

/// Every command for users, in the order of the help.
[[nodiscard]] std::span<const Command *const> allCommands();

/// The command of this name, or null. Also one that the help does not list.
[[nodiscard]] const Command *commandNamed(std::string_view name);

/// The command's own options and those of all commands: "--json" and "--help".
[[nodiscard]] std::vector<Option> optionsOf(const Command &command);

/// Runs a command with the words after its name. Reports wrong usage on standard error.
[[nodiscard]] ExitStatus run(const Command &command, std::span<const char *const> words, Output &output);

/// Ends a command that was stopped by a signal: writes out the buffered output, and a note on standard error
/// that the figures are partial.
ExitStatus endInterrupted(Output &output);

/// Reports on standard error what is wrong with the command line, and which help to read: that of `command`,
/// or that of the program if it is null.
ExitStatus refuseUsage(const std::string &sentence, const Command *command = nullptr);
ExitStatus refuseUsage(const UsageError &error, const Command *command = nullptr);

} // namespace brimvale::commandLine
