#include "CommandLine/Commands.h"

#include "Catalogs/Catalog.h"
#include "CommandLine/AppJson.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/LeftoverSearch.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

/// The application at a path as typed; nothing if there is none.
std::optional<InstalledApp> appAt(std::string_view typed) {
    const auto place = resolveGivenPath(typed);
    if (!std::holds_alternative<FileURL>(place))
        return std::nullopt;
    const std::string path = std::get<FileURL>(place).standardized().path();
    const Host host = Host::current();
    for (InstalledApp &app : AppInventory::scan(true, host))
        if (app.kind != AppKind::bundle && app.url.path() == path)
            return std::move(app);
    return AppInventory::describe(path, catalogOf(host.system).appRoots(host).isSystem(path));
}

/// Whether an application has this identifier, or is of this package.
bool isIdentifiedBy(const InstalledApp &app, std::string_view identifier) {
    const std::vector<std::string> &all = app.names.identifiers;
    return app.bundleID == identifier || (app.kind == AppKind::package && app.origin == identifier) ||
           std::find(all.begin(), all.end(), identifier) != all.end();
}

std::vector<InstalledApp> appsIdentifiedBy(std::string_view identifier) {
    std::vector<InstalledApp> apps = AppInventory::scan(true);
    std::erase_if(apps, [&](const InstalledApp &app) { return !isIdentifiedBy(app, identifier); });
    return apps;
}

/// The application that the operand names. If none or several match, reports that and returns nothing.
std::optional<InstalledApp> appMeantBy(std::string_view typed) {
    if (typed.find('/') == std::string_view::npos) {
        const std::vector<InstalledApp> apps = appsIdentifiedBy(typed);
        if (apps.size() == 1)
            return apps.front();
        if (apps.size() > 1) {
            std::string paths;
            for (const InstalledApp &app : apps)
                paths.append(paths.empty() ? "" : ", ").append(inQuotes(app.url.path()));
            printError("several applications are identified by " + inQuotes(typed) +
                       "; name one by its path: " + paths);
            return std::nullopt;
        }
    }
    std::optional<InstalledApp> app = appAt(typed);
    if (!app)
        printError(inQuotes(typed) + " is neither an application's bundle nor the identifier of one");
    return app;
}

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
