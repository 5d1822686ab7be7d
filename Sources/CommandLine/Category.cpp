#include "CommandLine/Commands.h"

#include "CommandLine/EntryTable.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/OverviewRun.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Storage/StorageFigures.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

struct Measurement {
    MeasuredCategory category;
    std::vector<std::string> explanations = {}; ///< what no row shows
};

/// System Data is a remainder, so it needs the sizes of all other categories.
Measurement measureOf(const StorageCategory &category, const StopFlag &cancelled) {
    if (category.measurement == CategoryMeasurement::measured)
        return {StorageCategories::measure(category, cancelled, Host::current(), WalkPool::shared(),
                                           FileURL("/"))};
    const OverviewFigures figures = measureOverview(cancelled);
    return {*std::find_if(figures.categories.begin(), figures.categories.end(),
                          [&](const MeasuredCategory &one) { return one.category.id == category.id; }),
            explanationsOf(figures)};
}

void writeCategory(Output &output, const Measurement &measurement) {
    const MeasuredCategory &measured = measurement.category;
    const StorageCategory &category = measured.category;
    output.write(category.title + ", " + (measured.measured ? Fmt::byteFormatter(measured.size) : "–") +
                 " (" + std::string(label(category.risk)) + ")\n" + category.detail + "\n");
    if (category.caveat)
        output.write(*category.caveat + "\n");
    if (const auto *readOnly = std::get_if<ReadOnlyAction>(&category.action))
        output.write(readOnly->reason + "\n");
    if (const auto *backup = std::get_if<BackupThenRemoveAction>(&category.action))
        output.write(backup->warning + "\n");
    if (!measured.entries.empty())
        output.write("\n");
    writeEntryTable(output, measured.entries);
    for (const auto &sentence :
         {StorageFigures::systemDataSentence({measured}), StorageFigures::elsewhereSentence(measured)})
        if (sentence)
            output.write("\n" + *sentence + "\n");
    for (const std::string &sentence : measurement.explanations)
        output.write("\n" + sentence + "\n");
}

ExitStatus runCategory(const Arguments &arguments, Output &output) {
    const std::string_view id = arguments.operands().front();
    const std::vector<StorageCategory> categories = StorageCategories::all();
    const auto category = std::find_if(categories.begin(), categories.end(),
                                       [&](const StorageCategory &one) { return one.id == id; });
    if (category == categories.end()) {
        std::string known;
        for (const StorageCategory &one : categories)
            known.append(known.empty() ? "" : ", ").append(one.id);
        return refuseUsage("unknown category " + inQuotes(id) + "; there are " + known, &categoryCommand);
    }

    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const Measurement measured = measureOf(*category, cancelled);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeRecord(json, measured.category);
    } else {
        writeCategory(output, measured);
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command categoryCommand = {
    .name = "category",
    .operands = "ID",
    .operandCount = {.minimum = 1, .maximum = 1},
    .summary = "Measures one category of the overview, and shows what is in it.",
    .help = "\n\"brimvalectl overview\" shows the IDs.\n",
    .run = runCategory,
};

} // namespace brimvale::commandLine
