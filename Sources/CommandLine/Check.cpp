#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Text/JsonWriter.h"

#include <array>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array checkOptions = {hexOption, from0Option};

void writeElement(JsonWriter &json, const FileURL &url, const std::optional<std::string> &reason) {
    json.beginObject();
    json.path("url", url.path());
    json.member("reason", reason);
    json.end();
}

ExitStatus runCheck(const Arguments &arguments, Output &output) {
    const auto given = givenPaths(arguments, checkCommand);
    if (const auto *wrong = std::get_if<ExitStatus>(&given))
        return *wrong;
    const bool isJson = arguments.has("--json");
    JsonWriter json(output);
    if (isJson)
        json.beginArray();
    const RemovalGate gate;
    ExitStatus status = ExitStatus::done;
    for (const std::string &typed : std::get<std::vector<std::string>>(given)) {
        const Result<FileURL> place = placeToRemove(typed);
        if (const auto *error = std::get_if<FileError>(&place)) {
            printPathError(typed, *error);
            status = ExitStatus::failed;
            continue;
        }
        const auto &url = std::get<FileURL>(place);
        const std::optional<std::string> reason = gate.refusal(url);
        if (reason)
            status = ExitStatus::failed;
        if (isJson)
            writeElement(json, url, reason);
        else
            output.write((reason ? terminalText(*reason) : "ok") + "\n");
    }
    if (isJson)
        json.end();
    return status;
}

} // namespace

constinit const Command checkCommand = {
    .name = "check",
    .operands = "PATH…",
    .operandCount = {},
    .options = checkOptions,
    .summary = "Says whether each path may be removed.",
    .help = "\nPrints one line for each path, in their order: \"ok\", or why it is never removed. Your "
            "permissions\n"
            "are not checked.\n",
    .run = runCheck,
};

} // namespace brimvale::commandLine
