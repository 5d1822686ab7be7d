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

/// How the program ends.
enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, interrupted = 130 };

/// How many operands a command takes.
struct OperandCount {
    std::size_t minimum = 0;
    std::size_t maximum = std::numeric_limits<std::size_t>::max();
};

/// A command of the program. To add one: a unit that defines it, and its lines in `Commands.h` and
/// `allCommands`.
struct Command {
    std::string_view name;
    std::string_view operands; ///< as the help shows them: "[PATH]"
    OperandCount operandCount;
    std::span<const Option> options = {}; ///< its own, without those that every command has
    std::string_view summary;             ///< one line, for the list of commands
    std::string_view help;                ///< what there is to know beyond it, in whole lines

    /// Does the work, and tells on standard error what could not be done. The arguments have been checked
    /// against the declaration; "--json" is theirs to look at.
    ExitStatus (*run)(const Arguments &arguments, Output &output);
};

/// Every command of the program, in the order of the help.
[[nodiscard]] std::span<const Command *const> allCommands();

/// The command's own options and those that every command has: "--json" and "--help".
[[nodiscard]] std::vector<Option> optionsOf(const Command &command);

/// Runs a command with the words that stand behind its name. Wrong usage is told on standard error.
[[nodiscard]] ExitStatus run(const Command &command, std::span<const char *const> words, Output &output);

/// How a command ends that was stopped by a signal: what it has printed is passed on, and followed by a
/// remark on standard error that the figures are partial.
ExitStatus endInterrupted(Output &output);

/// Tells on standard error what is wrong with the command line, and where to read about it: in the help of
/// `command`, or in that of the program where there is no command yet.
ExitStatus refuseUsage(const std::string &sentence, const Command *command = nullptr);
ExitStatus refuseUsage(const UsageError &error, const Command *command = nullptr);

} // namespace brimvale::commandLine
