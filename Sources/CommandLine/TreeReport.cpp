#include "CommandLine/TreeReport.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TreeTable.h"
#include "Core/Export/JsonListing.h"
#include "Core/Export/Listing.h"
#include "Core/Export/SavedScan.h"
#include "Core/Export/TreeLimits.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/AtomicFile.h"
#include "Platform/FileStatus.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <unistd.h>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

/// The bytes of standard input.
class StandardInput final : public ByteSource {
public:
    [[nodiscard]] std::optional<std::string_view> next() override {
        for (;;) {
            const ssize_t count = read(STDIN_FILENO, buffer_.data(), buffer_.size());
            if (count >= 0)
                return std::string_view(buffer_.data(), static_cast<std::size_t>(count));
            if (errno != EINTR)
                return std::nullopt;
        }
    }

private:
    std::vector<char> buffer_ = std::vector<char>(std::size_t{1} << 18);
};

/// Says that the tree is from a file, and what that says about its origin: "… From server, ncdu 1.18,
/// 2026-03-01T09:30:00Z".
std::string importLine(const ScanOrigin &origin) {
    std::string line = "Imported: nothing here is on this disk.";
    for (const std::string &part :
         {origin.host, origin.program, origin.date ? iso8601(*origin.date) : std::string()})
        if (!part.empty())
            line.append(line.ends_with('.') ? " From " : ", ").append(terminalText(part));
    return line.append("\n");
}

void writeSummary(Output &output, const ReportedTree &tree) {
    std::string line = Fmt::counted(tree.root.fileCount, "file");
    line.append(" in ").append(Fmt::counted(tree.root.dirCount(), "folder"));
    line.append(", ").append(Fmt::byteFormatter(tree.root.size)).append(" allocated");
    if (tree.origin.unreadable > 0)
        line.append(", ").append(Fmt::count(tree.origin.unreadable)).append(" unreadable");
    if (tree.elapsed) {
        std::array<char, 32> seconds{};
        std::snprintf(seconds.data(), seconds.size(), ", %.2f s", *tree.elapsed);
        line.append(seconds.data());
    }
    output.write("\n");
    output.write(line.append("\n"));
    if (tree.root.isImported())
        output.write(importLine(tree.origin));
}

void writeDocument(Output &output, const ReportedTree &tree, const TreeLimits &limits) {
    JsonWriter json(output);
    json.beginObject();
    if (tree.root.isImported())
        writeOrigin(json, tree.origin);
    writeTreeAndTotals(json, tree.root, limits, tree.origin.unreadable);
    if (tree.elapsed)
        json.member("elapsed", *tree.elapsed);
    json.end();
}

Existing existingOf(const Arguments &arguments) {
    return arguments.has(forceOption.name) ? Existing::isReplaced : Existing::stays;
}

void printOutputError(std::string_view typed, const FileError &error) {
    if (error.code != EEXIST)
        return printPathError(typed, error);
    printError(terminalText(typed) + ": this file exists. Use --force to replace it.");
}

/// Writes the file that was typed. Reports a failure on standard error.
template<class Write>
ExitStatus writeFile(std::string_view typed, const Arguments &arguments, Write write) {
    const auto place = resolveGivenPath(typed);
    const auto *url = std::get_if<FileURL>(&place);
    if (url == nullptr) {
        printPathError(typed, std::get<FileError>(place));
        return ExitStatus::failed;
    }
    GrowingFile file(url->path(), existingOf(arguments));
    write(file);
    const std::optional<FileError> failure = file.finish();
    if (failure)
        printOutputError(typed, *failure);
    return failure ? ExitStatus::failed : ExitStatus::done;
}

ExitStatus exportTree(const ReportedTree &tree, ListingFormat format, const Arguments &arguments,
                      Output &output) {
    const std::optional<std::string_view> typed = arguments.text(outputOption.name);
    if (typed)
        return writeFile(*typed, arguments,
                         [&](TextSink &file) { writeListing(file, tree.root, tree.origin, format); });
    writeListing(output, tree.root, tree.origin, format);
    return ExitStatus::done;
}

} // namespace

std::optional<std::string> faultOfReport(const Arguments &arguments) {
    const std::optional<std::string_view> format = arguments.text(exportOption.name);
    if (format && !listingFormatNamed(*format))
        return "\"--export\" takes csv, json or ncdu, not " + inQuotes(*format);
    if (format && arguments.has("--json"))
        return "\"--export\" and \"--json\" can't be combined";
    for (const Option &limit : {depthOption, topOption})
        if (format && arguments.has(limit.name))
            return "\"--export\" lists the whole tree, without " + inQuotes(limit.name);
    if (!format && arguments.has(outputOption.name))
        return "\"--output\" needs \"--export\"";
    return std::nullopt;
}

bool canWriteReport(const Arguments &arguments) {
    for (const Option &option : {outputOption, saveOption}) {
        const std::optional<std::string_view> typed = arguments.text(option.name);
        if (!typed || arguments.has(forceOption.name))
            continue;
        const auto place = resolveGivenPath(*typed);
        const auto *url = std::get_if<FileURL>(&place);
        if (url == nullptr || !fileStatus(url->path()))
            continue;
        printOutputError(*typed, FileError::posix(EEXIST));
        return false;
    }
    return true;
}

ExitStatus saveTree(const ReportedTree &tree, const Arguments &arguments) {
    return writeFile(*arguments.text(saveOption.name), arguments,
                     [&](TextSink &file) { writeSavedScan(file, tree.root, tree.origin); });
}

ExitStatus reportTree(const ReportedTree &tree, const Arguments &arguments, Output &output) {
    if (const auto format = arguments.text(exportOption.name))
        return exportTree(tree, *listingFormatNamed(*format), arguments, output);
    const bool isJson = arguments.has("--json");
    const TreeLimits usual = isJson ? TreeLimits{} : TreeLimits{.depth = 2, .top = 10};
    const TreeLimits limits{.depth = arguments.number(depthOption.name).value_or(usual.depth),
                            .top = arguments.number(topOption.name).value_or(usual.top)};
    if (isJson) {
        writeDocument(output, tree, limits);
    } else {
        writeTreeTable(output, tree.root, limits);
        writeSummary(output, tree);
    }
    return ExitStatus::done;
}

std::optional<ImportedTree> treeInFile(std::string_view typed) {
    Result<ImportedTree, ImportFault> read = ImportFault();
    if (typed == "-") {
        StandardInput input;
        read = readListing(input);
    } else {
        const auto place = resolveGivenPath(typed);
        if (const auto *error = std::get_if<FileError>(&place)) {
            printPathError(typed, *error);
            return std::nullopt;
        }
        read = readTreeAt(std::get<FileURL>(place).path());
    }
    if (auto *tree = std::get_if<ImportedTree>(&read))
        return std::move(*tree);
    printError((typed == "-" ? "standard input" : terminalText(typed)) + ": " +
               std::get<ImportFault>(read).sentence);
    return std::nullopt;
}

ExitStatus reportFile(std::string_view typed, const Arguments &arguments, Output &output) {
    std::optional<ImportedTree> tree = treeInFile(typed);
    if (!tree)
        return ExitStatus::failed;
    return reportTree({*tree->root, std::move(tree->origin)}, arguments, output);
}

} // namespace brimvale::commandLine
