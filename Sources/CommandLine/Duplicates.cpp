#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PlanFile.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/Question.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Duplicates/DuplicateEntries.h"
#include "Core/Duplicates/DuplicateSearch.h"
#include "Core/Duplicates/SpaceSharing.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array duplicatesOptions = {
    Option{"--min-size", Option::Value::number, "BYTES", "Leave out files that are shorter than this (1)."},
    Option{.name = "--share",
           .help = "Let equal files share their space, where the file system can; removes nothing."},
    Option{.name = "--yes", .help = "With --share, do not ask."},
    Option{.name = savePlanOption.name,
           .value = savePlanOption.value,
           .valueName = savePlanOption.valueName,
           .help =
               "Write a plan for \"remove --plan\" into FILE: all but one of each group go to the Trash."},
    Option{.name = "--delete", .help = "With --save-plan, they are deleted for good."},
};

void writeDuplicate(JsonWriter &json, const DuplicateFile &file, bool stays) {
    json.beginObject();
    json.path("path", file.url.path());
    json.member("size", file.size);
    json.member("modified", iso8601(file.record.modified));
    json.member("stays", stays);
    json.member("keptBecause", file.keptBecause.empty() ? std::nullopt : std::optional(file.keptBecause));
    json.end();
}

/// The members of a search, in an open object.
void writeDuplicatesJson(JsonWriter &json, const DuplicatesFound &found) {
    json.key("groups");
    json.beginArray();
    for (const DuplicateGroup &group : found.groups) {
        json.beginObject();
        json.member("length", group.length);
        json.member("frees", group.removableBytes());
        json.key("files");
        json.beginArray();
        for (std::size_t i = 0; i < group.files.size(); ++i)
            writeDuplicate(json, group.files[i], i == 0);
        json.end();
        json.end();
    }
    json.end();
    json.member("frees", found.removableBytes());
    json.member("files", found.files);
    json.member("withHoles", found.withHoles);
    json.member("changed", found.changed);
    json.member("unreadable", found.unreadable);
}

void writeDuplicates(Output &output, const DuplicatesFound &found) {
    if (found.groups.empty())
        return;
    TextTable table({TextTable::sizeColumn("FREES"),
                     TextTable::sizeColumn("SIZE"),
                     TextTable::ageColumn("MODIFIED"),
                     {""},
                     {"PATH"}});
    for (const DuplicateGroup &group : found.groups)
        for (std::size_t i = 0; i < group.files.size(); ++i) {
            const DuplicateFile &file = group.files[i];
            table.add({i == 0 ? Fmt::byteFormatter(group.removableBytes()) : std::string(),
                       Fmt::byteFormatter(file.size), Fmt::relativeDate(file.record.modified),
                       i == 0                     ? "stays"
                       : file.keptBecause.empty() ? ""
                                                  : "kept",
                       terminalText(file.url.path())});
        }
    table.write(output);
    output.write("\n");
}

/// What was left out, each kind with a reason.
std::string leftOut(const DuplicatesFound &found) {
    std::string text;
    const auto add = [&](std::int64_t count, std::string_view why) {
        if (count > 0)
            text.append(Fmt::counted(count, "file")).append(why).append("\n");
    };
    add(found.withHoles, " not compared: not stored on this disk as a whole");
    add(found.changed, " not compared: changed while being read");
    add(found.unreadable, " not compared: not readable");
    return text;
}

void writeFindings(Output &output, const DuplicatesFound &found) {
    const auto groups = static_cast<std::int64_t>(found.groups.size());
    std::string text = Fmt::counted(groups, "group").append(" of equal files among ");
    text.append(Fmt::counted(found.files, "file")).append(". Removing all but one of each group would free ");
    text.append(Fmt::byteFormatter(found.removableBytes())).append(".\n").append(leftOut(found));
    if (groups > 0)
        text.append(StayingRule::inWords()).append("\n");
    output.write(text);
}

/// Where to search, standardised. Reports a path that cannot be searched, and returns nothing then.
std::optional<std::vector<FileURL>> placesIn(const Arguments &arguments, const ScanOptions &options) {
    std::vector<FileURL> places;
    for (const char *typed : arguments.operands()) {
        auto place = placeToMeasure(typed, options.skippedPaths);
        if (const auto *error = std::get_if<FileError>(&place)) {
            printPathError(typed, *error);
            return std::nullopt;
        }
        places.push_back(std::get<FileURL>(place));
    }
    return places;
}

DuplicatesFound search(const std::vector<FileURL> &places, std::int64_t leastLength,
                       const ScanOptions &options) {
    DuplicateProgress progress;
    const Interruption interruption(progress.stats.stopFlag());
    const ScanProgress shown(progress.stats, [&progress] {
        return progress.isReading ? "Comparing: " + Fmt::byteFormatter(progress.haveRead) + " of " +
                                        Fmt::byteFormatter(progress.toRead)
                                  : std::string();
    });
    return findDuplicates(places, leastLength, options, progress);
}

