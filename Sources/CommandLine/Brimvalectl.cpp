#include "CommandLine/Brimvalectl.h"

#include "Base/Diagnostics.h"
#include "Base/Version.h"
#include "CommandLine/Command.h"
#include "CommandLine/Help.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Platform/FileSizeLimit.h"
#include "Platform/Folder.h"
#include "Platform/Host.h"
#include "Platform/SystemLog.h"
#include "Sample/Sample.h"

#include <array>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace brimvale::commandLine {

namespace {

constexpr std::array optionsBeforeCommand = {
    Option{"--system", Option::Value::text, "macos|linux", "Use the catalogs of that system."},
    Option{"--sample", Option::Value::attachedText, "new|remove",
           "Show a sample instead of this computer (new: rebuild it)."},
    Option{.name = "--help", .help = "Print this help."},
    Option{.name = "--version", .help = "Print the version."},
};

/// Selects the named system; false if there is no such system.
bool useSystemNamed(std::string_view name) {
    if (name != "macos" && name != "linux")
        return false;
    Host::useSystem(name == "macos" ? System::macOS : System::linux);
    return true;
}

ExitStatus removeSample(Output &output) {
    if (const std::optional<std::string> failure = sample::removeSample()) {
        printError(terminalText(*failure));
        return ExitStatus::failed;
    }
    output.write("The sample is removed\n");
    return ExitStatus::done;
}

/// Confines this run to the sample, or removes that. The status if the run ends with it.
std::optional<ExitStatus> handleSample(std::string_view value, Output &output) {
    const std::optional<sample::Wish> wish = sample::wishNamed(value);
    if (!wish)
        return refuseUsage("\"--sample\" takes new or remove, not " + inQuotes(value));
    if (*wish == sample::Wish::remove)
        return removeSample(output);
    const auto used = sample::useSample(Host::currentSystem(), *wish == sample::Wish::useNew);
    if (const auto *failure = std::get_if<std::string>(&used)) {
        printError(terminalText(*failure));
        return ExitStatus::failed;
    }
    printError(terminalText(sample::noteAbout(std::get<FileURL>(used), "brimvalectl")));
    return std::nullopt;
}

ExitStatus runProgram(std::span<const char *const> words, Output &output) {
    const auto parsed = Arguments::parse(words, programOptions(), Arguments::Order::optionsFirst);
    if (const auto *error = std::get_if<UsageError>(&parsed))
        return refuseUsage(*error);

    const auto &arguments = std::get<Arguments>(parsed);
    if (const auto system = arguments.text("--system"); system && !useSystemNamed(*system))
        return refuseUsage("\"--system\" takes macos or linux, not " + inQuotes(*system));
    if (arguments.has("--help")) {
        output.write(programHelp(programOptions()));
        return ExitStatus::done;
    }
    if (arguments.has("--version")) {
        output.write(std::string("brimvalectl ") + version + "\n");
        return ExitStatus::done;
    }
    if (const auto sample = arguments.text("--sample"))
        if (const std::optional<ExitStatus> status = handleSample(*sample, output))
            return *status;
    if (arguments.operands().empty())
        return refuseUsage("a command is missing");

    const std::span<const char *const> rest = arguments.operands();
    const std::string_view name = rest.front();
    const Command *command = commandNamed(name);
    if (command == nullptr)
        return refuseUsage("unknown command " + inQuotes(name));
    return run(*command, rest.subspan(1), output);
}

} // namespace

std::span<const Option> programOptions() {
    return optionsBeforeCommand;
}

int runBrimvalectl(std::span<const char *const> words) {
    setDiagnosticLog(writeToSystemLog);
    occupyStandardStreams();
    failAtFileSizeLimit();
    raiseDescriptorLimit();
    Output output(stdout);
    ExitStatus status = runProgram(words, output);
    if (const std::optional<FileError> failure = output.finish()) {
        printError("standard output: " + failure->localizedDescription);
        if (status == ExitStatus::done)
            status = ExitStatus::failed;
    }
    return static_cast<int>(status);
}

} // namespace brimvale::commandLine
