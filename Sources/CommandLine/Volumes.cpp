#include "CommandLine/Commands.h"

#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace brimvale::commandLine {

namespace {

/// No window waits for this, so even a slow server has time to answer.
constexpr std::chrono::seconds patience{2};

/// Where the system does not tell the types and devices, they have no columns.
void writeVolumes(Output &output, const std::vector<VolumeInfo> &volumes) {
    const bool hasDevices = std::any_of(volumes.begin(), volumes.end(),
                                        [](const VolumeInfo &volume) { return volume.device.has_value(); });
    std::vector<TextTable::Column> columns = {TextTable::sizeColumn("SIZE"),
                                              TextTable::sizeColumn("USED"),
                                              TextTable::sizeColumn("AVAILABLE"),
                                              TextTable::sizeColumn("RESERVED"),
                                              {"NAME"}};
    if (hasDevices)
        columns.insert(columns.end(), {{"TYPE"}, {"DEVICE"}});
    columns.push_back({"MOUNTED AT"});
    TextTable table(columns);
    for (const VolumeInfo &volume : volumes) {
        std::vector<std::string> row = {Fmt::byteFormatter(volume.totalCapacity),
                                        Fmt::byteFormatter(volume.used()),
                                        Fmt::byteFormatter(volume.shownAvailable()),
                                        Fmt::byteFormatter(volume.reserved), terminalText(volume.name)};
        if (hasDevices)
            row.insert(row.end(), {terminalText(volume.fileSystem.value_or("–")),
                                   terminalText(volume.device.value_or("–"))});
        row.push_back(terminalText(volume.url.path()));
        table.add(std::move(row));
    }
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
        "\nThe root volume comes first. Network volumes that do not answer soon are left out.\n"
        "RESERVED is free space that the file system keeps for itself and the administrator; it is not part\n"
        "of SIZE.\n",
    .run = runVolumes,
};

} // namespace brimvale::commandLine
