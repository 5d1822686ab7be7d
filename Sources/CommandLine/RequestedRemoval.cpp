#include "CommandLine/RequestedRemoval.h"

#include "CommandLine/CategoryWarnings.h"
#include "CommandLine/Commands.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Scan/DiskScanner.h"

#include <QSysInfo>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace brimvale::commandLine {

namespace {

Route routeIn(const Arguments &arguments) {
    if (arguments.has("--as-admin"))
        return Route::administrator;
    return arguments.has("--delete") ? Route::deletion : Route::trash;
}

Route routeOf(const RemovalPlan &plan, bool isAsAdministrator) {
    if (isAsAdministrator)
        return Route::administrator;
    return plan.mode == RemovalMode::trash ? Route::trash : Route::deletion;
}

/// Says that nothing of a plan is here, and where it was made if that was another machine.
void noteIfForeign(const RemovalPlan &plan, const RemovalOperands &operands) {
    if (!operands.items.empty() || plan.items.empty())
        return;
    std::string text = "nothing that this plan names can be removed here";
    if (plan.host != QSysInfo::machineHostName().toStdString())
        text.append("; it was made on “").append(plan.host).append("”");
    printError(terminalText(text));
}

std::variant<RequestedRemoval, ExitStatus> requestOfPlan(std::string_view file, bool isAsAdministrator,
                                                         const StopFlag &stopped) {
    std::optional<RemovalPlan> plan = planInFile(file);
    if (!plan)
        return ExitStatus::failed;
    if (isAsAdministrator && plan->mode == RemovalMode::trash)
        return refuseUsage("this plan moves its items to the Trash, so leave out \"--as-admin\"",
                           &removeCommand);
    const Interruption interruption(stopped);
    RequestedRemoval request{.route = routeOf(*plan, isAsAdministrator)};
    request.operands = RemovalOperands::from(*plan, request.refusals, stopped);
    if (!stopped.isSet())
        noteIfForeign(*plan, request.operands);
    request.plan = std::move(plan);
    return request;
}

/// Leaves these items out of the operands.
void leaveOut(const std::vector<RemovalResult::Failure> &items, RemovalOperands &operands) {
    std::unordered_set<FileURL> unwanted;
    for (const RemovalResult::Failure &one : items)
        unwanted.insert(one.url);
    std::erase_if(operands.admitted, [&](const FileURL &url) { return unwanted.contains(url); });
    std::erase_if(operands.items, [&](const CleanupEntry &item) { return unwanted.contains(item.url); });
}

} // namespace

RemovalMode modeOf(Route route) {
    return route == Route::trash ? RemovalMode::trash : RemovalMode::deleteNow;
}

std::variant<RequestedRemoval, ExitStatus> RequestedRemoval::from(const Arguments &arguments,
                                                                  const StopFlag &stopped) {
    if (const std::optional<std::string_view> file = arguments.text(planOption.name))
        return requestOfPlan(*file, arguments.has("--as-admin"), stopped);
    const auto given = givenPaths(arguments, removeCommand);
    if (const auto *status = std::get_if<ExitStatus>(&given))
        return *status;
    auto operands = RemovalOperands::from(std::get<std::vector<std::string>>(given));
    if (!operands)
        return ExitStatus::failed;
    return RequestedRemoval{.operands = *std::move(operands), .route = routeIn(arguments)};
}

void RequestedRemoval::applyPolicies(bool removesThem) {
    std::vector<RemovalResult::Failure> warnings = categoryWarnings(operands.admitted);
    if (removesThem)
        return printWarnings(warnings);
    const std::vector<RemovalResult::Failure> more = asRefusals(std::move(warnings));
    leaveOut(more, operands);
    refusals.insert(refusals.end(), more.begin(), more.end());
}

std::vector<CleanupEntry> RequestedRemoval::measured(const StopFlag &stopped) const {
    const ScanOptions scanOptions = ScanOptions::standard();
    const std::unordered_set<FileURL> allowed(operands.admitted.begin(), operands.admitted.end());
    std::vector<CleanupEntry> entries = operands.items;
    for (CleanupEntry &entry : entries) {
        if (!allowed.contains(entry.url))
            continue;
        const FileURL place = entry.pin ? entry.pin->place : entry.url.standardized();
        const auto figures = DiskScanner::quickFigures(place.path(), scanOptions, stopped);
        entry.size = route == Route::trash ? figures.bytes : figures.freedBytes;
    }
    return entries;
}

std::vector<CleanupEntry> RequestedRemoval::admitted(std::vector<CleanupEntry> entries) const {
    const std::unordered_set<FileURL> urls(operands.admitted.begin(), operands.admitted.end());
    std::erase_if(entries, [&](const CleanupEntry &entry) { return !urls.contains(entry.url); });
    return entries;
}

} // namespace brimvale::commandLine
