#include "CommandLine/Commands.h"

#include "Base/Bytes.h"
#include "CommandLine/BackupReport.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Backup/Archiver.h"
#include "Core/Backup/BackupManifest.h"
#include "Core/Backup/BackupPlan.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array backupOptions = {
    Option{"--label", Option::Value::text, "TEXT", "How the folder's name begins; required."},
    Option{"--into", Option::Value::text, "FOLDER",
           "Where to make the folder (\"Brimvale Backups\" in your documents)."},
    Option{"--verify", Option::Value::text, "FOLDER",
           "Compare an earlier backup with its manifest, without copying."},
};

/// The fault in the command line, if any.
std::optional<std::string> backupFault(const Arguments &arguments) {
    if (arguments.has("--verify")) {
        if (!arguments.operands().empty() || arguments.has("--label") || arguments.has("--into"))
            return "\"--verify\" takes no other option or path";
        return std::nullopt;
    }
    if (arguments.operands().empty())
        return "missing argument: PATH…";
    const std::optional<std::string_view> label = arguments.text("--label");
    if (!label)
        return "missing option: --label";
    if (label->empty() || label->find('/') != std::string_view::npos)
        return "\"--label\" takes the beginning of a name, not " + inQuotes(*label);
    return std::nullopt;
}

/// The items named by the operands. If one is missing, reports every fault and returns nothing.
std::optional<std::vector<FileURL>> itemsOf(const Arguments &arguments, const ScanOptions &scanOptions) {
    std::vector<FileURL> items;
    for (const std::string_view typed : arguments.operands()) {
        const auto place = placeToMeasure(typed, scanOptions.skippedPaths);
        if (const auto *error = std::get_if<FileError>(&place))
            printPathError(typed, *error);
        else
            items.push_back(std::get<FileURL>(place));
    }
    return items.size() == arguments.operands().size() ? std::optional(items) : std::nullopt;
}

/// The folder for backups. If it cannot be used, reports why and returns nothing.
std::optional<FileURL> rootOf(const Arguments &arguments) {
    const std::optional<std::string_view> typed = arguments.text("--into");
    if (!typed)
        return Archiver::defaultDestination();
    const auto place = resolveGivenPath(*typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(*typed, *error);
        return std::nullopt;
    }
    return std::get<FileURL>(place).standardized();
}

std::int64_t sizeOf(const std::vector<FileURL> &items, const ScanOptions &scanOptions,
                    const StopFlag &cancelled) {
    std::int64_t size = 0;
    for (const FileURL &item : items)
        size = checkedAdd(size, DiskScanner::quickSize(item.path(), scanOptions, cancelled));
    return size;
}

std::string progressText(const ArchiveProgress &progress, const std::vector<FileURL> &items,
                         std::int64_t total) {
    // The last steps are of no item.
    const bool isOfItem = progress.item < items.size();
    return stepText(progress, isOfItem ? terminalText(items[progress.item].fileName()) : "", total);
}

ArchiveResult archive(const std::vector<FileURL> &items, std::string_view label, const FileURL &root,
                      const ScanOptions &scanOptions) {
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const ProgressLine line;
    ArchiveWatch watch;
    watch.cancelled = cancelled;
    line.show("Measuring");
    const std::int64_t total = sizeOf(items, scanOptions, cancelled);
    if (const auto shortage = BackupPlan::shortage(items, total, root))
        printError("warning: " + BackupPlan::sentence(*shortage));
    watch.onProgress = [&](const ArchiveProgress &progress) {
        line.show(progressText(progress, items, total));
    };
    return Archiver::archive(items, std::string(label), root, watch);
}

ExitStatus backUp(const Arguments &arguments, Output &output) {
    const ScanOptions scanOptions = ScanOptions::standard();
    const auto items = itemsOf(arguments, scanOptions);
    const auto root = rootOf(arguments);
    if (!items || !root)
        return ExitStatus::failed;
    if (const auto refusal = BackupPlan::refusal(*items, *root)) {
        printError(terminalText(*refusal));
        return ExitStatus::failed;
    }
    const ArchiveResult result = archive(*items, arguments.text("--label").value_or(""), *root, scanOptions);
    if (arguments.has("--json"))
        printBackupDocument(output, result);
    else
        printBackup(output, result);
    if (result.isCancelled)
        return ExitStatus::interrupted;
    const bool isGood = result.failed.empty() && result.manifest;
    return isGood ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus verify(std::string_view typed, bool isJson, Output &output) {
    const auto place = resolveGivenPath(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const auto verified = BackupManifest::verify(std::get<FileURL>(place), cancelled);
    if (const auto *error = std::get_if<FileError>(&verified)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }
    const auto &verification = std::get<BackupManifest::Verification>(verified);
    if (verification.isCancelled) {
        printError("interrupted: the comparison was not finished");
        return ExitStatus::interrupted;
    }
    if (isJson)
        printVerificationDocument(output, verification);
    else
        printVerification(output, verification);
    return verification.isIntact() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus runBackup(const Arguments &arguments, Output &output) {
    if (const std::optional<std::string> fault = backupFault(arguments))
        return refuseUsage(*fault, &backupCommand);
    if (const std::optional<std::string_view> folder = arguments.text("--verify"))
        return verify(*folder, arguments.has("--json"), output);
    return backUp(arguments, output);
}

} // namespace

constinit const Command backupCommand = {
    .name = "backup",
    .operands = "PATH…",
    .operandCount = {},
    .options = backupOptions,
    .summary = "Copies items into a dated folder and verifies the copies, or an earlier backup.",
    .help =
        "\nNothing is removed. The folder is a new one that only you can open. Every copy is compared with\n"
        "its original, and a manifest is written, so the backup can be verified years later. Links are\n"
        "copied as links. A Messages database gets a readable page beside it. \"--verify\" also reports "
        "extra\n"
        "files and changed permissions, but they are not failures. Ctrl-C stops; files that were already\n"
        "copied stay in the folder.\n",
    .run = runBackup,
};

} // namespace brimvale::commandLine
