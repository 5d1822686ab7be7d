#include "CommandLine/RemovalOutput.h"

#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/JsonWriter.h"

#include <optional>
#include <string>

namespace brimvale::commandLine {

namespace {

void writePromise(JsonWriter &json, const std::optional<FreePromise> &promise) {
    if (!promise)
        return json.member("promise", std::optional<std::string>());
    json.key("promise");
    json.beginObject();
    json.member("freesNow", promise->atLeast);
    json.member("freesAtMost", promise->atMost);
    json.key("holders");
    json.beginArray();
    for (const std::string &line : promise->holders)
        json.value(line);
    json.end();
    json.end();
}

void writeResult(Output &output, const RemovalResult &result) {
    JsonWriter json(output);
    json.beginObject();
    json.paths("succeeded", result.succeeded);
    writeReasons(json, "failed", result.failed);
    json.member("bytesFreed", result.bytesFreed);
    json.member("bytesMovedToTrash", result.bytesMovedToTrash);
    json.member("bytesDeleted", result.bytesDeleted);
    json.member("freeSpaceRemark", result.freeSpaceRemark);
    json.member("freeSpaceGrowth", result.freeSpaceGrowth);
    writePromise(json, result.promise);
    json.paths("needsAdmin", result.needsAdmin);
    json.member("needsAppManagement", result.needsAppManagement);
    json.key("partlyRemoved");
    json.beginArray();
    for (const PartialRemoval &part : result.partlyRemoved) {
        json.beginObject();
        json.path("url", part.url.path());
        json.member("entriesRemoved", part.entriesRemoved);
        json.member("entriesInAll", part.entriesInAll);
        json.member("bytesFreed", part.bytesFreed);
        json.end();
    }
    json.end();
    json.paths("goneAnyway", result.goneAnyway);
    writeReasons(json, "adminRemarks", result.adminRemarks);
    writeReasons(json, "remarks", result.remarks);
    json.end();
}

} // namespace

void writeReasons(JsonWriter &json, std::string_view key, const std::vector<RemovalResult::Failure> &items) {
    json.key(key);
    json.beginArray();
    for (const auto &[url, reason] : items) {
        json.beginObject();
        json.path("url", url.path());
        json.member("reason", reason);
        json.end();
    }
    json.end();
}

void reportRemoval(Output &output, const RemovalResult &result, bool isJson) {
    if (isJson)
        return writeResult(output, result);
    for (const FileURL &url : result.succeeded)
        output.write("removed  " + terminalText(url.path()) + "\n");
    output.write(RemovalReport::summary(result) + "\n");
    for (const RemovalResult::Failure &remark : result.remarks)
        output.write(terminalText(RemovalReport::failureLine(remark)) + "\n");
    if (!result.freeSpaceRemark.empty())
        output.write(terminalText(result.freeSpaceRemark) + "\n");
    output.flush();
    for (const RemovalResult::Failure &failure : result.failed)
        printError(terminalText(RemovalReport::failureLine(failure)));
    for (const PartialRemoval &part : result.partlyRemoved)
        printError(terminalText(RemovalReport::partLine(part)));
    for (const FileURL &url : result.needsAdmin)
        printError(terminalText(url.path()) + ": needs admin rights (see --as-admin)");
    for (const RemovalResult::Failure &remark : result.adminRemarks)
        printError(terminalText(RemovalReport::failureLine(remark)));
}

ExitStatus endUnbegunRemoval(Output &output, bool isJson, ExitStatus status) {
    if (isJson)
        writeResult(output, {});
    output.flush();
    printError(status == ExitStatus::interrupted ? "interrupted: nothing was removed"
                                                 : "nothing was removed");
    return status;
}

ExitStatus endRemoval(Output &output, const RemovalResult &result, const RemovalProgress &progress) {
    if (progress.cancelled.isSet()) {
        output.flush();
        printError("interrupted");
        return ExitStatus::interrupted;
    }
    return result.failed.empty() && result.needsAdmin.empty() ? ExitStatus::done : ExitStatus::failed;
}

} // namespace brimvale::commandLine
