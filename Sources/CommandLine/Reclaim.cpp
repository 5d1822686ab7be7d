#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Reclaim/ReclaimTexts.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/FileStatus.h"

#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array reclaimOptions = {hexOption, from0Option};

void writeParts(JsonWriter &json, std::string_view key, std::string_view name,
                const std::vector<Reclaim::Part> &parts) {
    json.key(key);
    json.beginArray();
    for (const Reclaim::Part &part : parts) {
        json.beginObject();
        json.path(name, part.name);
        json.member("bytes", part.bytes);
        json.end();
    }
    json.end();
}

void writeReclaim(Output &output, const Reclaim &reclaim) {
    JsonWriter json(output);
    json.beginObject();
    json.member("freesNow", reclaim.freesNow);
    json.member("freesAtMost", reclaim.freesAtMost());
    json.member("linkedElsewhere", reclaim.linkedElsewhere);
    json.member("filesLinkedElsewhere", reclaim.filesLinkedElsewhere);
    json.member("sharedElsewhere", reclaim.sharedElsewhere);
    json.member("heldBySnapshots", reclaim.inSnapshots);
    writeParts(json, "snapshots", "path", reclaim.snapshots);
    json.member("heldByPrograms", reclaim.inUse);
    writeParts(json, "programs", "name", reclaim.programs);
    json.member("files", reclaim.files);
    json.member("unreadable", reclaim.unreadable);
    json.end();
}

/// The items that the paths name. Reports each that is missing, and returns nothing then.
std::optional<std::vector<FileURL>> existingItems(const std::vector<std::string> &given) {
    std::vector<FileURL> items;
    bool isComplete = true;
    for (const std::string &typed : given) {
        Result<FileURL> resolved = resolveGivenPath(typed);
        if (const auto *url = std::get_if<FileURL>(&resolved); url != nullptr && !fileStatus(url->path()))
            resolved = FileError::posix(errno);
        if (const auto *error = std::get_if<FileError>(&resolved)) {
            printPathError(typed, *error);
            isComplete = false;
        } else {
            items.push_back(std::get<FileURL>(std::move(resolved)));
        }
    }
    return isComplete ? std::optional(std::move(items)) : std::nullopt;
}

ExitStatus runReclaim(const Arguments &arguments, Output &output) {
    const auto given = givenPaths(arguments, reclaimCommand);
    if (const auto *wrong = std::get_if<ExitStatus>(&given))
        return *wrong;
    const auto items = existingItems(std::get<std::vector<std::string>>(given));
    if (!items)
        return ExitStatus::failed;
    ReclaimProgress progress;
    Reclaim reclaim;
    {
        const Interruption interruption(progress.cancelled);
        const DrawnProgress drawn([&progress](const ProgressLine &line) {
            line.show("Looking at what would be freed: " + Fmt::count(progress.files) + " files");
        });
        reclaim = reclaimOf(*items, progress);
    }
    if (progress.cancelled.isSet()) {
        printError("interrupted");
        return ExitStatus::interrupted;
    }
    if (arguments.has("--json"))
        writeReclaim(output, reclaim);
    else
        for (const std::string &line : reclaimLines(reclaim))
            output.write(terminalText(line) + "\n");
    return reclaim.unreadable > 0 ? ExitStatus::failed : ExitStatus::done;
}

} // namespace

constinit const Command reclaimCommand = {
    .name = "reclaim",
    .operands = "PATH…",
    .operandCount = {},
    .options = reclaimOptions,
    .summary = "Tells how much deleting all these paths would free.",
    .help =
        "\nCounts what nothing else holds, and apart from it what would stay: files with other names\n"
        "elsewhere, blocks that copies or snapshots also use (Btrfs, XFS, APFS), and files that a running\n"
        "program has open. A range means that compressed files take less than they count, or that copies\n"
        "among these paths may have others elsewhere. Nothing is removed. If something could not be looked\n"
        "at, the exit status is 1.\n",
    .run = runReclaim,
};

} // namespace brimvale::commandLine
