#include "CommandLine/Commands.h"

#include "CommandLine/ExpectedSpace.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"
#include "Core/Trash/PuttingBack.h"
#include "Core/Trash/TrashRun.h"
#include "Core/Trash/TrashTexts.h"
#include "Platform/Host.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array trashOptions = {
    Option{.name = "--yes", .help = "With empty: do not ask."},
    Option{.name = "--dry-run", .help = "With empty: only show what would be deleted."},
    Option{.name = savePlanOption.name,
           .value = savePlanOption.value,
           .valueName = savePlanOption.valueName,
           .help = "With empty: delete nothing; write a plan for \"remove --plan\" into FILE."},
};

using TrashItems = std::vector<TrashRun::Item>;

std::vector<CleanupEntry> entriesOf(const TrashItems &items) {
    std::vector<CleanupEntry> entries;
    for (const TrashRun::Item &item : items)
        entries.push_back(item.entry);
    return entries;
}

/// The old place; or the item's path, and why its old place is unknown.
std::string placeText(const TrashRun::Item &item) {
    return item.record.oldPlace ? terminalText(item.record.oldPlace->path())
                                : terminalText(item.entry.url.path()) + " (" +
                                      TrashTexts::whyNotPutBack(item.record.state) + ")";
}

void writeTrashTable(Output &output, const TrashItems &items) {
    TextTable table({TextTable::sizeColumn("SIZE"), TextTable::ageColumn("DELETED"), {"OLD PLACE"}});
    for (const TrashRun::Item &item : items)
        table.add(
            {Fmt::byteFormatter(item.entry.size), Fmt::recentDate(item.record.deleted), placeText(item)});
    table.write(output);
}

void writeTrashItem(JsonWriter &json, const TrashRun::Item &item) {
    json.beginObject();
    json.path("url", item.entry.url.path());
    json.member("size", item.entry.size);
    json.member("isFolder", item.entry.isFolder);
    if (item.record.oldPlace)
        json.path("oldPlace", item.record.oldPlace->path());
    else
        json.member("oldPlace", std::optional<std::string>());
    json.member("deleted", item.record.deleted ? std::optional(iso8601(*item.record.deleted)) : std::nullopt);
    json.member("problem", TrashTexts::whyNotPutBack(item.record.state));
    json.end();
}

void writeTrashJson(Output &output, const TrashItems &items, std::int64_t lost, const MadePlan *plan) {
    JsonWriter json(output);
    json.beginObject();
    json.key("items");
    json.beginArray();
    for (const TrashRun::Item &item : items)
        writeTrashItem(json, item);
    json.end();
    json.member("recordsWithoutItem", lost);
    if (plan != nullptr) {
        json.key("plan");
        writePlan(json, plan->plan);
    }
    json.end();
}

/// `plan` is that of emptying it; null where only its contents are asked for.
void writeTrash(Output &output, const TrashItems &items, bool isJson, const MadePlan *plan = nullptr) {
    const auto lost = static_cast<std::int64_t>(lostItems(Host::current()).size());
    if (isJson)
        return writeTrashJson(output, items, lost, plan);
    if (items.empty())
        output.write("The Trash is empty.\n");
    else
        writeTrashTable(output, items);
    if (lost > 0)
        output.write(TrashTexts::lostItems(lost) + "\n");
}

ExitStatus showEmptying(Output &output, const TrashItems &items, bool isJson) {
    const std::optional<MadePlan> made = makePlan(entriesOf(items), RemovalMode::deleteNow);
    if (!made)
        return ExitStatus::interrupted;
    writeTrash(output, items, isJson, &*made);
    output.flush();
    return reportLeftOut(*made);
}

/// The items at this path in the Trash, or with this old place, the newest first.
TrashItems itemsNamed(const FileURL &path, const TrashItems &items) {
    TrashItems found;
    for (const TrashRun::Item &item : items)
        if (item.entry.url == path || item.record.oldPlace == path)
            found.push_back(item);
    std::stable_sort(found.begin(), found.end(), [](const TrashRun::Item &a, const TrashRun::Item &b) {
        return a.record.deleted > b.record.deleted;
    });
    return found;
}

