#include "CommandLine/Volumes.h"

#include "CommandLine/EntryTable.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <chrono>

namespace brimvale::commandLine {

namespace {

/// Nobody waits for a first paint here, and a server in another town may answer yet.
constexpr std::chrono::seconds patience{2};

void writeVolumes(Output &output, const std::vector<VolumeInfo> &volumes) {
    constexpr int sizeWidth = usualSizeWidth;
    std::size_t nameWidth = std::string_view("NAME").size();
    for (const VolumeInfo &volume : volumes)
        nameWidth = std::max(nameWidth, characterCount(terminalText(volume.name)));
    const auto writeRow = [&](const std::string &size, const std::string &used, const std::string &available,
                              const std::string &name, std::string_view path) {
        writeColumns(output,
                     {{size, sizeWidth},
                      {used, sizeWidth},
                      {available, sizeWidth},
                      {name, -static_cast<int>(nameWidth)}},
                     path);
    };
    writeRow("SIZE", "USED", "AVAILABLE", "NAME", "MOUNTED AT");
    for (const VolumeInfo &volume : volumes)
        writeRow(Fmt::byteFormatter(volume.totalCapacity),
                 Fmt::byteFormatter(volume.totalCapacity - volume.trueFree),
                 Fmt::byteFormatter(volume.shownAvailable()), terminalText(volume.name),
                 terminalText(volume.url.path()));
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
    .help = "\nThe root volume comes first. One on a network is missing if it does not answer soon.\n",
    .run = runVolumes,
};

} // namespace brimvale::commandLine
