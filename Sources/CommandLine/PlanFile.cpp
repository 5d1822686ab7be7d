#include "CommandLine/PlanFile.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/RemovalOutput.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/AtomicFile.h"

#include <cerrno>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>

namespace brimvale::commandLine {

namespace {

/// The place that was typed; reports on standard error if it is none.
std::optional<FileURL> placeTyped(std::string_view typed) {
    Result<FileURL> place = resolveGivenPath(typed);
    if (auto *url = std::get_if<FileURL>(&place))
        return std::move(*url);
    printPathError(typed, std::get<FileError>(place));
    return std::nullopt;
}

/// False after a failure, which is reported on standard error.
bool writePlanFile(const FileURL &place, const RemovalPlan &plan, std::string_view typed) {
    GrowingFile file(place.path(), Existing::stays, Readers::owner);
    writePlan(file, plan);
    const std::optional<FileError> failure = file.finish();
    if (failure && failure->code == EEXIST)
        printError(terminalText(typed) + ": this file exists. A plan never replaces a file.");
    else if (failure)
        printPathError(typed, *failure);
    return !failure;
}

void writeSaved(Output &output, const FileURL &place, std::int64_t count, const MadePlan &made) {
    JsonWriter json(output);
    json.beginObject();
    json.path("plan", place.path());
    json.member("items", count);
    writeReasons(json, "leftOut", made.leftOut);
    json.end();
}

} // namespace

std::optional<MadePlan> makePlan(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    const StopFlag stopped;
    const Interruption interruption(stopped);
    MadePlan made = planFor(entries, mode, stopped);
    if (!stopped.isSet())
        return made;
    printError("interrupted");
    return std::nullopt;
}

ExitStatus savePlan(const PlanToSave &plan, Output &output) {
    const std::optional<FileURL> place = placeTyped(plan.typed);
    if (!place)
        return ExitStatus::failed;
    std::optional<MadePlan> made = makePlan(plan.entries, plan.mode);
    if (!made)
        return ExitStatus::interrupted;
    if (!writePlanFile(*place, made->plan, plan.typed))
        return ExitStatus::failed;
    made->leftOut.insert(made->leftOut.end(), plan.refusals.begin(), plan.refusals.end());
    const auto count = static_cast<std::int64_t>(made->plan.items.size());
    if (plan.isJson) {
        writeSaved(output, *place, count, *made);
        return made->leftOut.empty() ? ExitStatus::done : ExitStatus::failed;
    }
    output.write("Wrote a plan of " + Fmt::counted(count, "item") + ". Nothing was removed.\n");
    output.flush();
    return reportLeftOut(*made);
}

ExitStatus reportLeftOut(const MadePlan &made) {
    for (const RemovalResult::Failure &one : made.leftOut)
        printError(terminalText(RemovalReport::failureLine(one)));
    return made.leftOut.empty() ? ExitStatus::done : ExitStatus::failed;
}

std::optional<RemovalPlan> planInFile(std::string_view typed) {
    const std::optional<FileURL> place = placeTyped(typed);
    if (!place)
        return std::nullopt;
    Result<RemovalPlan, std::string> read = planAt(place->path());
    if (auto *plan = std::get_if<RemovalPlan>(&read))
        return std::move(*plan);
    printError(terminalText(typed) + ": " + terminalText(std::get<std::string>(read)));
    return std::nullopt;
}

} // namespace brimvale::commandLine
