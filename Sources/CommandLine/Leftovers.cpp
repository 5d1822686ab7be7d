#include "CommandLine/Commands.h"

#include "Catalogs/Words.h"
#include "CommandLine/AppJson.h"
#include "CommandLine/AppOperand.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Apps/LeftoverSearch.h"
#include "Core/Apps/Orphans.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array leftoversOptions = {
    Option{.name = "--orphans", .help = "Find leftovers of removed apps (Linux)."},
};

/// The path, and in brackets what to know before it is removed.
std::string pathWithMarks(const LeftoverItem &item) {
    std::string text = terminalText(item.url.path());
    if (item.requiresAdmin)
        text += "  [administrator]";
    if (item.isCareful)
        text += "  [careful]";
    for (const std::string &name : item.alsoClaimedBy)
        text.append("  [also ").append(terminalText(name)).append("]");
    return text;
}

void writeLeftovers(Output &output, const std::vector<LeftoverItem> &items, MatchConfidence confidence) {
    const bool hasReasons = std::any_of(items.begin(), items.end(),
                                        [](const LeftoverItem &item) { return !item.reason.empty(); });
    std::vector<TextTable::Column> columns = {TextTable::sizeColumn("SIZE"), {"CATEGORY"}};
    if (hasReasons)
        columns.push_back({"REASON"});
    columns.push_back({"PATH"});
    TextTable table(std::move(columns));
    bool isEmpty = true;
    bool isVague = false;
    for (const LeftoverItem &item : items) {
        if (item.confidence != confidence)
            continue;
        std::vector<std::string> cells = {Fmt::byteFormatter(item.size), terminalText(item.category)};
        if (hasReasons)
            cells.push_back(item.reason);
        cells.push_back(pathWithMarks(item));
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

void writeOrphans(Output &output, const std::vector<Orphan> &orphans) {
    if (orphans.empty()) {
        output.write("No leftovers of removed apps found.\n");
        return;
    }
    output.write("Possibly left by removed apps. Check each one before you remove it:\n");
    TextTable table({TextTable::sizeColumn("SIZE"), {"LAST CHANGE"}, {"CATEGORY"}, {"EVIDENCE"}, {"PATH"}});
    for (const auto &[item, lastChange] : orphans)
        table.add({Fmt::byteFormatter(item.size), Fmt::relativeDate(lastChange), item.category, item.reason,
                   pathWithMarks(item)});
    table.write(output);
}

void writeOrphans(JsonWriter &json, const std::vector<Orphan> &orphans) {
    json.beginArray();
    for (const auto &[item, lastChange] : orphans) {
        json.beginObject();
        json.path("url", item.url.path());
        json.member("category", item.category);
        json.member("size", item.size);
        json.member("isFolder", item.isFolder);
        json.member("reason", item.reason);
        json.member("isCareful", item.isCareful);
        json.member("lastChange", lastChange ? std::optional(iso8601(*lastChange)) : std::nullopt);
        json.end();
    }
    json.end();
}

ExitStatus runOrphans(const Arguments &arguments, Output &output) {
    if (!arguments.operands().empty())
        return refuseUsage("\"--orphans\" takes no app", &leftoversCommand);
    if (!hasOrphanSearch()) {
        printError("leftovers of removed apps can only be found on Linux");
        return ExitStatus::failed;
    }
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const Orphans orphans = findOrphans(cancelled);
    for (const std::string &folder : orphans.unreadFolders)
        printError(terminalText(folder) + " can't be read, so its contents are not listed");
    if (arguments.has("--json")) {
        JsonWriter json(output);
        writeOrphans(json, orphans.found);
    } else {
        writeOrphans(output, orphans.found);
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

ExitStatus runLeftovers(const Arguments &arguments, Output &output) {
    if (arguments.has("--orphans"))
        return runOrphans(arguments, output);
    if (arguments.operands().empty())
        return refuseUsage("missing argument: APP", &leftoversCommand);
    const std::optional<InstalledApp> app = appMeantBy(arguments.operands().front());
    if (!app)
        return ExitStatus::failed;
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const std::vector<LeftoverItem> items = leftoverSearch()(*app, cancelled);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        commandLine::writeLeftovers(json, items);
    } else {
        writeReport(output, items);
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command leftoversCommand = {
    .name = "leftovers",
    .operands = "[APP]",
    .operandCount = {.minimum = 0, .maximum = 1},
    .options = leftoversOptions,
    .summary = "Finds the files that an app keeps elsewhere.",
    .help =
        "\nAPP is the identifier of an installed app, the name of its package or snap, or its path as "
        "\"apps\"\n"
        "shows it. Only an administrator can remove what is marked [administrator]. What is marked "
        "[careful]\n"
        "may contain your own work. [also NAME] is another installed app that may use it.\n"
        "\n"
        "--orphans takes no APP. It searches your folders of settings, data and caches, and leaves out what\n"
        "programs share and what has the name of a command. It goes by names, so check what it finds.\n",
    .run = runLeftovers,
};

} // namespace brimvale::commandLine