void refuseSeveral(std::string_view typed, const TrashItems &found) {
    std::string text = inQuotes(typed) + " was moved to the Trash " +
                       Fmt::count(static_cast<std::int64_t>(found.size())) +
                       " times. Say which one to restore; the newest is first:";
    for (const TrashRun::Item &item : found)
        text +=
            "\n  " + terminalText(item.entry.url.path()) + " (" + Fmt::recentDate(item.record.deleted) + ")";
    printError(text);
}

/// The items that the operands name. Reports each that names none, or several, and returns nothing then.
std::optional<std::vector<CleanupEntry>> itemsToRestore(const std::vector<const char *> &operands,
                                                        const TrashItems &items) {
    std::vector<CleanupEntry> entries;
    bool isComplete = true;
    for (const char *operand : operands) {
        const Result<FileURL> resolved = resolveGivenPath(operand);
        if (const auto *error = std::get_if<FileError>(&resolved)) {
            printPathError(operand, *error);
            isComplete = false;
            continue;
        }
        const TrashItems found = itemsNamed(std::get<FileURL>(resolved).standardized(), items);
        if (found.empty())
            printError(inQuotes(operand) + " is not in the Trash");
        else if (found.size() > 1)
            refuseSeveral(operand, found);
        else
            entries.push_back(found.front().entry);
        isComplete = isComplete && found.size() == 1;
    }
    return isComplete ? std::optional(CleanupEntries::outermost(entries)) : std::nullopt;
}

void reportRestored(Output &output, const PutBackResult &result, bool isJson) {
    if (isJson) {
        JsonWriter json(output);
        json.beginObject();
        json.key("succeeded");
        json.beginArray();
        for (const PutBackResult::Returned &one : result.succeeded) {
            json.beginObject();
            json.path("url", one.item.path());
            json.path("place", one.place.path());
            json.end();
        }
        json.end();
        writeReasons(json, "failed", result.failed);
        writeReasons(json, "remarks", result.remarks);
        json.end();
        return;
    }
    for (const PutBackResult::Returned &one : result.succeeded)
        output.write("restored  " + terminalText(one.place.path()) + "\n");
    for (const RemovalResult::Failure &remark : result.remarks)
        output.write(terminalText(RemovalReport::failureLine(remark)) + "\n");
    output.flush();
    for (const RemovalResult::Failure &failure : result.failed)
        printError(terminalText(RemovalReport::failureLine(failure)));
}

ExitStatus restoreItems(const Arguments &arguments, const TrashItems &items, Output &output) {
    const std::vector<const char *> operands(arguments.operands().begin() + 1, arguments.operands().end());
    const auto entries = itemsToRestore(operands, items);
    if (!entries)
        return ExitStatus::failed;
    const PutBackResult result = putBackItems(*entries);
    reportRestored(output, result, arguments.has("--json"));
    return result.failed.empty() ? ExitStatus::done : ExitStatus::failed;
}

std::string emptyingQuestion(const std::vector<CleanupEntry> &entries) {
    const auto count = static_cast<std::int64_t>(entries.size());
    return "Delete " + Fmt::count(count) + (count == 1 ? " item" : " items") + " in the Trash (" +
           Fmt::byteFormatter(CleanupEntries::totalSize(entries)) + ") immediately? This can't be undone.";
}

RemovalResult emptyTrash(const std::vector<CleanupEntry> &entries, const std::optional<Reclaim> &expected,
                         RemovalProgress &progress) {
    RemovalActions &actions = RemovalActions::platform();
    return removeAndCompare(urlsOf(entries), actions, progress, promiseOf(expected, RemovalMode::deleteNow),
                            [&] { return TrashRun::empty(entries, progress, actions); });
}

