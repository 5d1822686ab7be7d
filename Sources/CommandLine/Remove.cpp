#include "CommandLine/Commands.h"

#include "Catalogs/Words.h"
#include "CommandLine/CategoryWarnings.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOperands.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Reclaim/ReclaimTexts.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
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
    Option{.name = "--plan",
           .value = Option::Value::text,
           .valueName = "FILE",
           .help = "Remove the items of a plan, each only if it is still the same one."},
    Option{.name = "--dry-run", .help = "Only show what would be removed; with --json as a plan."},
    savePlanOption,
    hexOption,
    from0Option,
};

enum class Route { trash, deletion, administrator };

/// What a command line asks to remove, and how.
struct Request {
    RemovalOperands operands = {};
    Route route = Route::trash;
    std::vector<RemovalResult::Failure> refusals = {}; ///< what else it names, and why that stays
    std::optional<RemovalPlan> plan = {};              ///< that names them
};

RemovalMode modeOf(Route route) {
    return route == Route::trash ? RemovalMode::trash : RemovalMode::deleteNow;
}

bool isDryRun(const Arguments &arguments) {
    return arguments.has("--dry-run") || arguments.has(savePlanOption.name);
}

/// What is wrong with how the options are combined, if anything.
std::optional<std::string> faultOfOptions(const Arguments &arguments, AskedOn terminal) {
    if (arguments.has("--plan")) {
        if (arguments.has(savePlanOption.name))
            return "a plan is saved only of paths";
        if (!arguments.operands().empty() || arguments.has(from0Option.name))
            return "with \"--plan\" the paths are in the plan";
        for (const char *option : {"--delete", "--as-admin"})
            if (arguments.has(option))
                return "the plan says how its items are removed, so leave out " + inQuotes(option);
    }
    if (!isDryRun(arguments) && !arguments.has("--yes") && !canAsk(terminal))
        return "without a terminal to ask on, nothing is removed unless \"--yes\" is given";
    return std::nullopt;
}

Route routeIn(const Arguments &arguments) {
    if (arguments.has("--as-admin"))
        return Route::administrator;
    return arguments.has("--delete") ? Route::deletion : Route::trash;
}

/// A plan of other items, perhaps of another machine.
void noteIfForeign(const RemovalPlan &plan, const RemovalOperands &operands) {
    if (operands.items.empty() && !plan.items.empty())
        printError(terminalText("nothing that this plan names can be removed here; it was made on “" +
                                plan.host + "”"));
}

std::variant<Request, ExitStatus> requestOfPlan(std::string_view file, const StopFlag &stopped) {
    std::optional<RemovalPlan> plan = planInFile(file);
    if (!plan)
        return ExitStatus::failed;
    const Interruption interruption(stopped);
    Request request{.route = plan->mode == RemovalMode::trash ? Route::trash : Route::deletion};
    request.operands = RemovalOperands::from(*plan, request.refusals, stopped);
    if (!stopped.isSet())
        noteIfForeign(*plan, request.operands);
    request.plan = std::move(plan);
    return request;
}

/// The items that the command line names. Reports what is wrong with it, and returns the exit status.
std::variant<Request, ExitStatus> requestIn(const Arguments &arguments, const StopFlag &stopped) {
    if (const std::optional<std::string_view> file = arguments.text("--plan"))
        return requestOfPlan(*file, stopped);
    const auto given = givenPaths(arguments, removeCommand);
    if (const auto *status = std::get_if<ExitStatus>(&given))
        return *status;
    auto operands = RemovalOperands::from(std::get<std::vector<std::string>>(given));
    if (!operands)
        return ExitStatus::failed;
    return Request{.operands = *std::move(operands), .route = routeIn(arguments)};
}

/// The items with the sizes measured before `stopped` was set: how much deleting them frees, or how much goes
/// to the Trash. Items that the guards refuse are not measured, and will not be removed.
std::vector<CleanupEntry> measureOperands(const RemovalOperands &operands, Route route,
                                          const StopFlag &stopped) {
    const ScanOptions scanOptions = ScanOptions::standard();
    const std::unordered_set<FileURL> admitted(operands.admitted.begin(), operands.admitted.end());
    std::vector<CleanupEntry> entries = operands.items;
    for (CleanupEntry &entry : entries) {
        if (!admitted.contains(entry.url))
            continue;
        const FileURL place = entry.pin ? entry.pin->place : entry.url.standardized();
        const auto figures = DiskScanner::quickFigures(place.path(), scanOptions, stopped);
        entry.size = route == Route::trash ? figures.bytes : figures.freedBytes;
    }
    return entries;
}

/// Leaves these items out of the operands.
void leaveOut(const std::vector<RemovalResult::Failure> &items, RemovalOperands &operands) {
    std::unordered_set<FileURL> unwanted;
    for (const RemovalResult::Failure &one : items)
        unwanted.insert(one.url);
    std::erase_if(operands.admitted, [&](const FileURL &url) { return unwanted.contains(url); });
    std::erase_if(operands.items, [&](const CleanupEntry &item) { return unwanted.contains(item.url); });
}

