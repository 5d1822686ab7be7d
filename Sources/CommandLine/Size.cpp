#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/JsonWriter.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array sizeOptions = {hexOption, from0Option};

/// Prints the measured paths one after another, as a table or as a JSON array.
class Report {
public:
    Report(Output &output, bool isJson) : output_(output), json_(output), isJson_(isJson) {
        if (isJson_)
            json_.beginArray();
    }

    void add(std::string_view typed, const std::string &path, std::int64_t size, bool isSkipped) {
        if (isJson_) {
            json_.beginObject();
            json_.path("path", path);
            json_.member("size", size);
            json_.end();
            return;
        }
        if (!std::exchange(hasTitles_, true))
            writeRow("SIZE", "PATH");
        if (isSkipped)
            writeRow("–", terminalText(typed) + "  [skipped]");
        else
            writeRow(Fmt::byteFormatter(size), terminalText(typed));
        output_.flush();
    }

    void finish() {
        if (isJson_)
            json_.end();
    }

private:
    void writeRow(std::string_view size, std::string_view path) {
        output_.write(rightAligned(size, usualSizeWidth));
        output_.write("  ");
        output_.write(path);
        output_.write("\n");
    }

    Output &output_;
    JsonWriter json_;
    bool isJson_;
    bool hasTitles_ = false;
};

/// What was left out because it could not be read, as a message for the path.
std::string leftOutText(std::string_view typed, std::int64_t unreadable) {
    return terminalText(typed) + ": the size leaves out " + Fmt::count(unreadable) +
           (unreadable == 1 ? " item" : " items") + " that could not be read";
}

/// Measures one path and prints its size, or returns the reason for the failure. `leftOut` gets the number of
/// items that could not be read.
std::optional<FileError> measureOperand(std::string_view typed, const ScanOptions &scanOptions,
                                        const StopFlag &cancelled, Report &report, std::int64_t &leftOut) {
    const auto place = placeToMeasure(typed, scanOptions.skippedPaths);
    if (const auto *error = std::get_if<FileError>(&place))
        return *error;
    const std::string &path = std::get<FileURL>(place).path();
    const DiskScanner::QuickFigures figures = DiskScanner::quickFigures(path, scanOptions, cancelled);
    report.add(typed, path, figures.bytes, scanOptions.skippedPaths.contains(path));
    leftOut = figures.unreadable;
    return std::nullopt;
}

ExitStatus runSize(const Arguments &arguments, Output &output) {
    const auto given = givenPaths(arguments, sizeCommand);
    if (const auto *wrong = std::get_if<ExitStatus>(&given))
        return *wrong;
    const ScanOptions scanOptions = ScanOptions::standard();
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    Report report(output, arguments.has("--json"));
    ExitStatus status = ExitStatus::done;
    for (const std::string &typed : std::get<std::vector<std::string>>(given)) {
        if (cancelled.isSet())
            break;
        std::int64_t leftOut = 0;
        const std::optional<FileError> fault = measureOperand(typed, scanOptions, cancelled, report, leftOut);
        if (fault)
            printPathError(typed, *fault);
        else if (leftOut > 0)
            printError(leftOutText(typed, leftOut));
        if (fault || leftOut > 0)
            status = ExitStatus::failed;
    }
    report.finish();
    return cancelled.isSet() ? endInterrupted(output) : status;
}

} // namespace

constinit const Command sizeCommand = {
    .name = "size",
    .operands = "PATH…",
    .operandCount = {},
    .options = sizeOptions,
    .summary = "Prints the allocated size of each path.",
    .help = "\nA link counts itself, and a file with several names counts once for each. Other volumes and\n"
            "system-managed folders are not entered. Items that can't be read are left out; then a message\n"
            "says so and the exit status is 1.\n",
    .run = runSize,
};

} // namespace brimvale::commandLine
