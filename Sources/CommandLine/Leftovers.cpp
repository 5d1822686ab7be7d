#include "CommandLine/Commands.h"

#include "Catalogs/Words.h"
#include "CommandLine/AppJson.h"
#include "CommandLine/AppOperand.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Apps/LeftoverSearch.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace brimvale::commandLine {

namespace {

void writeLeftovers(Output &output, const std::vector<LeftoverItem> &items, MatchConfidence confidence) {
    const bool hasReasons = std::any_of(items.begin(), items.end(),
                                        [](const LeftoverItem &item) { return !item.reason.empty(); });
    std::vector<TextTable::Column> columns = {TextTable::sizeColumn("SIZE"), {"CATEGORY"}};
    if (hasReasons)
        columns.emplace_back("REASON");
    columns.emplace_back("PATH");
    TextTable table(std::move(columns));
    bool isEmpty = true;
    bool isVague = false;
    for (const LeftoverItem &item : items) {
        if (item.confidence != confidence)
            continue;
        std::vector<std::string> cells = {Fmt::byteFormatter(item.size), terminalText(item.category)};
        if (hasReasons)
            cells.push_back(item.reason);
        cells.push_back(terminalText(item.url.path()) + (item.requiresAdmin ? "  [administrator]" : "") +
                        (item.isCareful ? "  [careful]" : ""));
        table.add(std::move(cells));
        isEmpty = false;
        isVague = isVague || item.isVague;
    }
    if (isEmpty)
        return;
    output.write(std::string(title(confidence)).append(": ").append(explanation(confidence)).append("\n"));
    table.write(output);
    if (isVague)
        output.write(vagueWarning() + "\n");
}

void writeReport(Output &output, const std::vector<LeftoverItem> &items) {
    if (items.empty())
        output.write(Words::current().noOtherFiles + "\n");
    writeLeftovers(output, items, MatchConfidence::exact);
    if (!items.empty() && items.front().confidence != items.back().confidence)
        output.write("\n");
    writeLeftovers(output, items, MatchConfidence::likely);
}

ExitStatus runLeftovers(const Arguments &arguments, Output &output) {
    const std::optional<InstalledApp> app = appMeantBy(arguments.operands().front());
    if (!app)
        return ExitStatus::failed;
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const std::vector<LeftoverItem> items = leftoverSearch()(*app, cancelled);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeLeftovers(json, items);
    } else {
        writeReport(output, items);
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command leftoversCommand = {
    .name = "leftovers",
    .operands = "APP",
    .operandCount = {.minimum = 1, .maximum = 1},
    .summary = "Finds the files that an application keeps elsewhere.",
    .help = "\nAPP is the identifier of an installed application, the name of its package or snap, or its "
            "path as\n"
            "\"apps\" shows it. What is marked [administrator] can only be removed as one. What is marked\n"
            "[careful] may hold what you have made.\n",
    .run = runLeftovers,
};

} // namespace brimvale::commandLine
