#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/JsonWriter.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/TerminalText.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"

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

/// Measures one path and prints its size, or returns the reason for the failure.
std::optional<FileError> measureOperand(std::string_view typed, const ScanOptions &scanOptions,
                                        const StopFlag &cancelled, Report &report) {
    const auto place = placeToMeasure(typed, scanOptions.skippedPaths);
    if (const auto *error = std::get_if<FileError>(&place))
        return *error;
    const std::string &path = std::get<FileURL>(place).path();
    report.add(typed, path, DiskScanner::quickSize(path, scanOptions, cancelled),
               scanOptions.skippedPaths.contains(path));
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
        if (const std::optional<FileError> fault = measureOperand(typed, scanOptions, cancelled, report)) {
            printPathError(typed, *fault);
            status = ExitStatus::failed;
        }
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
    .help = "\nA link counts itself, and a file with several names counts once a name. Other volumes and\n"
            "system-managed folders are not entered.\n",
    .run = runSize,
};

} // namespace brimvale::commandLine
