#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/JsonWriter.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/TreeJson.h"
#include "CommandLine/TreeLimits.h"
#include "CommandLine/TreeTable.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace brimvale::commandLine {

namespace {

constexpr std::array scanCommandOptions = {
    Option{"--min-size", Option::Value::number, "BYTES",
           "Show a file by itself from this allocated size on (1048576)."},
    Option{"--depth", Option::Value::number, "N", "Show N levels of folders (2; with --json all)."},
    Option{"--top", Option::Value::number, "N", "Show the N largest of each folder (10; with --json all)."},
};

struct SizedTree {
    std::unique_ptr<FSNode> tree; ///< sorted
    std::chrono::duration<double> elapsed;
};

SizedTree scan(const FileURL &url, const ScanOptions &scanOptions, ScanStats &stats) {
    const auto start = std::chrono::steady_clock::now();
    SizedTree result;
    {
        const Interruption interruption(stats.stopFlag());
        const ScanProgress progress(stats);
        result.tree = DiskScanner::scan(url.path(), scanOptions, stats);
    }
    result.tree->sortRecursively();
    result.elapsed = std::chrono::steady_clock::now() - start;
    return result;
}

void writeScan(Output &output, const SizedTree &result, const ScanStats &stats, const TreeLimits &limits) {
    JsonWriter json(output);
    json.beginObject();
    json.key("root");
    writeTree(json, *result.tree, limits);
    json.member("files", result.tree->fileCount);
    json.member("bytes", result.tree->size);
    json.member("unreadable", stats.unreadable());
    json.member("elapsed", result.elapsed.count());
    json.end();
}

std::string counted(std::int64_t count, std::string_view one, std::string_view many) {
    return Fmt::count(count).append(" ").append(count == 1 ? one : many);
}

void writeSummary(Output &output, const SizedTree &result, const ScanStats &stats) {
    const FSNode &root = *result.tree;
    std::string line = counted(root.fileCount, "file", "files");
    line.append(" in ").append(counted(root.dirCount, "folder", "folders"));
    line.append(", ").append(Fmt::byteFormatter(root.size)).append(" allocated");
    if (const std::int64_t unreadable = stats.unreadable(); unreadable > 0)
        line.append(", ").append(Fmt::count(unreadable)).append(" unreadable");
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), ", %.2f s\n", result.elapsed.count());
    output.write("\n");
    output.write(line.append(seconds.data()));
}

/// Keeps the tree until the program ends, which frees its memory at once. Destroying a million nodes one by
/// one takes longer than sorting them.
void leaveToTheSystem(std::unique_ptr<FSNode> tree) {
    [[maybe_unused]] static const FSNode *kept = nullptr;
    kept = tree.release();
}

ExitStatus runScan(const Arguments &arguments, Output &output) {
    const std::string_view typed = arguments.operands().empty() ? "." : arguments.operands().front();
    const auto place = placeToScan(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }

    ScanOptions scanOptions = ScanOptions::standard();
    scanOptions.minimumNodeSize = arguments.number("--min-size").value_or(scanOptions.minimumNodeSize);
    ScanStats stats;
    SizedTree result = scan(std::get<FileURL>(place), scanOptions, stats);

    const bool isJson = arguments.has("--json");
    const TreeLimits usual = isJson ? TreeLimits{} : TreeLimits{.depth = 2, .top = 10};
    const TreeLimits limits{.depth = arguments.number("--depth").value_or(usual.depth),
                            .top = arguments.number("--top").value_or(usual.top)};
    if (isJson) {
        writeScan(output, result, stats, limits);
    } else {
        writeTreeTable(output, *result.tree, limits);
        writeSummary(output, result, stats);
    }
    leaveToTheSystem(std::move(result.tree));
    return stats.cancelled() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command scanCommand = {
    .name = "scan",
    .operands = "[PATH]",
    .operandCount = {.minimum = 0, .maximum = 1},
    .options = scanCommandOptions,
    .summary = "Shows what takes the space in a folder (the current one), largest first.",
    .help =
        "\nSizes are allocated bytes. Links are not followed, other volumes and system-managed folders not\n"
        "entered, and a file with several names counts once. Ctrl-C stops early and shows what was\n"
        "counted until then.\n",
    .run = runScan,
};

} // namespace brimvale::commandLine