ExitStatus reportSharing(Output &output, const SpaceSharing &done, bool isJson) {
    if (isJson) {
        JsonWriter json(output);
        json.beginObject();
        json.paths("shared", done.shared);
        json.member("bytes", done.bytes);
        writeReasons(json, "failed", done.failed);
        json.end();
    } else {
        const auto files = static_cast<std::int64_t>(done.shared.size());
        std::string text = Fmt::counted(files, "file").append(files == 1 ? " now shares" : " now share");
        output.write(
            text.append(" the space of an equal one, ").append(Fmt::byteFormatter(done.bytes)).append(".\n"));
    }
    output.flush();
    for (const RemovalResult::Failure &failure : done.failed)
        printError(terminalText(RemovalReport::failureLine(failure)));
    if (done.wasStopped)
        return endInterrupted(output);
    return done.failed.empty() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus share(const Arguments &arguments, const DuplicatesFound &found, Output &output) {
    const bool isJson = arguments.has("--json");
    const SharingFigures all = sharingIn(found.groups);
    if (all.files == 0 && !isJson) {
        output.write("No equal files can share their space here.\n");
        return ExitStatus::done;
    }
    const std::string question = std::string("Share the space of ")
                                     .append(Fmt::counted(all.files, "file"))
                                     .append(" (")
                                     .append(Fmt::byteFormatter(all.bytes))
                                     .append(")? No file is removed or changed.");
    SpaceSharing done;
    if (all.files > 0 && !arguments.has("--yes") && !confirm(question, AskedOn::standardStreams))
        return ExitStatus::failed;
    const StopFlag stopped;
    const Interruption interruption(stopped);
    return reportSharing(output, shareSpace(found.groups, stopped), isJson);
}

/// A plan that removes what may go of each group.
ExitStatus saveAsPlan(const Arguments &arguments, std::string_view file, const DuplicatesFound &found,
                      Output &output) {
    std::vector<CleanupEntry> entries;
    for (const DuplicateGroup &group : found.groups)
        for (std::size_t i = 1; i < group.files.size(); ++i)
            if (group.mayGo(i, 0))
                entries.push_back(entryToRemove(group, i, 0));
    const RemovalMode mode = arguments.has("--delete") ? RemovalMode::deleteNow : RemovalMode::trash;
    return savePlan({entries, mode, file, arguments.has("--json")}, output);
}

/// What is wrong with how the options are combined, if anything.
std::optional<std::string> faultInOptions(const Arguments &arguments) {
    const bool shares = arguments.has("--share"), savesPlan = arguments.has(savePlanOption.name);
    if (arguments.has("--yes") && !shares)
        return "\"--yes\" is only for --share";
    if (arguments.has("--delete") && !savesPlan)
        return "\"--delete\" is only for --save-plan";
    if (shares && savesPlan)
        return "either equal files share their space, or a plan removes them";
    if (shares && !arguments.has("--yes") && !canAsk(AskedOn::standardStreams))
        return "without a terminal to ask on, nothing is shared unless \"--yes\" is given";
    return std::nullopt;
}

ExitStatus runDuplicates(const Arguments &arguments, Output &output) {
    if (const std::optional<std::string> fault = faultInOptions(arguments))
        return refuseUsage(*fault, &duplicatesCommand);
    const ScanOptions options = ScanOptions::standard();
    const auto places = placesIn(arguments, options);
    if (!places)
        return ExitStatus::failed;
    const DuplicatesFound found = search(*places, arguments.number("--min-size").value_or(1), options);
    if (arguments.has("--share") && !found.wasStopped)
        return share(arguments, found, output);
    if (const auto file = arguments.text(savePlanOption.name); file && !found.wasStopped)
        return saveAsPlan(arguments, *file, found, output);
    if (arguments.has("--json")) {
        JsonWriter json(output);
        json.beginObject();
        writeDuplicatesJson(json, found);
        json.end();
    } else {
        writeDuplicates(output, found);
        writeFindings(output, found);
    }
    return found.wasStopped ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command duplicatesCommand = {
    .name = "duplicates",
    .operands = "PATH…",
    .operandCount = {.minimum = 1},
    .options = duplicatesOptions,
    .summary = "Lists files with equal contents, those that free the most first.",
    .help =
        "\nFiles of one length are compared byte by byte or by their SHA-256 digests. A file with several\n"
        "names counts once, and files that already share their space on the disk are no duplicates. Empty\n"
        "files, files with holes and files that change while they are read are left out. Links are not\n"
        "followed, and other volumes and system-managed folders are not searched.\n"
        "\nOne file of each group stays: first one that can't go, then one outside Downloads and the Trash, "
        "then\n"
        "the oldest, then the one with the shortest path, then the first by name. \"kept\" marks other "
        "files\n"
        "that cannot be removed, or whose removal would free nothing; --json says why. With --share, equal\n"
        "files are stored once, where the file system can do that (Btrfs, XFS). It compares them again. All\n"
        "files stay, with their dates. A plan names for each file the one that stays; both are compared "
        "once\n"
        "more right before the file is removed.\n",
    .run = runDuplicates,
};

} // namespace brimvale::commandLine
