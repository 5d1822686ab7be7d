#include "Sample/MessagesDatabase.h"

#include "Base/Hex.h"
#include "Core/Text/Shell.h"
#include "Platform/Tools.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

namespace brimvale::sample {

namespace {

/// Bytes as a value of type TEXT, whatever they are.
std::string literal(const std::string &bytes) {
    return "CAST(x'" + hexString(bytes) + "' AS TEXT)";
}

std::string literal(const std::optional<std::string> &bytes) {
    return bytes ? literal(*bytes) : "NULL";
}

std::string blob(const std::string &bytes) {
    return bytes.empty() ? "NULL" : "x'" + hexString(bytes) + "'";
}

} // namespace

std::string attributedBodyOf(const std::string &text) {
    const std::size_t size = text.size();
    std::string count(1, static_cast<char>(size));
    if (size > 0x7F)
        count = {'\x81', static_cast<char>(size & 0xFF), static_cast<char>(size >> 8)};
    return std::string("\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01@\x84\x84\x84\x08NSString\x01\x94\x84\x01+") +
           count + text + "\x86\x84\x02iI\x01";
}

std::string statementsOf(const std::vector<Chat> &chats, const std::vector<Message> &messages) {
    std::string sql =
        "CREATE TABLE chat(ROWID INTEGER PRIMARY KEY, display_name TEXT, chat_identifier TEXT);"
        "CREATE TABLE message(ROWID INTEGER PRIMARY KEY, is_from_me INTEGER, date INTEGER, text TEXT,"
        " attributedBody BLOB, cache_has_attachments INTEGER, service TEXT, associated_message_type INTEGER);"
        "CREATE TABLE chat_message_join(chat_id INTEGER, message_id INTEGER);";
    for (const Chat &chat : chats)
        sql += "INSERT INTO chat VALUES(" + std::to_string(chat.id) + "," + literal(chat.displayName) + "," +
               literal(chat.identifier) + ");";
    int id = 0;
    for (const Message &message : messages) {
        sql += "INSERT INTO message VALUES(" + std::to_string(++id) + "," + std::to_string(message.fromMe) +
               "," + std::to_string(message.date) + "," + literal(message.text) + "," +
               blob(message.attributedBody) + "," + std::to_string(message.hasAttachment) + "," +
               literal(message.service) + "," + std::to_string(message.associatedType) + ");";
        sql += "INSERT INTO chat_message_join VALUES(" + std::to_string(message.chat) + "," +
               std::to_string(id) + ");";
    }
    return sql;
}

bool runStatements(const std::string &path, const std::string &statements) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    const auto result =
        Shell::runWithStatus(platformTools().databaseShell, {path, statements}, StandardError::withOutput);
    return result && result->hasSucceeded() && result->output.empty();
}

} // namespace brimvale::sample
