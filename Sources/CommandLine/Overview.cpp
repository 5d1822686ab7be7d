#include "CommandLine/Commands.h"

#include "Base/Text.h"
#include "CommandLine/EntryTable.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/OverviewRun.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/StorageFigures.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace brimvale::commandLine {

namespace {

void writeHiddenSpace(JsonWriter &json, const OverviewFigures &figures) {
    json.key("explanations");
    json.beginArray();
    for (const std::string &sentence : explanationsOf(figures))
        json.value(sentence);
    json.end();
    json.key("deletedFiles");
    json.beginArray();
    for (const DeletedFiles::Holder &holder : figures.hidden.deletedFiles.holders) {
        json.beginObject();
        json.member("program", displayText(holder.program));
        json.member("bytes", holder.bytes);
        json.end();
    }
    json.end();
    json.member("unknownPrograms", figures.hidden.deletedFiles.unknownPrograms);
    json.paths("incomplete", StorageFigures::incompletePlaces(figures.categories));
}

void writeOverview(Output &output, const OverviewFigures &figures, bool hasTargets) {
    JsonWriter json(output);
    json.beginObject();
    json.key("volumes");
    writeRecords(json, figures.volumes);
    json.key("categories");
    writeRecords(json, figures.categories);
    json.member("categorisedBytes", StorageFigures::categorisedBytes(figures.categories));
    json.member("systemDataAccounted", StorageFigures::systemDataAccounted(figures.categories));
    json.member("sentence", StorageFigures::systemDataSentence(figures.categories));
    if (explainsHiddenSpace())
        writeHiddenSpace(json, figures);
    if (hasTargets) {
        json.key("cleanup");
        writeRecords(json, figures.targets);
    }
    json.end();
}

void writeVolume(Output &output, const VolumeInfo &volume) {
    output.write(terminalText(volume.name) + ": " + Fmt::byteFormatter(volume.used()) + " of " +
                 Fmt::byteFormatter(volume.totalCapacity) + " used, " +
                 Fmt::byteFormatter(volume.shownAvailable()) + " available\n");
    if (const auto sentence = purgeableSentence(volume))
        output.write(*sentence + "\n");
    if (const auto sentence = reservedSentence(volume))
        output.write(*sentence + "\n");
    output.write("\n");
}

void writeCategories(Output &output, const std::vector<MeasuredCategory> &categories) {
    TextTable table({TextTable::sizeColumn("SIZE"), {"ID"}, {"CATEGORY"}});
    for (const MeasuredCategory &one : categories)
        table.add({one.measured ? Fmt::byteFormatter(one.size) : "–", one.category.id, one.category.title});
    table.write(output);
}

constexpr std::array overviewOptions = {
    Option{.name = "--cleanup", .help = "Measure the cleanup targets too; what both share is read once."},
};

/// Those with a place on this computer.
std::vector<CleanupTarget> targetsHere() {
    std::vector<CleanupTarget> targets = CleanupCatalog::definitions();
    std::erase_if(targets, [](const CleanupTarget &one) { return !one.hasPlace; });
    return targets;
}

ExitStatus runOverview(const Arguments &arguments, Output &output) {
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const bool hasTargets = arguments.has("--cleanup");
    const OverviewFigures figures =
        measureOverview(cancelled, hasTargets ? targetsHere() : std::vector<CleanupTarget>());
    if (arguments.has("--json")) {
        writeOverview(output, figures, hasTargets);
    } else {
        if (const auto root = VolumeInfo::root(figures.volumes))
            writeVolume(output, *root);
        writeCategories(output, figures.categories);
        if (hasTargets) {
            output.write("\n");
            writeTargetTable(output, figures.targets);
        }
        for (const std::string &sentence : explanationsOf(figures))
            output.write("\n" + sentence + "\n");
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command overviewCommand = {
    .name = "overview",
    .operands = "",
    .operandCount = {.minimum = 0, .maximum = 0},
    .options = overviewOptions,
    .summary = "Measures what uses the space of the root volume.",
    .help =
        "\nSystem Data is the used space that no other category explains. \"brimvalectl category ID\" shows\n"
        "what is in one of them.\n",
    .run = runOverview,
};

} // namespace brimvale::commandLine
