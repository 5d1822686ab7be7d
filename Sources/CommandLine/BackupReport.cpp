#include "CommandLine/BackupReport.h"

#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"

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
    for (const DifferingEntry &entry : result.differing)
        printError(terminalText(entry.url.path()) + ": " + terminalText(entry.text));
    for (const std::string &remark : result.remarks)
        printError(terminalText(remark));
}

void writeCopy(Output &output, std::string_view size, std::string_view name) {
    output.write(rightAligned(size, usualSizeWidth).append("  ").append(name).append("\n"));
}

void writeURL(JsonWriter &json, std::string_view name, const std::optional<FileURL> &url) {
    if (url)
        json.path(name, url->path());
    else
        json.member(name, std::optional<std::string>());
}

void writeItem(JsonWriter &json, const ArchivedItem &item) {
    json.beginObject();
    json.path("source", item.source.path());
    json.path("destination", item.destination.path());
    json.member("originalBytes", item.originalBytes);
    json.member("copiedBytes", item.copiedBytes);
    json.end();
}

void writeLines(JsonWriter &json, std::string_view name, const std::vector<std::string> &texts) {
    json.key(name);
    json.beginArray();
    for (const std::string &text : texts)
        json.value(text);
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
    std::vector<FileURL> differing;
    for (const DifferingEntry &entry : result.differing)
        differing.push_back(entry.url);
    JsonWriter json(output);
    json.beginObject();
    writeURL(json, "destination", result.destination);
    json.paths("copied", result.copied);
    json.key("failed");
    json.beginArray();
    for (const auto &[source, reason] : result.failed) {
        json.beginObject();
        json.path("url", source.path());
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
    json.paths("differing", differing);
    writeURL(json, "manifest", result.manifest);
    writeLines(json, "remarks", result.remarks);
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
    listPaths(output, "permission  ", verification.otherModes);
    const auto count = static_cast<std::int64_t>(verification.verified);
    output.write(Fmt::count(count) + (count == 1 ? " item is" : " items are") + " as backed up.\n");
}

void printVerificationDocument(Output &output, const BackupManifest::Verification &verification) {
    JsonWriter json(output);
    json.beginObject();
    json.paths("missing", verification.missing);
    json.paths("changed", verification.changed);
    json.paths("extra", verification.extra);
    json.paths("unreadable", verification.unreadable);
    json.paths("otherModes", verification.otherModes);
    json.member("verified", static_cast<std::int64_t>(verification.verified));
    json.member("isCancelled", verification.isCancelled);
    json.end();
}

} // namespace brimvale::commandLine
