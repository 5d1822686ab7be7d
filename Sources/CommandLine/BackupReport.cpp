#include "CommandLine/BackupReport.h"

#include "CommandLine/JsonWriter.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::commandLine {

namespace {

void printFailures(const ArchiveResult &result) {
    for (const auto &[source, reason] : result.failed)
        printError(terminalText(source.path()) + ": " + terminalText(reason));
    for (const FileURL &file : result.differing)
        printError(terminalText(file.path()) + ": the copy does not hold the same bytes");
    if (!result.manifest && !result.items.empty() && !result.isCancelled)
        printError("the manifest could not be written, so this backup cannot be verified later");
}

void writeCopy(Output &output, std::string_view size, std::string_view name) {
    output.write(rightAligned(size, usualSizeWidth).append("  ").append(name).append("\n"));
}

void writeURL(JsonWriter &json, std::string_view name, const std::optional<FileURL> &url) {
    json.member(name, url ? std::optional(url->path()) : std::nullopt);
}

void writeURLs(JsonWriter &json, std::string_view name, const std::vector<FileURL> &urls) {
    json.key(name);
    json.beginArray();
    for (const FileURL &url : urls)
        json.value(url.path());
    json.end();
}

void writeItem(JsonWriter &json, const ArchivedItem &item) {
    json.beginObject();
    json.member("source", item.source.path());
    json.member("destination", item.destination.path());
    json.member("originalBytes", item.originalBytes);
    json.member("copiedBytes", item.copiedBytes);
    json.end();
}

void writePaths(JsonWriter &json, std::string_view name, const std::vector<std::string> &paths) {
    json.key(name);
    json.beginArray();
    for (const std::string &path : paths)
        json.value(path);
    json.end();
}

void listPaths(Output &output, std::string_view title, const std::vector<std::string> &paths) {
    for (const std::string &path : paths)
        output.write(std::string(title).append(terminalText(path)).append("\n"));
}

} // namespace

void printBackup(Output &output, const ArchiveResult &result) {
    if (!result.items.empty())
        writeCopy(output, "SIZE", "COPIED");
    for (const ArchivedItem &item : result.items)
        writeCopy(output, Fmt::byteFormatter(item.copiedBytes), terminalText(item.source.path()));
    if (!result.items.empty())
        output.write("\nBacked up to " + terminalText(result.destination.path()) + "\n");
    if (result.readableExport)
        output.write("A readable transcript was written alongside the database.\n");
    output.flush();
    printFailures(result);
}

void printBackupDocument(Output &output, const ArchiveResult &result) {
    JsonWriter json(output);
    json.beginObject();
    writeURL(json, "destination", result.destination);
    writeURLs(json, "copied", result.copied);
    json.key("failed");
    json.beginArray();
    for (const auto &[source, reason] : result.failed) {
        json.beginObject();
        json.member("url", source.path());
        json.member("reason", reason);
        json.end();
    }
    json.end();
    json.member("bytes", result.bytes);
    json.key("items");
    json.beginArray();
    for (const ArchivedItem &item : result.items)
        writeItem(json, item);
    json.end();
    writeURL(json, "readableExport", result.readableExport);
    writeURLs(json, "differing", result.differing);
    writeURL(json, "manifest", result.manifest);
    json.member("isCancelled", result.isCancelled);
    json.end();
    output.flush();
    printFailures(result);
}

void printVerification(Output &output, const BackupManifest::Verification &verification) {
    listPaths(output, "missing     ", verification.missing);
    listPaths(output, "changed     ", verification.changed);
    listPaths(output, "unreadable  ", verification.unreadable);
    listPaths(output, "extra       ", verification.extra);
    const auto count = static_cast<std::int64_t>(verification.verified);
    output.write(Fmt::count(count) + (count == 1 ? " file is" : " files are") + " as backed up.\n");
}

void printVerificationDocument(Output &output, const BackupManifest::Verification &verification) {
    JsonWriter json(output);
    json.beginObject();
    writePaths(json, "missing", verification.missing);
    writePaths(json, "changed", verification.changed);
    writePaths(json, "extra", verification.extra);
    writePaths(json, "unreadable", verification.unreadable);
    json.member("verified", static_cast<std::int64_t>(verification.verified));
    json.member("isCancelled", verification.isCancelled);
    json.end();
}

} // namespace brimvale::commandLine
