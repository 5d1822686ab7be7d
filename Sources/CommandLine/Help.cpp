#include "CommandLine/Help.h"

#include "CommandLine/TerminalText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace brimvale::commandLine {

namespace {

using Rows = std::vector<std::pair<std::string, std::string_view>>;

/// Two columns, the first as wide as it has to be.
std::string columns(const Rows &rows) {
    std::size_t width = 0;
    for (const auto &[left, right] : rows)
        width = std::max(width, characterCount(left));
    std::string text;
    for (const auto &[left, right] : rows)
        text.append("  ").append(left).append(width - characterCount(left) + 2, ' ').append(right) += "\n";
    return text;
}

std::string withValue(const Option &option) {
    std::string text(option.name);
    return option.valueName.empty() ? text : text.append(" ").append(option.valueName);
}

Rows rowsOf(std::span<const Option> options) {
    Rows rows;
    for (const Option &option : options)
        rows.emplace_back(withValue(option), option.help);
    return rows;
}

std::string withOperands(const Command &command) {
    std::string text(command.name);
    return command.operands.empty() ? text : text.append(" ").append(command.operands);
}

} // namespace

std::string programHelp(std::span<const Option> globalOptions) {
    Rows commands;
    for (const Command *command : allCommands())
        commands.emplace_back(withOperands(*command), command->summary);
    return "Usage: brimvalectl [OPTION]… COMMAND …\n"
           "\nShows where disk space has gone and gets it back safely.\n"
           "\nCommands (\"brimvalectl COMMAND --help\" tells more; every command has --json):\n" +
           columns(commands) + "\nOptions, before the command:\n" + columns(rowsOf(globalOptions)) +
           "\n\"--\" ends options. Exit status: 0 done, 1 something was refused or failed, 2 wrong usage,\n"
           "130 interrupted.\n";
}

std::string helpOf(const Command &command) {
    const std::vector<Option> options = optionsOf(command);
    std::string usage = "Usage: brimvalectl " + withOperands(command);
    for (const Option &option : options)
        if (option.name != "--help")
            usage.append(" [").append(withValue(option)).append("]");
    return usage.append("\n\n").append(command.summary).append("\n").append(command.help) + "\nOptions:\n" +
           columns(rowsOf(options));
}

} // namespace brimvale::commandLine
