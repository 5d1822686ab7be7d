#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/TreeReport.h"
#include "Core/Scan/DiskScanner.h"
#include "Platform/Confinement.h"
#include "Platform/Host.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace brimvale::commandLine {

namespace {

constexpr Option importOption{"--import", Option::Value::text, "FILE",
                              "Show the tree in FILE, as \"open\" does, and scan nothing."};

constexpr std::array scanCommandOptions = {
    Option{"--min-size", Option::Value::number, "BYTES",
           "Show a file by itself from this allocated size on (1048576; with --export or --save 0)."},
    depthOption,
    topOption,
    exportOption,
    outputOption,
    saveOption,
    forceOption,
    importOption,
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

/// Keeps the tree until the program ends, which frees its memory at once. Destroying a million nodes one by
/// one takes longer than sorting them.
void leaveToTheSystem(std::unique_ptr<FSNode> tree) {
    [[maybe_unused]] static const FSNode *kept = nullptr;
    kept = tree.release();
}

/// Whether every file is wanted, the smallest too.
bool listsAll(const Arguments &arguments) {
    return arguments.has(exportOption.name) || arguments.has(saveOption.name);
}

ScanOptions optionsOf(const Arguments &arguments) {
    ScanOptions options = ScanOptions::standard();
    const std::int64_t usual = listsAll(arguments) ? 0 : options.minimumNodeSize;
    options.minimumNodeSize = arguments.number("--min-size").value_or(usual);
    return options;
}

/// The folder that is scanned if none is given. A sample is shown in place of the computer, and its home in
/// place of the current folder.
std::string usualFolder() {
    return confinement() ? homeFolder().path() : ".";
}

/// The option that reads or writes a file, if one was given to a scan that `pkexec` has started. The question
/// that the user has answered there says that nothing is changed.
std::optional<std::string> fileOptionAsAdministrator(const Arguments &arguments) {
    if (std::getenv("PKEXEC_UID") != nullptr)
        for (const Option &one : {outputOption, saveOption, importOption})
            if (arguments.has(one.name))
                return "started by pkexec, scan only prints, so it has no " + std::string(one.name);
    return std::nullopt;
}

ExitStatus runScan(const Arguments &arguments, Output &output) {
    if (const std::optional<std::string> fault = fileOptionAsAdministrator(arguments))
        return refuseUsage(*fault, &scanCommand);
    if (const std::optional<std::string> fault = faultOfReport(arguments))
        return refuseUsage(*fault, &scanCommand);
    if (const auto file = arguments.text(importOption.name)) {
        if (!arguments.operands().empty())
            return refuseUsage("a folder is either scanned or read with \"--import\"", &scanCommand);
        return reportFile(*file, arguments, output);
    }
    const std::string typed =
        arguments.operands().empty() ? usualFolder() : std::string(arguments.operands().front());
    const auto place = placeToScan(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }
    if (!canWriteReport(arguments))
        return ExitStatus::failed;

    ScanStats stats;
    SizedTree result = scan(std::get<FileURL>(place), optionsOf(arguments), stats);
    const ReportedTree tree{*result.tree, ScanOrigin::here(stats.unreadable()), result.elapsed.count()};
    const bool isUnfinished = stats.cancelled() && listsAll(arguments);
    ExitStatus status = ExitStatus::done;
    if (arguments.has(saveOption.name) && !isUnfinished)
        status = saveTree(tree, arguments);
    if (status == ExitStatus::done && !isUnfinished)
        status = reportTree(tree, arguments, output);
    leaveToTheSystem(std::move(result.tree));
    return stats.cancelled() ? endInterrupted(output) : status;
}

} // namespace

constinit const Command scanCommand = {
    .name = "scan",
    .operands = "[PATH]",
    .operandCount = {.minimum = 0, .maximum = 1},
    .options = scanCommandOptions,
    .summary = "Shows what takes up space in a folder (the current one), largest first.",
    .help =
        "\nSizes are allocated bytes. Links are not followed, other volumes and system-managed folders not\n"
        "entered, and a file with several names counts once. Ctrl-C stops early and shows what was\n"
        "counted until then.\n"
        "\nWith --export or --save every file is listed, the smallest too, and nothing is written when the\n"
        "scan is stopped early.\n",
    .run = runScan,
};

} // namespace brimvale::commandLine
