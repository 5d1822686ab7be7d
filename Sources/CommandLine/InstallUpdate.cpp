#include "CommandLine/Commands.h"

#include "Core/Update/Installer.h"
#include "Core/Update/InstallerTool.h"
#include "Core/Update/UpdateEnvironment.h"
#include "Core/Update/UpdateInstallation.h"

#include <charconv>
#include <csignal>
#include <optional>
#include <string_view>

namespace brimvale::commandLine {

namespace {

/// The identifier of one process.
std::optional<std::int64_t> processIn(std::string_view text) {
    std::int64_t process = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
    if (error != std::errc() || end != text.data() + text.size() || process < 2)
        return std::nullopt;
    return process;
}

/// From now on only the end of the machine stops the exchange halfway, not the end of the session.
void ignoreSignals() {
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGPIPE})
        std::signal(signal, SIG_IGN);
}

ExitStatus runInstallUpdate(const Arguments &arguments, Output & /*output*/) {
    const std::string_view staged = arguments.operands()[0];
    const std::string_view current = arguments.operands()[1];
    const auto process = processIn(arguments.operands()[2]);
    if (!staged.starts_with('/') || !current.starts_with('/') || !process)
        return refuseUsage("it takes two absolute paths and the number of a process", &installUpdateCommand);
    ignoreSignals();
    const FileURL installed{std::string(current)};
    const Installation installation{.staged = FileURL(std::string(staged)),
                                    .current = installed,
                                    .executable = executableIn(installed),
                                    .process = *process,
                                    .log = installLog()};
    return installUpdate(installation, InstallerEnvironment::current(installation)) ? ExitStatus::done
                                                                                    : ExitStatus::failed;
}

} // namespace

constinit const Command installUpdateCommand = {
    .name = installCommandName,
    .operands = "STAGED-APP INSTALLED-APP PROCESS",
    .operandCount = {.minimum = 3, .maximum = 3},
    .summary = "Puts a downloaded update in place when the application has ended.",
    .help = "\nThe window starts it. It takes only newer releases that our own team signed.\n",
    .run = runInstallUpdate,
};

} // namespace brimvale::commandLine
