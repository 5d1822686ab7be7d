#include "CommandLine/Commands.h"

#include "Base/Bytes.h"
#include "CommandLine/AppJson.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Apps/AppAnalysis.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/RunningApp.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array appsOptions = {
    Option{.name = "--include-system", .help = "List the system's apps too."},
    Option{.name = "--analyze", .help = "Measure each one and its leftovers."},
};

std::vector<InstalledApp> appsOf(const std::vector<AppRow> &rows) {
    std::vector<InstalledApp> apps;
    for (const AppRow &row : rows)
        apps.push_back(row.app);
    return apps;
}

void analyze(std::vector<AppRow> &rows, const StopFlag &cancelled) {
    const auto use = [&](AppFigures figures) {
        const auto row = std::find_if(rows.begin(), rows.end(),
                                      [&](const AppRow &one) { return one.app.url == figures.url; });
        row->bundleSize = figures.bundleSize;
        row->leftovers = std::move(figures.leftovers);
        row->analyzed = true;
    };
    AppAnalysis::analyze(appsOf(rows), use, cancelled);
}

std::string leftoversSize(const AppRow &row) {
    std::int64_t size = 0;
    for (const LeftoverItem &item : row.leftovers)
        size = checkedAdd(size, item.size);
    return Fmt::byteFormatter(size);
}

void writeApps(Output &output, const std::vector<AppRow> &rows, bool hasSizes) {
    if (rows.empty()) {
        output.write("No apps found.\n");
        return;
    }
    std::vector<TextTable::Column> columns;
    if (hasSizes)
        columns = {TextTable::sizeColumn("SIZE"), TextTable::sizeColumn("LEFTOVERS")};
    const bool hasKinds = std::any_of(rows.begin(), rows.end(),
                                      [](const AppRow &row) { return row.app.kind != AppKind::bundle; });
    if (hasKinds)
        columns.push_back({"KIND"});
    columns.insert(columns.end(), {{"NAME"}, {"VERSION"}, {"IDENTIFIER"}, {"PATH"}});

    TextTable table(std::move(columns));
    for (const AppRow &row : rows) {
        std::vector<std::string> cells;
        if (hasSizes)
            cells = {row.analyzed && row.app.hasSize() ? Fmt::byteFormatter(row.bundleSize) : "–",
                     row.analyzed ? leftoversSize(row) : "–"};
        if (hasKinds)
            cells.emplace_back(row.app.kind == AppKind::bundle ? "Bundle" : title(row.app.kind));
        for (const std::string &text : {row.app.name, row.app.version.value_or("–"),
                                        row.app.bundleID.value_or("–"), row.app.url.path()})
            cells.push_back(terminalText(text));
        table.add(std::move(cells));
    }
    table.write(output);
}

void writeAppsAsJson(Output &output, const std::vector<AppRow> &rows) {
    const std::vector<bool> running = areRunning(appsOf(rows));
    JsonWriter json(output);
    json.beginArray();
    for (std::size_t i = 0; i < rows.size(); ++i)
        writeAppRow(json, rows[i], running[i]);
    json.end();
}

ExitStatus runApps(const Arguments &arguments, Output &output) {
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    std::vector<AppRow> rows;
    for (InstalledApp &app : AppInventory::scan(arguments.has("--include-system")))
        rows.push_back({.app = std::move(app), .bundleSize = 0, .leftovers = {}, .analyzed = false});
    if (arguments.has("--analyze"))
        analyze(rows, cancelled);

    if (arguments.has("--json")) {
        writeAppsAsJson(output, rows);
    } else {
        writeApps(output, rows, arguments.has("--analyze"));
    }
    return cancelled.isSet() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command appsCommand = {
    .name = "apps",
    .operands = "",
    .operandCount = {.minimum = 0, .maximum = 0},
    .options = appsOptions,
    .summary = "Lists the installed apps.",
    .help =
        "\nThese are the apps that a user starts from the desktop, wherever they come from. Without "
        "--analyze,\n"
        "sizes are 0 and leftovers are not searched for. With --json, each app also says how it is removed,\n"
        "and whether it is running.\n",
    .run = runApps,
};

} // namespace brimvale::commandLine
