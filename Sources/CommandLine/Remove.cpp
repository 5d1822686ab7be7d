#include "CommandLine/Commands.h"

#include "Base/TextSink.h"
#include "Catalogs/Words.h"
#include "CommandLine/ExpectedSpace.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/RequestedRemoval.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Removal/Remover.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array removeOptions = {
    Option{.name = "--delete", .help = "Delete for good instead of moving to the Trash."},
    Option{.name = "--as-admin",
           .help = "Delete for good as the administrator; the system asks for the password."},
    Option{.name = "--yes", .help = "Do not ask."},
    Option{.name = "--anyway", .help = "Also remove what a storage category protects."},
    planOption,
    Option{.name = "--dry-run", .help = "Only show what would be removed; with --json as a plan."},
    savePlanOption,
    hexOption,
    from0Option,
};

bool isDryRun(const Arguments &arguments) {
    return arguments.has("--dry-run") || arguments.has(savePlanOption.name);
}

/// What is wrong with how the options are combined, if anything.
std::optional<std::string> faultOfOptions(const Arguments &arguments, AskedOn terminal) {
    if (arguments.has(planOption.name)) {
        if (arguments.has(savePlanOption.name))
            return "the items are already in a plan, so leave out \"--save-plan\"";
        if (!arguments.operands().empty() || arguments.has(from0Option.name) || arguments.has(hexOption.name))
            return "with \"--plan\" the paths are in the plan";
        if (arguments.has("--delete"))
            return "the plan says how its items are removed, so leave out \"--delete\"";
    }
    if (!isDryRun(arguments) && !arguments.has("--yes") && !canAsk(terminal))
        return "without a terminal to ask on, nothing is removed unless \"--yes\" is given";
    return std::nullopt;
}

void writeItems(TextSink &sink, const std::vector<CleanupEntry> &entries) {
    TextTable table({TextTable::sizeColumn("SIZE"), {"PATH"}});
    for (const CleanupEntry &entry : entries)
        table.add({Fmt::byteFormatter(entry.size), terminalText(entry.url.path())});
    table.write(sink);
}

/// Says for each path that leads through a link where the item really is.
std::string realPlaces(const std::vector<CleanupEntry> &entries) {
    std::string text;
    for (const CleanupEntry &entry : entries)
        if (entry.pin && entry.pin->place.standardized() != entry.url.standardized())
            text += terminalText(entry.url.path()) + " is " + terminalText(entry.pin->place.path()) + "\n";
    return text;
}

/// What a plan removes and what stays of it, for a user who has not seen it.
std::string textOfPlan(const RemovalPlan &plan, const std::vector<CleanupEntry> &entries,
                       const std::vector<RemovalResult::Failure> &refusals) {
    TextInMemory text;
    text.write(terminalText("A plan made on “" + plan.host + "” at " + plan.made) + "\n");
    writeItems(text, entries);
    if (!refusals.empty())
        text.write("Not removed:\n");
    for (const RemovalResult::Failure &one : refusals)
        text.write(terminalText(RemovalReport::failureLine(one)) + "\n");
    return std::move(text.text);
}

/// The sentence at the end.
std::string shortQuestion(const RemovalOperands &operands, const std::vector<CleanupEntry> &entries,
                          Route route) {
    const std::int64_t bytes = CleanupEntries::totalSize(entries);
    const auto count = static_cast<std::int64_t>(operands.admitted.size());
    const auto all = static_cast<std::int64_t>(operands.items.size());
    std::string items = Fmt::count(count);
    if (count < all)
        items += " of " + Fmt::count(all);
    items += (all == 1 ? " item (" : " items (") + Fmt::byteFormatter(bytes) + ")";
    const std::string limit =
        RemovalReport::freesAtMost(entries) ? " " + Words::current().freesAtMost : std::string();
    if (route == Route::trash)
        return "Move " + items + " to the Trash?" + limit;
    return "Delete " + items +
           (route == Route::administrator ? " immediately, as the administrator?" : " immediately?") +
           " This can't be undone." + limit;
}

std::string question(const RequestedRemoval &request, const std::vector<CleanupEntry> &entries,
                     const std::optional<Reclaim> &expected) {
    return (request.plan ? textOfPlan(*request.plan, entries, request.refusals) : realPlaces(entries)) +
           expectedLines(expected, modeOf(request.route)) +
           shortQuestion(request.operands, entries, request.route);
}

RemovalResult removeBy(Route route, const std::vector<CleanupEntry> &entries,
                       const std::optional<FreePromise> &promise, RemovalProgress &progress) {
    return removeAndCompare(urlsOf(entries), RemovalActions::platform(), progress, promise, [&] {
        return route == Route::administrator ? Remover::removeWithAdmin(entries)
                                             : Remover::remove(entries, modeOf(route), &progress);
    });
}

void showItems(Output &output, const RemovalPlan &plan) {
    std::vector<CleanupEntry> entries;
    for (const PlannedItem &item : plan.items)
        entries.push_back({.url = item.entry.pin.place, .size = item.size});
    writeItems(output, entries);
    output.write(plan.mode == RemovalMode::trash ? "These would be moved to the Trash.\n"
                                                 : "These would be deleted.\n");
    ReclaimProgress progress;
    const Reclaim reclaim = reclaimShown(urlsOf(entries), progress);
    if (!progress.cancelled.isSet())
        output.write(expectedLines(reclaim, plan.mode));
}

