#include "CommandLine/Commands.h"

#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Text/Formatting.h"

#include <chrono>

namespace brimvale::commandLine {

namespace {

/// No window waits for this, so even a slow server has time to answer.
constexpr std::chrono::seconds patience{2};

void writeVolumes(Output &output, const std::vector<VolumeInfo> &volumes) {
    TextTable table({TextTable::sizeColumn("SIZE"),
                     TextTable::sizeColumn("USED"),
                     TextTable::sizeColumn("AVAILABLE"),
                     TextTable::sizeColumn("RESERVED"),
                     {"NAME"},
                     {"MOUNTED AT"}});
    for (const VolumeInfo &volume : volumes)
        table.add({Fmt::byteFormatter(volume.totalCapacity), Fmt::byteFormatter(volume.used()),
                   Fmt::byteFormatter(volume.shownAvailable()), Fmt::byteFormatter(volume.reserved),
                   terminalText(volume.name), terminalText(volume.url.path())});
    table.write(output);
}

ExitStatus runVolumes(const Arguments &arguments, Output &output) {
    const std::vector<VolumeInfo> volumes = VolumeInfo::current(patience);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeRecords(json, volumes);
        return ExitStatus::done;
    }
    writeVolumes(output, volumes);
    if (const auto root = VolumeInfo::root(volumes))
        if (const auto sentence = purgeableSentence(*root))
            output.write("\n" + *sentence + "\n");
    return ExitStatus::done;
}

} // namespace

constinit const Command volumesCommand = {
    .name = "volumes",
    .operands = "",
    .operandCount = {.minimum = 0, .maximum = 0},
    .summary = "Lists the mounted volumes with their space.",
    .help =
        "\nThe root volume comes first. One on a network is missing if it does not answer soon.\n"
        "RESERVED is free space that the file system keeps for itself and the administrator; it is not part\n"
        "of SIZE.\n",
    .run = runVolumes,
};

} // namespace brimvale::commandLine
