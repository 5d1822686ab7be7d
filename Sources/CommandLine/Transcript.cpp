#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Backup/MessagesExport.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/AtomicFile.h"
#include "Platform/FileStatus.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

using MessagesExport::Conversation;
using MessagesExport::Message;

constexpr std::array transcriptOptions = {
    Option{"--limit", Option::Value::number, "N", "Show the oldest N messages of a conversation (5000)."},
    Option{"--output", Option::Value::text, "FILE", "Write the page into FILE, which is overwritten."},
};

int limitOf(const Arguments &arguments) {
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    return static_cast<int>(
        std::min(arguments.number("--limit").value_or(MessagesExport::usualLimitPerChat), most));
}

void writeMessage(JsonWriter &json, const Message &message) {
    json.beginObject();
    json.member("text", message.text);
    json.member("fromMe", message.fromMe);
    json.member("date", iso8601(message.date));
    json.member("hasAttachment", message.hasAttachment);
    json.member("service", message.service);
    json.end();
}

void writeConversations(Output &output, const std::vector<Conversation> &conversations) {
    JsonWriter json(output);
    json.beginArray();
    for (const Conversation &conversation : conversations) {
        json.beginObject();
        json.member("name", conversation.name);
        json.key("messages");
        json.beginArray();
        for (const Message &message : conversation.messages)
            writeMessage(json, message);
        json.end();
        json.end();
    }
    json.end();
}

/// Writes the page into the file that was asked for; what was in the way is reported on standard error.
bool writePage(std::string_view typed, const std::vector<Conversation> &conversations) {
    const auto place = resolveGivenPath(typed);
    const auto *error = std::get_if<FileError>(&place);
    std::optional<FileError> failure = error == nullptr ? std::nullopt : std::optional(*error);
    if (!failure) {
        GrowingFile page(std::get<FileURL>(place).path(), Existing::isReplaced, Readers::owner);
        MessagesExport::writePage(page, conversations);
        failure = page.finish();
    }
    if (failure)
        printPathError(typed, *failure);
    return !failure;
}

ExitStatus runTranscript(const Arguments &arguments, Output &output) {
    const std::string_view typed = arguments.operands().front();
    const auto place = resolveGivenPath(typed);
    const auto *error = std::get_if<FileError>(&place);
    if (error != nullptr || !fileStatus(std::get<FileURL>(place).path())) {
        printPathError(typed, error != nullptr ? *error : FileError::posix(errno));
        return ExitStatus::failed;
    }
    const StopFlag cancelled;
    const Interruption interruption(cancelled);
    const MessagesExport::Reading reading = MessagesExport::readChecked(
        std::get<FileURL>(place).path(), limitOf(arguments), platformTools(), cancelled);
    if (cancelled.isSet()) {
        printError("interrupted: nothing was printed");
        return ExitStatus::interrupted;
    }
    if (!reading.isComplete) {
        printError(terminalText(typed) + ": could not be fully read as a Messages database. " +
                   terminalText(reading.reason));
        if (reading.conversations.empty())
            return ExitStatus::failed;
    }

    const std::optional<std::string_view> page = arguments.text("--output");
    if (page && !writePage(*page, reading.conversations))
        return ExitStatus::failed;
    if (arguments.has("--json"))
        writeConversations(output, reading.conversations);
    else if (!page)
        MessagesExport::writePage(output, reading.conversations);
    return reading.isComplete ? ExitStatus::done : ExitStatus::failed;
}

} // namespace

constinit const Command transcriptCommand = {
    .name = "transcript",
    .operands = "DATABASE",
    .operandCount = {.minimum = 1, .maximum = 1},
    .options = transcriptOptions,
    .summary = "Makes a Messages database (chat.db) readable, as a page for any browser.",
    .help =
        "\nThe database is only read, by the system's sqlite3, and only where it has the plain tables of a\n"
        "Messages database. Reactions are left out. Without \"--output\" the page is printed.\n",
    .run = runTranscript,
};

} // namespace brimvale::commandLine
