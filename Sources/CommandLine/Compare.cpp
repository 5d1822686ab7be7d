#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "CommandLine/TreeReport.h"
#include "Core/Export/Comparison.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/FileStatus.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::int64_t usualRows = 20;

constexpr std::array compareOptions = {
    Option{"--top", Option::Value::number, "N",
           "Show the N largest changes (20; with --json all), those that grew first."},
};

/// The tree of a folder, with every file; nothing where it cannot be scanned.
std::unique_ptr<FSNode> scanned(std::string_view typed, ScanStats &stats) {
    const auto place = placeToScan(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return nullptr;
    }
    ScanOptions options = ScanOptions::standard();
    options.minimumNodeSize = 0;
    const Interruption interruption(stats.stopFlag());
    const ScanProgress progress(stats);
    return DiskScanner::scan(std::get<FileURL>(place).path(), options, stats);
}

bool isFolder(std::string_view typed) {
    const auto place = resolveGivenPath(typed);
    const auto *url = std::get_if<FileURL>(&place);
    return url != nullptr && folderIdentity(url->path());
}

struct Trees {
    std::unique_ptr<FSNode> before;
    std::unique_ptr<FSNode> after; ///< in a file, or of a folder on this disk
};

/// Both trees; one is missing where it cannot be read, which is told. Two files are read at once.
Trees readTrees(std::string_view earlier, std::string_view later, ScanStats &stats) {
    const auto read = [](std::string_view typed) {
        std::optional<ImportedTree> tree = treeInFile(typed);
        return tree ? std::move(tree->root) : nullptr;
    };
    if (!isFolder(later)) {
        auto before = std::async(std::launch::async, read, earlier);
        Trees trees{nullptr, read(later)};
        trees.before = before.get();
        return trees;
    }
    Trees trees{read(earlier), nullptr};
    if (trees.before != nullptr)
        trees.after = scanned(later, stats);
    return trees;
}

std::string placeOf(const TreeChange &change) {
    std::string place = terminalText(change.path);
    if (change.isAggregate)
        return "smaller files in " + place;
    if (change.isFolder)
        place += "/";
    return change.kind == TreeChange::Kind::moved ? place + " (was " + terminalText(change.earlier) + ")"
                                                  : place;
}

void writeTable(Output &output, const std::vector<const TreeChange *> &rows) {
    TextTable table({TextTable::sizeColumn("GROWTH"), TextTable::sizeColumn("NOW"), {"WHAT"}, {"PATH"}});
    for (const TreeChange *row : rows)
        table.add({signedSize(row->growth()), Fmt::byteFormatter(row->after), std::string(wordFor(row->kind)),
                   placeOf(*row)});
    table.write(output);
}

void writeChanges(Output &output, const std::vector<const TreeChange *> &rows, const FSNode &before,
                  const FSNode &after) {
    JsonWriter json(output);
    json.beginObject();
    json.member("before", before.size);
    json.member("after", after.size);
    json.key("changes");
    json.beginArray();
    for (const TreeChange *row : rows) {
        json.beginObject();
        json.member("kind", wordFor(row->kind));
        json.path("path", row->path);
        if (row->kind == TreeChange::Kind::moved)
            json.path("earlier", row->earlier);
        json.member("isFolder", row->isFolder);
        json.member("isAggregate", row->isAggregate);
        json.member("before", row->before);
        json.member("after", row->after);
        json.end();
    }
    json.end();
    json.end();
}

/// The changes to show: what has grown most, and what has shrunk most, in their order.
std::vector<const TreeChange *> largest(const std::vector<TreeChange> &changes, std::int64_t count) {
    std::vector<const TreeChange *> rows;
    const auto most = static_cast<std::size_t>(count);
    std::size_t first = 0, last = changes.size();
    while (first < last && rows.size() + (changes.size() - last) < most) {
        const bool growsMore = changes[first].growth() >= -changes[last - 1].growth();
        if (growsMore)
            rows.push_back(&changes[first++]);
        else
            --last;
    }
    for (; last < changes.size(); ++last)
        rows.push_back(&changes[last]);
    return rows;
}

void writeComparison(const Trees &trees, const Arguments &arguments, Output &output) {
    const auto &[before, after] = trees;
    const TreeComparison comparison(*before, *after);
    const std::vector<TreeChange> &changes = comparison.changes();
    const bool isJson = arguments.has("--json");
    const auto all = static_cast<std::int64_t>(changes.size());
    const auto rows = largest(changes, arguments.number("--top").value_or(isJson ? all : usualRows));
    if (isJson)
        return writeChanges(output, rows, *before, *after);
    writeTable(output, rows);
    std::string line = "\n" + Fmt::byteFormatter(before->size);
    line.append(" before, ").append(Fmt::byteFormatter(after->size)).append(" now (");
    line.append(signedSize(after->size - before->size)).append("); ");
    output.write(line.append(Fmt::counted(all, "change")).append("\n"));
}

ExitStatus runCompare(const Arguments &arguments, Output &output) {
    ScanStats stats;
    Trees trees = readTrees(arguments.operands()[0], arguments.operands()[1], stats);
    if (trees.before == nullptr || trees.after == nullptr)
        return ExitStatus::failed;
    if (stats.cancelled())
        return endInterrupted(output);
    writeComparison(trees, arguments, output);
    // Freeing large trees takes as long as comparing them, so both are freed at once.
    const auto freeing =
        std::async(std::launch::async, [before = std::move(trees.before)]() mutable { before.reset(); });
    trees.after.reset();
    return ExitStatus::done;
}

} // namespace

constinit const Command compareCommand = {
    .name = "compare",
    .operands = "OLD NEW",
    .operandCount = {.minimum = 2, .maximum = 2},
    .options = compareOptions,
    .summary = "Shows what has grown between two scans, largest growth first.",
    .help = "\nOLD is a file from \"scan --save\". NEW is another one, or a folder, which is scanned now. "
            "Any list\n"
            "that \"open\" reads works too, but only saved scans can show that something was moved. A folder "
            "that\n"
            "is new or gone is one row, without the items that were moved into it or out of it.\n",
    .run = runCompare,
};

} // namespace brimvale::commandLine
