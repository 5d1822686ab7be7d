#include "Core/Apps/Uninstall.h"

#include "CommandLine/AppJson.h"
#include "CommandLine/AppOperand.h"
#include "CommandLine/CategoryWarnings.h"
#include "CommandLine/Commands.h"
#include "CommandLine/ExpectedSpace.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Apps/AppAnalysis.h"
#include "Core/Apps/CommandRemoval.h"
#include "Core/Apps/RunningApp.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/Remover.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array uninstallOptions = {
    Option{.name = "--with-leftovers", .help = "Also remove the files that definitely belong to it."},
    Option{.name = "--delete", .help = "Delete files for good instead of moving them to the Trash."},
    Option{.name = "--dry-run", .help = "Only show what would be removed, and how."},
    savePlanOption,
    Option{.name = "--yes", .help = "Do not ask."},
    Option{.name = "--anyway", .help = "Also remove leftovers that a storage category protects."},
};

/// What an uninstallation would do.
struct Plan {
    AppRow row; ///< with only the leftovers that go with it
    std::vector<RemovalResult::Failure> refused = {};
    std::vector<RemovalResult::Failure> warnings = {}; ///< of storage categories, about some of the leftovers
    std::vector<RemovalResult::Failure> kept = {};     ///< leftovers that stay for such a warning
    bool isRunning = false;

    [[nodiscard]] bool isPossible() const { return Uninstall::isRemovedHere(row.app); }
    [[nodiscard]] std::string sentence() const {
        return isPossible() ? Uninstall::confirmation(row, row.leftovers, true) + "."
                            : Uninstall::otherRemoval(row.app);
    }
};

/// Whether a leftover goes without having been looked at.
bool isSafe(const LeftoverItem &item) {
    return item.confidence == MatchConfidence::exact && Uninstall::isPlain(item);
}

Plan planFor(const InstalledApp &app, bool includesLeftovers, const StopFlag &cancelled) {
    const Interruption interruption(cancelled);
    Plan plan{.row = {.app = app, .leftovers = {}}, .isRunning = isRunning(app)};
    AppAnalysis::analyze(
        {app},
        [&](AppFigures figures) {
            plan.row.bundleSize = figures.bundleSize;
            plan.row.bundleHasLinkedFiles = figures.bundleHasLinkedFiles;
            plan.row.analyzed = true;
            for (LeftoverItem &item : figures.leftovers)
                if (isSafe(item) && (includesLeftovers || item.goesWithApp))
                    plan.row.leftovers.push_back(std::move(item));
        },
        cancelled);
    return plan;
}

/// Finds out which leftovers storage categories protect, and leaves them out unless `removesThem`.
void heedCategories(Plan &plan, bool removesThem) {
    std::vector<LeftoverItem> &leftovers = plan.row.leftovers;
    std::vector<FileURL> urls;
    for (const LeftoverItem &item : leftovers)
        urls.push_back(item.url);
    std::vector<RemovalResult::Failure> warnings = categoryWarnings(urls);
    if (removesThem) {
        plan.warnings = std::move(warnings);
        return;
    }
    for (const RemovalResult::Failure &warning : warnings)
        std::erase_if(leftovers, [&](const LeftoverItem &item) { return item.url == warning.url; });
    plan.kept = asRefusals(std::move(warnings));
}

/// Finds out what the guards refuse of all that is left in the plan.
void askGuards(Plan &plan) {
    for (const CleanupEntry &entry : Uninstall::entries(plan.row, plan.row.leftovers, true))
        if (const std::optional<std::string> reason = Remover::check(entry.url))
            plan.refused.push_back({entry.url, *reason});
}

void writePlan(Output &output, const Plan &plan) {
    const InstalledApp &app = plan.row.app;
    output.write(terminalText(app.name) + ": " + terminalText(plan.sentence()) + "\n");
    if (!plan.isPossible()) {
        if (const std::string command = Uninstall::commandFor(app); !app.isSystemApp && !command.empty())
            output.write("    " + terminalText(command) + "\n");
        if (const std::string link = Uninstall::softwareLinkFor(app); !link.empty())
            output.write("    xdg-open " + link + "\n");
        return;
    }
    if (const std::string uninstaller = Uninstall::uninstallerOf(app); !uninstaller.empty())
        output.write(
            "It has its own uninstaller, which you should use instead: " + terminalText(uninstaller) + "\n");
    TextTable table({TextTable::sizeColumn("SIZE"), {"PATH"}});
    for (const CleanupEntry &entry : Uninstall::entries(plan.row, plan.row.leftovers, true))
        table.add({Fmt::byteFormatter(entry.size), terminalText(entry.url.path())});
    if (Uninstall::isRemovedByCommand(app))
        table.add({Fmt::byteFormatter(plan.row.bundleSize), terminalText(app.url.path())});
    table.write(output);
    output.flush();
    for (const RemovalResult::Failure &failure : plan.refused)
        printError(terminalText(failure.reason));
}

/// What a plan file of it would have; nothing where another program removes the app.
std::optional<MadePlan> planOfItems(const Plan &plan, RemovalMode mode) {
    if (!plan.isPossible() || Uninstall::isRemovedByCommand(plan.row.app))
        return std::nullopt;
    return makePlan(Uninstall::entries(plan.row, plan.row.leftovers, true), mode);
}

void writePlan(JsonWriter &json, const Plan &plan, RemovalMode mode) {
    json.beginObject();
    json.key("application");
    writeAppRow(json, plan.row, plan.isRunning);
    json.member("isPossible", plan.isPossible());
    json.member("isRunning", plan.isRunning);
    json.member("explanation", plan.sentence());
    json.member("command", Uninstall::commandFor(plan.row.app));
    writeReasons(json, "refused", plan.refused);
    writeReasons(json, "warnings", plan.warnings);
    writeReasons(json, "kept", plan.kept);
    if (const std::optional<MadePlan> made = planOfItems(plan, mode)) {
        json.key("plan");
        brimvale::writePlan(json, made->plan);
    }
    json.end();
}