/// Says for each path that leads through a link where the item really is.
std::string realPlaces(const std::vector<CleanupEntry> &entries) {
    std::string text;
    for (const CleanupEntry &entry : entries)
        if (entry.pin && entry.pin->place.standardized() != entry.url.standardized())
            text += terminalText(entry.url.path()) + " is " + terminalText(entry.pin->place.path()) + "\n";
    return text;
}

std::string question(const RemovalOperands &operands, const std::vector<CleanupEntry> &entries, Route route) {
    const std::int64_t bytes = CleanupEntries::totalSize(entries);
    const auto count = static_cast<std::int64_t>(operands.admitted.size());
    const auto all = static_cast<std::int64_t>(operands.items.size());
    std::string items = Fmt::count(count);
    if (count < all)
        items += " of " + Fmt::count(all);
    items += (all == 1 ? " item (" : " items (") + Fmt::byteFormatter(bytes) + ")";
    const std::string places = realPlaces(entries);
    const std::string limit =
        RemovalReport::freesAtMost(entries) ? " " + Words::current().freesAtMost : std::string();
    if (route == Route::trash)
        return places + "Move " + items + " to the Trash?" + limit;
    return places + "Delete " + items +
           (route == Route::administrator ? " immediately, as the administrator?" : " immediately?") +
           " This can't be undone." + limit;
}

RemovalResult removeBy(Route route, const std::vector<CleanupEntry> &entries, RemovalProgress &progress) {
    std::vector<FileURL> urls;
    for (const CleanupEntry &entry : entries)
        urls.push_back(entry.url);
    const FreeSpace space(urls, RemovalActions::platform());
    const RemovalMode mode = route == Route::deletion ? RemovalMode::deleteNow : RemovalMode::trash;
    RemovalResult result = route == Route::administrator ? Remover::removeWithAdmin(entries)
                                                         : Remover::remove(entries, mode, &progress);
    space.noteGrowth(result);
    return result;
}

/// What the storage categories protect is left out, unless `removesThem`.
void applyPolicies(Request &request, bool removesThem) {
    std::vector<RemovalResult::Failure> warnings = categoryWarnings(request.operands.admitted);
    if (removesThem)
        return printWarnings(warnings);
    const std::vector<RemovalResult::Failure> refusals = asRefusals(std::move(warnings));
    leaveOut(refusals, request.operands);
    request.refusals.insert(request.refusals.end(), refusals.begin(), refusals.end());
}

void showItems(Output &output, const RemovalPlan &plan) {
    TextTable table({TextTable::sizeColumn("SIZE"), {"PATH"}});
    std::vector<FileURL> items;
    for (const PlannedItem &item : plan.items) {
        items.push_back(item.entry.pin.place);
        table.add({Fmt::byteFormatter(item.size), terminalText(items.back().path())});
    }
    table.write(output);
    output.write(plan.mode == RemovalMode::trash ? "These would be moved to the Trash.\n"
                                                 : "These would be deleted.\n");
    ReclaimProgress progress;
    const Interruption interruption(progress.cancelled);
    const Reclaim reclaim = reclaimOf(items, progress);
    if (progress.cancelled.isSet())
        return;
    for (const std::string &line : reclaimLines(reclaim, plan.mode))
        output.write(terminalText(line) + "\n");
}

/// A plan of these entries: of a plan that was read, what is left of it.
std::optional<MadePlan> planOf(const Request &request, const std::vector<CleanupEntry> &entries) {
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
ExitStatus show(const Request &request, const std::vector<CleanupEntry> &entries, const Arguments &arguments,
                Output &output) {
    ExitStatus status = ExitStatus::done;
    if (const auto file = arguments.text(savePlanOption.name)) {
        status = savePlan(entries, modeOf(request.route), *file, output);
    } else {
        const std::optional<MadePlan> made = planOf(request, entries);
        if (!made)
            return ExitStatus::interrupted;
        if (arguments.has("--json"))
            writePlan(output, made->plan);
        else
            showItems(output, made->plan);
        output.flush();
        status = reportLeftOut(*made);
    }
    printWarnings(request.refusals);
    return request.refusals.empty() ? status : ExitStatus::failed;
}

ExitStatus removeAndReport(const Request &request, const std::vector<CleanupEntry> &entries,
                           RemovalProgress &progress, bool isJson, Output &output) {
    const Interruption interruption(progress.cancelled);
    RemovalResult result = removeBy(request.route, entries, progress);
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
    std::variant<Request, ExitStatus> found = requestIn(arguments, progress.cancelled);
    if (const auto *status = std::get_if<ExitStatus>(&found))
        return *status;
    if (progress.cancelled.isSet())
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    auto &request = std::get<Request>(found);
    applyPolicies(request, arguments.has("--anyway"));

    std::vector<CleanupEntry> entries;
    {
        const Interruption interruption(progress.cancelled);
        entries = measureOperands(request.operands, request.route, progress.cancelled);
    }
    if (progress.cancelled.isSet() && (asks || isDryRun(arguments) || request.route == Route::administrator))
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    if (isDryRun(arguments))
        return show(request, entries, arguments, output);
    if (asks && !request.operands.admitted.empty() &&
        !confirm(question(request.operands, entries, request.route), terminal))
        return endUnbegunRemoval(output, isJson, ExitStatus::failed);
    return removeAndReport(request, entries, progress, isJson, output);
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
