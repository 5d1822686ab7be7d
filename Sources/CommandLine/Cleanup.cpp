#include "CommandLine/Commands.h"

#include "CommandLine/EntryTable.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/TerminalText.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace brimvale::commandLine {

namespace {

using Targets = std::vector<CleanupTarget>;

auto targetNamed(Targets &targets, std::string_view id) {
    return std::find_if(targets.begin(), targets.end(),
                        [&](const CleanupTarget &one) { return one.id == id; });
}

ExitStatus refuseUnknown(std::string_view id, const Targets &targets) {
    std::string known;
    for (const CleanupTarget &target : targets)
        known.append(known.empty() ? "" : ", ").append(target.id);
    return refuseUsage("unknown target " + inQuotes(id) + "; there are " + known, &cleanupCommand);
}

void measureTargets(Targets &targets, const StopFlag &cancelled) {
    StepProgress progress(targets.size());
    CleanupCatalog::measureAll(
        targets,
        [&](CleanupTarget measured) {
            *targetNamed(targets, measured.id) = std::move(measured);
            progress.step();
        },
        cancelled);
}

void writeDetails(Output &output, const CleanupTarget &target) {
    output.write(target.title + ", " + Fmt::byteFormatter(CleanupEntries::totalSize(target.entries)) + " (" +
                 std::string(label(target.risk)) + ")\n" + target.detail + "\n");
    for (const std::string &command : target.commands)
        output.write("In a terminal: " + command + "\n");
    writeEntryTable(output, target.entries);
}

ExitStatus runCleanup(const Arguments &arguments, Output &output) {
    Targets targets = CleanupCatalog::definitions();
    const auto &ids = arguments.operands();
    for (const std::string_view id : ids)
        if (targetNamed(targets, id) == targets.end())
            return refuseUnknown(id, targets);
    std::erase_if(targets, [&](const CleanupTarget &one) {
        return ids.empty() ? !one.hasPlace : std::find(ids.begin(), ids.end(), one.id) == ids.end();
    });

    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    measureTargets(targets, cancelled);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeRecords(json, targets);
    } else if (ids.empty()) {
        writeTargetTable(output, targets);
    } else {
        for (const CleanupTarget &target : targets) {
            output.write(&target == &targets.front() ? "" : "\n");
            writeDetails(output, target);
        }
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command cleanupCommand = {
    .name = "cleanup",
    .operands = "[ID…]",
    .operandCount = {},
    .summary = "Measures caches, logs and other data that you can clean up.",
    .help = "\nWith IDs, shows only those targets, and the items in each. Nothing is removed.\n",
    .run = runCleanup,
};

} // namespace brimvale::commandLine