void showPlan(Output &output, const Plan &plan, RemovalMode mode, bool isJson) {
    if (!isJson)
        return writePlan(output, plan);
    JsonWriter json(output);
    writePlan(json, plan, mode);
}

RemovalResult removeApp(const AppRow &row, RemovalMode mode, const std::optional<Reclaim> &expected,
                        RemovalProgress &progress) {
    const bool isByCommand = Uninstall::isRemovedByCommand(row.app);
    const std::vector<CleanupEntry> entries = Uninstall::entries(row, row.leftovers, !isByCommand);
    std::vector<FileURL> urls = urlsOf(entries);
    if (isByCommand)
        urls.push_back(row.app.url);
    return removeAndCompare(urls, RemovalActions::platform(), progress, promiseOf(expected, mode), [&] {
        return isByCommand ? removeByCommand({row.app, row.bundleSize, entries, mode}, progress)
                           : Remover::remove(entries, mode, &progress);
    });
}

/// What removing the files frees; nothing where another program removes the app.
std::optional<Reclaim> expectedFor(const Plan &plan, RemovalMode mode, bool asks, const StopFlag &stopped) {
    if (Uninstall::isRemovedByCommand(plan.row.app))
        return std::nullopt;
    return expectedOf(Uninstall::entries(plan.row, plan.row.leftovers, true), mode, asks, stopped);
}

/// Removes what is planned, after the question if `asks`.
ExitStatus carryOut(const Plan &plan, RemovalMode mode, bool asks, bool isJson, Output &output) {
    if (plan.isRunning)
        printError(terminalText(plan.row.app.name) +
                   " is running. Quit it first so it does not rewrite its files.");
    if (plan.isRunning && !asks)
        return endUnbegunRemoval(output, isJson, ExitStatus::failed);
    RemovalProgress progress;
    const std::optional<Reclaim> expected = expectedFor(plan, mode, asks, progress.cancelled);
    if (progress.cancelled.isSet())
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    if (asks) {
        if (!isJson)
            writePlan(output, plan);
        std::string question = isJson ? terminalText(plan.row.app.name + ": " + plan.sentence()) + "\n" : "";
        question += expectedLines(expected, mode);
        question += mode == RemovalMode::deleteNow ? "Uninstall it? This can't be undone." : "Uninstall it?";
        if (!confirm(question, AskedOn::standardStreams))
            return endUnbegunRemoval(output, isJson, ExitStatus::failed);
    }
    const Interruption interruption(progress.cancelled);
    const RemovalResult result = removeApp(plan.row, mode, expected, progress);
    reportRemoval(output, result, isJson);
    return endRemoval(output, result, progress);
}

ExitStatus runUninstall(const Arguments &arguments, Output &output) {
    const bool asks = !arguments.has("--yes");
    const auto planFile = arguments.text(savePlanOption.name);
    const bool isDryRun = arguments.has("--dry-run") || planFile;
    if (asks && !isDryRun && !canAsk(AskedOn::standardStreams))
        return refuseUsage("without a terminal to ask on, nothing is removed unless \"--yes\" is given",
                           &uninstallCommand);
    const std::optional<InstalledApp> app = appMeantBy(arguments.operands().front());
    if (!app)
        return ExitStatus::failed;
    const bool isJson = arguments.has("--json");
    const StopFlag cancelled;
    Plan plan = planFor(*app, arguments.has("--with-leftovers"), cancelled);
    if (cancelled.isSet())
        return endUnbegunRemoval(output, isJson, ExitStatus::interrupted);
    heedCategories(plan, arguments.has("--anyway"));
    askGuards(plan);
    printWarnings(plan.warnings);
    printWarnings(plan.kept);
    const RemovalMode mode = arguments.has("--delete") ? RemovalMode::deleteNow : RemovalMode::trash;
    if (planFile && plan.isPossible() && !Uninstall::isRemovedByCommand(plan.row.app))
        return savePlan({Uninstall::entries(plan.row, plan.row.leftovers, true), mode, *planFile, isJson},
                        output);
    if (planFile)
        printError("no plan was written: this app is removed by another program");
    if (isDryRun || !plan.isPossible()) {
        showPlan(output, plan, mode, isJson);
        const bool isDone = plan.isPossible() && plan.refused.empty() && !planFile;
        return isDone ? ExitStatus::done : ExitStatus::failed;
    }
    return carryOut(plan, mode, asks, isJson, output);
}

} // namespace

constinit const Command uninstallCommand = {
    .name = "uninstall",
    .operands = "APP",
    .operandCount = {.minimum = 1, .maximum = 1},
    .options = uninstallOptions,
    .summary = "Removes an installed app.",
    .help =
        "\nAPP is named as for \"leftovers\". An app that is one file or folder goes to the Trash, with its\n"
        "desktop entry and its icons.\n"
        "A Flatpak or snap is removed by the program that installed it, which asks for the rights that it\n"
        "needs. For a package of the distribution, the command is printed and nothing is removed; then the\n"
        "exit status is 1.\n"
        "\n"
        "Asks first; where there is no terminal to ask on, --yes is needed. With --yes, an app that is\n"
        "running is kept. --with-leftovers leaves out what \"leftovers\" marks [careful] or is not sure\n"
        "about, and without --anyway what a storage category protects, such as mail. What \"check\" refuses\n"
        "is never removed. What needs an administrator is listed, for \"remove --as-admin\".\n",
    .run = runUninstall,
};

} // namespace brimvale::commandLine
