#include "CommandLine/Commands.h"

#include "Catalogs/Words.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Text/Formatting.h"

#include <algorithm>

namespace brimvale::commandLine {

namespace {

void writeNames(Output &output, const std::vector<LocalSnapshot> &snapshots) {
    TextTable table({TextTable::ageColumn("CREATED"), {"NAME"}});
    for (const LocalSnapshot &snapshot : snapshots)
        table.add({Fmt::relativeDate(snapshot.date), terminalText(snapshot.name)});
    table.write(output);
}

void writeWithTools(Output &output, const std::vector<LocalSnapshot> &snapshots) {
    TextTable table({TextTable::ageColumn("CREATED"),
                     TextTable::sizeColumn("SIZE"),
                     {"TOOL"},
                     {"NAME"},
                     {"DESCRIPTION"}});
    for (const LocalSnapshot &snapshot : snapshots)
        table.add({Fmt::relativeDate(snapshot.date),
                   snapshot.exclusiveBytes ? Fmt::byteFormatter(*snapshot.exclusiveBytes) : "unknown",
                   snapshot.tool.value_or("–"), terminalText(snapshot.name),
                   terminalText(snapshot.description.value_or(""))});
    table.write(output);
}

void writeSnapshots(Output &output, const std::vector<LocalSnapshot> &snapshots) {
    const std::optional<std::string> note = snapshotNote(snapshots.size());
    if (!note) {
        output.write("There are no local snapshots.\n");
        return;
    }
    const bool haveTools = std::any_of(snapshots.begin(), snapshots.end(),
                                       [](const LocalSnapshot &one) { return one.tool.has_value(); });
    if (haveTools)
        writeWithTools(output, snapshots);
    else
        writeNames(output, snapshots);
    output.write("\n" + *note + "\n");
    output.write(Words::current().snapshotsRemark + "\n");
}

ExitStatus runSnapshots(const Arguments &arguments, Output &output) {
    const std::string_view typed = arguments.operands().empty() ? "/" : arguments.operands().front();
    const auto place = resolveGivenPath(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }
    const std::vector<LocalSnapshot> snapshots = LocalSnapshot::list(std::get<FileURL>(place).path());
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeRecords(json, snapshots);
    } else {
        writeSnapshots(output, snapshots);
    }
    return ExitStatus::done;
}

} // namespace

constinit const Command snapshotsCommand = {
    .name = "snapshots",
    .operands = "[VOLUME]",
    .operandCount = {.minimum = 0, .maximum = 1},
    .summary = "Lists the local snapshots of a volume (the root volume).",
    .help =
        "\nThe newest comes first. These are the snapshots of the file system and its tools that you have\n"
        "permission to see.\n",
    .run = runSnapshots,
};

} // namespace brimvale::commandLine
