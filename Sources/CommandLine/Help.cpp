#include "CommandLine/Help.h"

#include <vector>

namespace brimvale::commandLine {

namespace {

std::string withOperands(const Command &command) {
    std::string text(command.name);
    return command.operands.empty() ? text : text.append(" ").append(command.operands);
}

} // namespace

std::string programHelp(std::span<const Option> globalOptions) {
    HelpRows commands;
    for (const Command *command : allCommands())
        commands.emplace_back(withOperands(*command), command->summary);
    return "Usage: brimvalectl [OPTION]… COMMAND …\n"
           "\nShows where disk space has gone and gets it back safely.\n"
           "\nCommands (\"brimvalectl COMMAND --help\" says more; every command has --json):\n" +
           inColumns(commands) + "\nOptions, before the command:\n" + inColumns(helpRows(globalOptions)) +
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
           inColumns(helpRows(options));
}

} // namespace brimvale::commandLine
