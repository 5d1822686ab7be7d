#include "CommandLine/Commands.h"

#include "Catalogs/Words.h"
#include "CommandLine/CategoryWarnings.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOperands.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/FreeSpace.h"
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
#include <unordered_set>
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
    hexOption,
    from0Option,
};

enum class Route { trash, deletion, administrator };

Route routeIn(const Arguments &arguments) {
    if (arguments.has("--as-admin"))
        return Route::administrator;
    return arguments.has("--delete") ? Route::deletion : Route::trash;
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
    for (const RemovalResult::Failure &one : items) {
        std::erase(operands.admitted, one.url);
        std::erase_if(operands.items, [&](const CleanupEntry &item) { return item.url == one.url; });
    }
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
    result.freeSpaceRemark = space.remarkOn(result.bytesDeleted);
    return result;
}

ExitStatus runRemove(const Arguments &arguments, Output &output) {
    const bool asks = !arguments.has("--yes");
    const AskedOn terminal =
        arguments.has(from0Option.name) ? AskedOn::controllingTerminal : AskedOn::standardStreams;
    if (asks && !canAsk(terminal))
        return refuseUsage("without a terminal to ask on, nothing is removed unless \"--yes\" is given",
                           &removeCommand);
    const auto given = givenPaths(arguments, removeCommand);
    if (const auto *status = std::get_if<ExitStatus>(&given))
        return *status;
    auto operands = RemovalOperands::from(std::get<std::vector<std::string>>(given));
    if (!operands)
        return ExitStatus::failed;
    std::vector<RemovalResult::Failure> refusals;
    if (arguments.has("--anyway"))
        printWarnings(categoryWarnings(operands->admitted));
    else
        refusals = asRefusals(categoryWarnings(operands->admitted));
    leaveOut(refusals, *operands);

    const Route route = routeIn(arguments);
    const bool isJson = arguments.has("--json");
    RemovalProgress progress;
    std::vector<CleanupEntry> entries;
    {
        const Interruption interruption(progress.cancelled);
        entries = measureOperands(*operands, route, progress.cancelled);
    }
    if (progress.cancelled.isSet() && (asks || route == Route::administrator))
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    if (asks && !operands->admitted.empty() && !confirm(question(*operands, entries, route), terminal))
        return endUnbegunRemoval(output, isJson, ExitStatus::failed);

    const Interruption interruption(progress.cancelled);
    RemovalResult result = removeBy(route, entries, progress);
    result.failed.insert(result.failed.end(), refusals.begin(), refusals.end());
    reportRemoval(output, result, isJson);
    return endRemoval(output, result, progress);
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
        "With --from0, the question is asked on the terminal that the program was started from.\n",
    .run = runRemove,
};

} // namespace brimvale::commandLine
