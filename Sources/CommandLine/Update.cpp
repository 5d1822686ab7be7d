#include "CommandLine/Commands.h"

#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/JsonWriter.h"
#include "Core/Update/UpdateAddress.h"
#include "Core/Update/Updater.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace brimvale::commandLine {

namespace {

using namespace updateState;

constexpr std::array ownOptions = {
    Option{"--feed", Option::Value::text, "URL", "Use this feed instead (https, or http on this machine)."},
};

/// The state at the end of a check of the feed.
UpdateState check(UpdateEnvironment environment) {
    // Qt would warn about a locale that is not UTF-8, which would only distract here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    int argumentCount = 1;
    std::array<char, 12> name{"brimvalectl"};
    std::array<char *, 2> arguments = {name.data(), nullptr};
    const QCoreApplication application(argumentCount, arguments.data());
    Updater updater(std::move(environment));
    QObject::connect(&updater, &Updater::stateChanged, &application, [&] {
        if (!std::holds_alternative<Checking>(*updater.state))
            QCoreApplication::exit();
    });
    updater.check(false);
    QCoreApplication::exec();
    return *updater.state;
}

void writeJson(Output &output, const UpdateState &state) {
    const auto *available = std::get_if<Available>(&state);
    const auto *failed = std::get_if<Failed>(&state);
    JsonWriter json(output);
    const auto memberOrNull = [&](std::string_view name, const auto &value) {
        json.key(name);
        if (value)
            json.value(*value);
        else
            json.null();
    };
    json.beginObject();
    json.member("state", available != nullptr ? "available" : failed != nullptr ? "failed" : "upToDate");
    memberOrNull("version", available != nullptr ? &available->version : nullptr);
    memberOrNull("build", available != nullptr ? &available->build : nullptr);
    memberOrNull("notes", available != nullptr ? available->notes : std::nullopt);
    memberOrNull("message", failed != nullptr ? &failed->message : nullptr);
    json.end();
}

void writeState(Output &output, const UpdateState &state) {
    if (std::holds_alternative<UpToDate>(state))
        output.write("Brimvale is up to date\n");
    const auto *available = std::get_if<Available>(&state);
    if (available == nullptr)
        return;
    output.write("Brimvale " + terminalText(available->version) + " (build " +
                 std::to_string(available->build) + ") is available\n");
    for (std::string_view notes = available->notes ? *available->notes : std::string_view();
         !notes.empty();) {
        const std::size_t end = std::min(notes.find('\n'), notes.size());
        output.write(terminalText(notes.substr(0, end)) + "\n");
        notes.remove_prefix(std::min(end + 1, notes.size()));
    }
}

ExitStatus runUpdate(const Arguments &arguments, Output &output) {
    UpdateEnvironment environment = UpdateEnvironment::current();
    if (const auto feed = arguments.text("--feed")) {
        environment.feedURL = QUrl(QString::fromUtf8(feed->data(), static_cast<qsizetype>(feed->size())));
        if (!isSafeUpdateURL(environment.feedURL))
            return refuseUsage("\"--feed\" takes an https address, not " + inQuotes(*feed), &updateCommand);
    }
    const UpdateState state = check(std::move(environment));
    if (arguments.has("--json"))
        writeJson(output, state);
    else
        writeState(output, state);
    if (const auto *failed = std::get_if<Failed>(&state)) {
        printError("could not update: " + terminalText(failed->message));
        return ExitStatus::failed;
    }
    return ExitStatus::done;
}

} // namespace

constinit const Command updateCommand = {
    .name = "update",
    .operands = "",
    .operandCount = {.maximum = 0},
    .options = ownOptions,
    .summary = "Checks for a newer version of Brimvale.",
    .help = "\nNothing is installed. Install updates in the window, or with the system's package manager.\n",
    .run = runUpdate,
};

} // namespace brimvale::commandLine