ExitStatus emptyItems(const Arguments &arguments, const TrashItems &items, Output &output) {
    const bool isJson = arguments.has("--json");
    const std::vector<CleanupEntry> entries = entriesOf(items);
    if (const auto file = arguments.text(savePlanOption.name))
        return savePlan({entries, RemovalMode::deleteNow, *file, isJson}, output);
    if (arguments.has("--dry-run"))
        return showEmptying(output, items, isJson);
    RemovalProgress progress;
    const bool asks = !arguments.has("--yes");
    const auto expected = expectedOf(entries, RemovalMode::deleteNow, asks, progress.cancelled);
    if (progress.cancelled.isSet())
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    const std::string lines = expectedLines(expected, RemovalMode::deleteNow);
    if (!entries.empty() && asks && !confirm(lines + emptyingQuestion(entries), AskedOn::standardStreams))
        return endUnbegunRemoval(output, isJson, ExitStatus::failed);
    const Interruption interruption(progress.cancelled);
    const RemovalResult result = emptyTrash(entries, expected, progress);
    if (entries.empty() && !isJson)
        output.write("The Trash is empty.\n");
    else
        reportRemoval(output, result, isJson);
    return endRemoval(output, result, progress);
}

/// What is wrong with the operands and options, if anything.
std::optional<std::string> faultIn(const Arguments &arguments) {
    const std::string_view action = arguments.operands().front();
    const bool isEmptying = action == "empty";
    if (!isEmptying && action != "list" && action != "restore")
        return "unknown action " + inQuotes(action) + "; there are list, restore and empty";
    const std::size_t count = arguments.operands().size();
    if (action == "restore" && count == 1)
        return "missing argument: ITEM…";
    if (action != "restore" && count > 1)
        return "unexpected argument " + inQuotes(arguments.operands()[1]);
    for (const Option &option : trashOptions)
        if (!isEmptying && arguments.has(option.name))
            return inQuotes(option.name) + " is only for empty";
    const bool isDryRun = arguments.has("--dry-run") || arguments.has(savePlanOption.name);
    if (isEmptying && !arguments.has("--yes") && !isDryRun && !canAsk(AskedOn::standardStreams))
        return "without a terminal to ask on, nothing is deleted unless \"--yes\" is given";
    return std::nullopt;
}

ExitStatus runTrash(const Arguments &arguments, Output &output) {
    if (const std::optional<std::string> fault = faultIn(arguments))
        return refuseUsage(*fault, &trashCommand);
    const StopFlag cancelled;
    std::optional<TrashItems> items;
    {
        const Interruption interruption(cancelled);
        items = TrashRun::list(cancelled);
    }
    if (!items) {
        printError("use the file browser of this system to put items back and to empty the Trash");
        return ExitStatus::failed;
    }
    const std::string_view action = arguments.operands().front();
    if (cancelled.isSet() && action == "list") {
        writeTrash(output, *items, arguments.has("--json"));
        return endInterrupted(output);
    }
    if (cancelled.isSet())
        return endUnbegunRemoval(output, arguments.has("--json"), ExitStatus::interrupted);
    if (action == "restore")
        return restoreItems(arguments, *items, output);
    if (action == "empty")
        return emptyItems(arguments, *items, output);
    writeTrash(output, *items, arguments.has("--json"));
    return ExitStatus::done;
}

} // namespace

constinit const Command trashCommand = {
    .name = "trash",
    .operands = "ACTION [ITEM…]",
    .operandCount = {.minimum = 1},
    .options = trashOptions,
    .summary = "Shows what is in the Trash, puts items back, or empties it.",
    .help =
        "\n\"trash list\" shows the size and old place of each item, on every volume with a Trash of yours.\n"
        "\"trash restore ITEM…\" puts items back. ITEM is the old place, or the path in the Trash where\n"
        "several items have the same old place. Nothing is ever replaced. Folders that are missing on the\n"
        "way are made again. \"trash empty\" deletes everything that \"trash list\" shows, after a "
        "question.\n",
    .run = runTrash,
};

} // namespace brimvale::commandLine
