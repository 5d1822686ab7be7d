#include "CommandLine/Commands.h"

#include "CommandLine/TreeReport.h"

#include <array>
#include <optional>
#include <string>

namespace brimvale::commandLine {

namespace {

constexpr std::array openOptions = {depthOption, topOption, exportOption, outputOption, forceOption};

ExitStatus runOpen(const Arguments &arguments, Output &output) {
    if (const std::optional<std::string> fault = faultOfReport(arguments))
        return refuseUsage(*fault, &openCommand);
    return reportFile(arguments.operands().front(), arguments, output);
}

} // namespace

constinit const Command openCommand = {
    .name = "open",
    .operands = "FILE",
    .operandCount = {.minimum = 1, .maximum = 1},
    .options = openOptions,
    .summary =
        "Shows the tree in a file from \"scan --save\", \"scan --export\" (json or ncdu) or \"ncdu -o\".",
    .help = "\nThe tree may come from another machine. \"-\" reads a list from standard input. A list of\n"
            "ncdu also counts the space of the folders themselves.\n",
    .run = runOpen,
};

} // namespace brimvale::commandLine
