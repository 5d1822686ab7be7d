#include "CommandLine/Command.h"

#include "CommandLine/Commands.h"
#include "CommandLine/Help.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"

#include <algorithm>
#include <array>
#include <variant>

namespace brimvale::commandLine {

namespace {

std::string sentenceOf(const UsageError &error) {
    const std::string name = inQuotes(error.option.name);
    switch (error.kind) {
    case UsageError::Kind::unknownOption:
        return "unknown option " + name;
    case UsageError::Kind::needsValue:
        return name + " needs a value: " + std::string(error.option.valueName);
    case UsageError::Kind::takesNoValue:
        return name + " takes no value";
    case UsageError::Kind::takesNumber:
        return name + " takes a whole number from 0 up, not " + inQuotes(error.value);
    }
    return "";
}

} // namespace

std::span<const Command *const> allCommands() {
    static constexpr std::array commands = {
        &scanCommand,       &openCommand,    &compareCommand,   &sizeCommand,      &findCommand,
        &duplicatesCommand, &treemapCommand, &checkCommand,     &reclaimCommand,   &removeCommand,
        &trashCommand,      &volumesCommand, &snapshotsCommand, &cleanupCommand,   &overviewCommand,
        &categoryCommand,   &appsCommand,    &leftoversCommand, &uninstallCommand, &backupCommand,
        &transcriptCommand, &updateCommand};
    return commands;
}

const Command *commandNamed(std::string_view name) {
    if (name == installUpdateCommand.name)
        return &installUpdateCommand;
    const auto commands = allCommands();
    const auto found =
        std::find_if(commands.begin(), commands.end(), [&](const Command *one) { return one->name == name; });
    return found == commands.end() ? nullptr : *found;
}

std::vector<Option> optionsOf(const Command &command) {
    std::vector<Option> options(command.options.begin(), command.options.end());
    options.push_back({.name = "--json", .help = "Print one JSON document instead."});
    options.push_back({.name = "--help", .help = "Print this help."});
    return options;
}

ExitStatus run(const Command &command, std::span<const char *const> words, Output &output) {
    const std::vector<Option> options = optionsOf(command);
    const auto parsed = Arguments::parse(words, options, Arguments::Order::mixed);
    if (const auto *error = std::get_if<UsageError>(&parsed))
        return refuseUsage(*error, &command);

    const auto &arguments = std::get<Arguments>(parsed);
    if (arguments.has("--help")) {
        output.write(helpOf(command));
        return ExitStatus::done;
    }
    const std::vector<const char *> &operands = arguments.operands();
    if (operands.size() < command.operandCount.minimum)
        return refuseUsage("missing argument: " + std::string(command.operands), &command);
    if (operands.size() > command.operandCount.maximum)
        return refuseUsage("unexpected argument " + inQuotes(operands[command.operandCount.maximum]),
                           &command);
    return command.run(arguments, output);
}

ExitStatus endInterrupted(Output &output) {
    output.flush();
    printError("interrupted: the figures are partial");
    return ExitStatus::interrupted;
}

ExitStatus refuseUsage(const std::string &sentence, const Command *command) {
    const std::string name(command == nullptr ? "" : command->name);
    const std::string prefix = command == nullptr ? name : name + ": ";
    const std::string words = command == nullptr ? name : name + " ";
    printError(prefix + sentence + " (see \"brimvalectl " + words + "--help\")");
    return ExitStatus::wrongUsage;
}

ExitStatus refuseUsage(const UsageError &error, const Command *command) {
    return refuseUsage(sentenceOf(error), command);
}

} // namespace brimvale::commandLine