/// A plan of these entries: of a plan that was read, what is left of it.
std::optional<MadePlan> planOf(const RequestedRemoval &request, const std::vector<CleanupEntry> &entries) {
    if (!request.plan)
        return makePlan(entries, modeOf(request.route));
    std::unordered_map<FileURL, std::int64_t> left; // the sizes now
    for (const CleanupEntry &entry : entries)
        left.emplace(entry.url, entry.size);
    MadePlan made{.plan = *request.plan};
    for (PlannedItem &item : std::exchange(made.plan.items, {}))
        if (const auto size = left.find(item.entry.pin.place); size != left.end()) {
            item.size = size->second;
            left.erase(size); // the plan may name it twice
            made.plan.items.push_back(std::move(item));
        }
    return made;
}

/// Shows what would be removed, as the options ask, and removes nothing.
ExitStatus show(const RequestedRemoval &request, const std::vector<CleanupEntry> &entries,
                const Arguments &arguments, Output &output) {
    const bool isJson = arguments.has("--json");
    const auto file = arguments.text(savePlanOption.name);
    if (request.route == Route::administrator && (file || isJson))
        printError("a plan does not say who removes its items; give \"--as-admin\" again with \"--plan\"");
    if (file)
        return savePlan({entries, modeOf(request.route), *file, isJson, request.refusals}, output);
    std::optional<MadePlan> made = planOf(request, entries);
    if (!made)
        return ExitStatus::interrupted;
    if (isJson)
        writePlan(output, made->plan);
    else
        showItems(output, made->plan);
    output.flush();
    made->leftOut.insert(made->leftOut.end(), request.refusals.begin(), request.refusals.end());
    return reportLeftOut(*made);
}

ExitStatus removeAndReport(const RequestedRemoval &request, const std::vector<CleanupEntry> &entries,
                           const std::optional<Reclaim> &expected, RemovalProgress &progress, bool isJson,
                           Output &output) {
    const Interruption interruption(progress.cancelled);
    RemovalResult result =
        removeBy(request.route, entries, promiseOf(expected, modeOf(request.route)), progress);
    result.failed.insert(result.failed.end(), request.refusals.begin(), request.refusals.end());
    reportRemoval(output, result, isJson);
    return endRemoval(output, result, progress);
}

ExitStatus runRemove(const Arguments &arguments, Output &output) {
    const AskedOn terminal =
        arguments.has(from0Option.name) ? AskedOn::controllingTerminal : AskedOn::standardStreams;
    if (const std::optional<std::string> fault = faultOfOptions(arguments, terminal))
        return refuseUsage(*fault, &removeCommand);
    const bool isJson = arguments.has("--json");
    const bool asks = !arguments.has("--yes");
    RemovalProgress progress;
    std::variant<RequestedRemoval, ExitStatus> found = RequestedRemoval::from(arguments, progress.cancelled);
    if (const auto *status = std::get_if<ExitStatus>(&found))
        return *status;
    if (progress.cancelled.isSet())
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    auto &request = std::get<RequestedRemoval>(found);
    request.applyPolicies(arguments.has("--anyway"));

    std::vector<CleanupEntry> entries;
    {
        const Interruption interruption(progress.cancelled);
        entries = request.measured(progress.cancelled);
    }
    std::optional<Reclaim> expected;
    if (!isDryRun(arguments))
        expected = expectedOf(request.admitted(entries), modeOf(request.route), asks, progress.cancelled);
    if (progress.cancelled.isSet() && (asks || isDryRun(arguments) || request.route == Route::administrator))
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    if (isDryRun(arguments))
        return show(request, entries, arguments, output);
    if (asks && !request.operands.admitted.empty() &&
        !confirm(question(request, entries, expected), terminal))
        return endUnbegunRemoval(output, isJson, ExitStatus::failed);
    return removeAndReport(request, entries, expected, progress, isJson, output);
}

} // namespace

constinit const Command removeCommand = {
    .name = "remove",
    .operands = "PATH…",
    .operandCount = {},
    .options = removeOptions,
    .summary = "Moves what is at each path to the Trash, or deletes it.",
    .help =
        "\nAsks first, with the number of items and their allocated size; where there is no terminal to ask "
        "on,\n"
        "--yes is needed. What \"check\" refuses is never removed. A link itself is removed, not what it\n"
        "leads to. A path inside another one that is removed goes with it. Items in the Trash use space "
        "until\n"
        "it is emptied. What a storage category protects, for example other people's files, is only removed\n"
        "with --anyway, after its warning. Ctrl-C stops, and shows what was already removed.\n"
        "With --from0, the question is asked on the terminal that the program was started from.\n"
        "\n"
        "A plan is a file with items, their sizes and identities, and whether they go to the Trash. The\n"
        "window saves one too. It can be carried out later: what is no longer the same item stays.\n",
    .run = runRemove,
};

} // namespace brimvale::commandLine
