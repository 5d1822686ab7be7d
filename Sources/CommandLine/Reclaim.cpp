#include "CommandLine/Commands.h"

#include "CommandLine/ExpectedSpace.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Reclaim/ReclaimTexts.h"
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

constexpr std::array reclaimOptions = {
    Option{.name = "--names-in",
           .value = Option::Value::text,
           .valueName = "FOLDER",
           .help = "Look for other names of the same files in FOLDER."},
    hexOption,
    from0Option,
};

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
    json.key("links");
    json.beginArray();
    for (const Reclaim::Link &link : reclaim.links) {
        json.beginObject();
        json.member("bytes", link.bytes);
        if (link.otherName.empty())
            json.member("otherName", std::optional<std::string>());
        else
            json.path("otherName", link.otherName);
        json.end();
    }
    json.end();
    json.member("sharedElsewhere", reclaim.sharedElsewhere);
    json.member("heldBySnapshots", reclaim.inSnapshots);
    writeParts(json, "snapshots", "path", reclaim.snapshots);
    json.member("heldByPrograms", reclaim.inUse);
    writeParts(json, "programs", "name", reclaim.programs);
    json.member("unaskedPrograms", reclaim.unaskedPrograms);
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

/// The folder in which other names are looked for, if one was typed. Reports a path that is none, and returns
/// nothing then.
std::optional<LinkPlaces> linkPlacesIn(const Arguments &arguments) {
    const std::optional<std::string_view> typed = arguments.text("--names-in");
    if (!typed)
        return LinkPlaces{};
    const Result<FileURL> resolved = resolveGivenPath(*typed);
    const auto *url = std::get_if<FileURL>(&resolved);
    if (url == nullptr) {
        printPathError(*typed, std::get<FileError>(resolved));
        return std::nullopt;
    }
    if (!folderIdentity(url->path())) {
        printPathError(*typed, FileError::posix(errno == 0 ? ENOTDIR : errno));
        return std::nullopt;
    }
    return LinkPlaces{.folders = {url->path()}, .areDeep = true};
}

ExitStatus runReclaim(const Arguments &arguments, Output &output) {
    const auto given = givenPaths(arguments, reclaimCommand);
    if (const auto *wrong = std::get_if<ExitStatus>(&given))
        return *wrong;
    const auto items = existingItems(std::get<std::vector<std::string>>(given));
    if (!items)
        return ExitStatus::failed;
    const auto linkPlaces = linkPlacesIn(arguments);
    if (!linkPlaces)
        return ExitStatus::failed;
    ReclaimProgress progress;
    const Reclaim reclaim = reclaimShown(*items, progress, *linkPlaces);
    if (progress.cancelled.isSet()) {
        printError("interrupted");
        return ExitStatus::interrupted;
    }
    if (arguments.has("--json"))
        writeReclaim(output, reclaim);
    else
        for (const std::string &line : reclaimLines(reclaim, RemovalMode::deleteNow))
            output.write(terminalText(line) + "\n");
    return reclaim.unreadable > 0 ? ExitStatus::failed : ExitStatus::done;
}

} // namespace

constinit const Command reclaimCommand = {
    .name = "reclaim",
    .operands = "PATH…",
    .operandCount = {},
    .options = reclaimOptions,
    .summary = "Shows how much space deleting these paths would free.",
    .help =
        "\nCounts what nothing else holds, and apart from it what would stay: files with other names\n"
        "elsewhere, blocks that copies or snapshots also use (Btrfs, XFS, APFS), and files that a running\n"
        "program has open. A range means that compressed and tiny files take less than they count, that\n"
        "copies among these paths may have others elsewhere, or that programs of other users or in "
        "containers\n"
        "may have files open. Nothing is removed. If something could not be looked at, the exit status is "
        "1.\n",
    .run = runReclaim,
};

} // namespace brimvale::commandLine
