#include "CommandLine/Commands.h"

#include "Base/Bytes.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/JsonWriter.h"
#include "CommandLine/RemovalOperands.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array options = {
    Option{.name = "--delete", .help = "Delete for good instead of moving to the Trash."},
    Option{.name = "--as-admin",
           .help = "Delete for good as the administrator; the system asks for the password."},
    Option{.name = "--yes", .help = "Do not ask."},
};

enum class Route { trash, deletion, administrator };

Route routeIn(const Arguments &arguments) {
    if (arguments.has("--as-admin"))
        return Route::administrator;
    return arguments.has("--delete") ? Route::deletion : Route::trash;
}

/// Measures what would be removed, until `stopped` is set.
Remover::Sizes measure(const std::vector<FileURL> &urls, const StopFlag &stopped) {
    const ScanOptions scanOptions = ScanOptions::standard();
    Remover::Sizes sizes;
    for (const FileURL &url : urls)
        sizes[url] = DiskScanner::quickSize(url.standardized().path(), scanOptions, stopped);
    return sizes;
}

std::string question(const RemovalOperands &operands, const Remover::Sizes &sizes, Route route) {
    std::int64_t bytes = 0;
    for (const auto &[url, size] : sizes)
        bytes = checkedAdd(bytes, size);
    const auto count = static_cast<std::int64_t>(operands.admitted.size());
    const auto all = static_cast<std::int64_t>(operands.urls.size());
    std::string items = Fmt::count(count);
    if (count < all)
        items += " of " + Fmt::count(all);
    items += (all == 1 ? " item (" : " items (") + Fmt::byteFormatter(bytes) + ")";
    if (route == Route::trash)
        return "Move " + items + " to the Trash?";
    return "Delete " + items +
           (route == Route::administrator ? " immediately, as the administrator?" : " immediately?") +
           " This cannot be undone.";
}

RemovalResult removeBy(Route route, const std::vector<FileURL> &urls, const Remover::Sizes &sizes,
                       RemovalProgress &progress) {
    if (route == Route::administrator)
        return Remover::removeWithAdmin(urls);
    const RemovalMode mode = route == Route::deletion ? RemovalMode::deleteNow : RemovalMode::trash;
    return Remover::remove(urls, mode, sizes, &progress);
}

void writeUrls(JsonWriter &json, std::string_view key, const std::vector<FileURL> &urls) {
    json.key(key);
    json.beginArray();
    for (const FileURL &url : urls)
        json.value(url.path());
    json.end();
}

void writeDocument(Output &output, const RemovalResult &result) {
    JsonWriter json(output);
    json.beginObject();
    writeUrls(json, "succeeded", result.succeeded);
    json.key("failed");
    json.beginArray();
    for (const RemovalResult::Failure &failure : result.failed) {
        json.beginObject();
        json.member("url", failure.url.path());
        json.member("reason", failure.reason);
        json.end();
    }
    json.end();
    json.member("bytesFreed", result.bytesFreed);
    writeUrls(json, "needsAdmin", result.needsAdmin);
    json.end();
}

void report(Output &output, const RemovalResult &result, bool isJson) {
    if (isJson)
        return writeDocument(output, result);
    for (const FileURL &url : result.succeeded)
        output.write("removed  " + terminalText(url.path()) + "\n");
    output.write(RemovalReport::summary(result) + "\n");
    output.flush();
    for (const RemovalResult::Failure &failure : result.failed)
        printError(terminalText(RemovalReport::failureLine(failure)));
    for (const FileURL &url : result.needsAdmin)
        printError(terminalText(url.path()) + ": needs admin rights (see --as-admin)");
}

/// How the command ends that was stopped, or that was told not to go on, before anything was removed.
ExitStatus endUnbegun(Output &output, bool isJson, ExitStatus status) {
    if (isJson)
        writeDocument(output, {});
    output.flush();
    printError(status == ExitStatus::interrupted ? "interrupted: nothing was removed"
                                                 : "nothing was removed");
    return status;
}

ExitStatus runRemove(const Arguments &arguments, Output &output) {
    const bool asks = !arguments.has("--yes");
    if (asks && !canAsk())
        return refuseUsage("without a terminal to ask on, nothing is removed unless \"--yes\" is given",
                           &removeCommand);
    const std::optional<RemovalOperands> operands = RemovalOperands::from(arguments.operands());
    if (!operands)
        return ExitStatus::failed;

    const Route route = routeIn(arguments);
    const bool isJson = arguments.has("--json");
    RemovalProgress progress;
    Remover::Sizes sizes;
    if (asks && !operands->admitted.empty()) {
        {
            const Interruption interruption(progress.cancelled);
            sizes = measure(operands->admitted, progress.cancelled);
        }
        if (progress.cancelled.isSet())
            return endUnbegun(output, isJson, ExitStatus::interrupted);
        if (!confirm(question(*operands, sizes, route)))
            return endUnbegun(output, isJson, ExitStatus::failed);
    }

    const Interruption interruption(progress.cancelled);
    const RemovalResult result = removeBy(route, operands->urls, sizes, progress);
    report(output, result, isJson);
    if (progress.cancelled.isSet()) {
        output.flush();
        printError("interrupted");
        return ExitStatus::interrupted;
    }
    return result.failed.empty() && result.needsAdmin.empty() ? ExitStatus::done : ExitStatus::failed;
}

} // namespace

constinit const Command removeCommand = {
    .name = "remove",
    .operands = "PATH…",
    .operandCount = {.minimum = 1},
    .options = options,
    .summary = "Moves what is at each path to the Trash, or deletes it.",
    .help =
        "\nAsks first, with the number of items and their allocated size; where there is no terminal to ask "
        "on,\n"
        "--yes is needed. What \"check\" refuses is never removed. A link is removed itself, not what it "
        "leads\n"
        "to. A path inside another one that is removed goes with it. Space that the Trash holds comes back\n"
        "when it is emptied. Ctrl-C stops, and tells what was removed until then.\n",
    .run = runRemove,
};

} // namespace brimvale::commandLine
