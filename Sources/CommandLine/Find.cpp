#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Find/FileSearch.h"
#include "Core/Scan/FSNode.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array findOptions = {
    Option{"--largest", Option::Value::number, "N", "Print only the N largest files."},
    Option{"--by", Option::Value::text, "type|age",
           "Print the sums of each type or age instead of the files."},
};

/// The files of one type or age.
struct Group {
    std::string_view key;
    std::string_view title;
    FileFigures figures;
};

/// All types or ages that have files, the types by size.
std::vector<Group> groupsOf(const FileSums &sums, bool isByType) {
    std::vector<Group> groups;
    for (std::size_t i = 0; i < (isByType ? fileTypeCount : fileAgeCount); ++i) {
        if (isByType) {
            const FileTypeWords &words = wordsOf(static_cast<FileType>(i));
            groups.push_back({words.key, words.title, sums.of(static_cast<FileType>(i))});
        } else {
            const FileAgeWords &words = wordsOf(static_cast<FileAge>(i));
            groups.push_back({words.key, words.title, sums.of(static_cast<FileAge>(i))});
        }
    }
    std::erase_if(groups, [](const Group &group) { return group.figures.count == 0; });
    if (isByType)
        std::stable_sort(groups.begin(), groups.end(),
                         [](const Group &a, const Group &b) { return a.figures.bytes > b.figures.bytes; });
    return groups;
}

void writeGroups(JsonWriter &json, const std::vector<Group> &groups) {
    json.key("groups");
    json.beginArray();
    for (const Group &group : groups) {
        json.beginObject();
        json.member("key", group.key);
        json.member("files", group.figures.count);
        json.member("bytes", group.figures.bytes);
        json.end();
    }
    json.end();
}

void writeFiles(JsonWriter &json, const std::vector<FoundFile> &files) {
    json.key("files");
    json.beginArray();
    for (const FoundFile &file : files) {
        json.beginObject();
        json.path("path", file.path);
        json.member("size", file.size);
        const std::optional<Date> modified = FSNode::dateOf(file.modified);
        json.member("modified", modified ? std::optional(iso8601(*modified)) : std::nullopt);
        json.member("type", wordsOf(fileTypeOf(FileURL(file.path).fileName())).key);
        json.end();
    }
    json.end();
}

void writeFound(Output &output, const FoundFiles &found, const std::vector<Group> *groups,
                const ScanStats &stats) {
    JsonWriter json(output);
    json.beginObject();
    if (groups != nullptr)
        writeGroups(json, *groups);
    else
        writeFiles(json, found.largest);
    json.member("count", found.sums.total().count);
    json.member("bytes", found.sums.total().bytes);
    json.member("unreadable", stats.unreadable());
    json.end();
}

void writeGroups(Output &output, const std::vector<Group> &groups, bool isByType) {
    TextTable table({TextTable::sizeColumn("SIZE"),
                     {"FILES", TextTable::Column::Side::right},
                     {isByType ? "TYPE" : "LAST CHANGED"}});
    for (const Group &group : groups)
        table.add({Fmt::byteFormatter(group.figures.bytes), Fmt::count(group.figures.count),
                   std::string(group.title)});
    table.write(output);
}

void writeFiles(Output &output, const std::vector<FoundFile> &files) {
    if (files.empty())
        return;
    TextTable table({TextTable::sizeColumn("SIZE"), TextTable::ageColumn("MODIFIED"), {"PATH"}});
    for (const FoundFile &file : files)
        table.add({Fmt::byteFormatter(file.size), Fmt::relativeDate(FSNode::dateOf(file.modified)),
                   terminalText(file.path)});
    table.write(output);
}

void writeTotal(Output &output, const FoundFiles &found, const ScanStats &stats) {
    const FileFigures total = found.sums.total();
    std::string line = "\n";
    line.append(Fmt::counted(total.count, "file")).append(", ");
    line.append(Fmt::byteFormatter(total.bytes)).append(" allocated");
    if (stats.unreadable() > 0)
        line.append(", ").append(Fmt::count(stats.unreadable())).append(" unreadable");
    output.write(line.append("\n"));
}

ExitStatus runFind(const Arguments &arguments, Output &output) {
    const std::string_view by = arguments.text("--by").value_or("");
    if (arguments.has("--by") && by != "type" && by != "age")
        return refuseUsage("\"--by\" takes type or age, not " + inQuotes(by), &findCommand);
    const std::uint32_t moment = FSNode::secondsOf(now());
    const std::vector<const char *> &operands = arguments.operands();
    const auto filter =
        FileFilter::read(std::vector<std::string>(operands.begin() + 1, operands.end()), moment);
    if (const auto *fault = std::get_if<FileFilter::Fault>(&filter))
        return refuseUsage(fault->sentence, &findCommand);
    const std::string_view typed = operands.front();
    const ScanOptions scanOptions = ScanOptions::standard();
    const auto place = placeToMeasure(typed, scanOptions.skippedPaths);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }

    const std::int64_t largest =
        arguments.number("--largest").value_or(std::numeric_limits<std::int64_t>::max());
    ScanStats stats;
    FoundFiles found;
    {
        const Interruption interruption(stats.stopFlag());
        const ScanProgress progress(stats);
        found = findFiles(std::get<FileURL>(place).path(), std::get<FileFilter>(filter),
                          by.empty() ? static_cast<std::size_t>(largest) : 0, moment, scanOptions, stats);
    }
    const std::vector<Group> groups = groupsOf(found.sums, by == "type");
    if (arguments.has("--json")) {
        writeFound(output, found, by.empty() ? nullptr : &groups, stats);
    } else {
        if (by.empty())
            writeFiles(output, found.largest);
        else
            writeGroups(output, groups, by == "type");
        writeTotal(output, found, stats);
    }
    return stats.cancelled() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command findCommand = {
    .name = "find",
    .operands = "PATH [FILTER…]",
    .operandCount = {.minimum = 1},
    .options = findOptions,
    .summary = "Lists the files in a folder that match all filters, largest first.",
    .help =
        "\nFilters: \">100M\" and \"<1G\" for the size, older:1y and newer:2w for the last change (d, w, m, "
        "y),\n"
        "type:video,audio for the kind of file, as its name says, and any other word for part of the name.\n"
        "Sizes are allocated bytes. Links are not followed, other volumes and system-managed folders are "
        "not\n"
        "scanned, and a file with several names counts once.\n",
    .run = runFind,
};

} // namespace brimvale::commandLine
