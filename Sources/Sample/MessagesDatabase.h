#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale::sample {

/// A message in a database like that of Messages.
struct Message {
    int chat = 1;
    std::optional<std::string> text; ///< any bytes
    std::int64_t date = 700'000'000; ///< seconds since 2001, or nanoseconds
    std::string attributedBody = {}; ///< none where empty
    bool fromMe = false;
    bool hasAttachment = false;
    std::string service = "iMessage";
    int associatedType = 0; ///< other than 0 for a reaction
};

struct Chat {
    int id = 1;
    std::optional<std::string> displayName;
    std::string identifier;
};

/// Text as it is kept in a message that has only rich text.
[[nodiscard]] std::string attributedBodyOf(const std::string &text);

/// The statements that make such a database.
[[nodiscard]] std::string statementsOf(const std::vector<Chat> &chats, const std::vector<Message> &messages);

/// Runs statements in the system's own sqlite3 on the database at `path`. False where there is none or it
/// fails.
[[nodiscard]] bool runStatements(const std::string &path, const std::string &statements);

} // namespace brimvale::sample
