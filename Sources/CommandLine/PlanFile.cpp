#include "CommandLine/PlanFile.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
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

ExitStatus savePlan(const std::vector<CleanupEntry> &entries, RemovalMode mode, std::string_view typed,
                    Output &output) {
    const std::optional<FileURL> place = placeTyped(typed);
    if (!place)
        return ExitStatus::failed;
    const std::optional<MadePlan> made = makePlan(entries, mode);
    if (!made)
        return ExitStatus::interrupted;
    GrowingFile file(place->path(), Existing::stays, Readers::owner);
    writePlan(file, made->plan);
    if (const std::optional<FileError> failure = file.finish()) {
        if (failure->code == EEXIST)
            printError(terminalText(typed) + ": this file exists. A plan never replaces a file.");
        else
            printPathError(typed, *failure);
        return ExitStatus::failed;
    }
    const auto count = static_cast<std::int64_t>(made->plan.items.size());
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
