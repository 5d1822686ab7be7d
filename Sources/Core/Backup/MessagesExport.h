#pragma once

#include "Base/Date.h"
#include "Platform/Tools.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Makes a Messages database readable without Messages: a page of conversations that any browser shows. The
/// database is read by the system's own shell for such databases, and never written. Nothing here fails: what
/// cannot be read is no conversation.
namespace MessagesExport {

struct Message {
    std::string text; ///< well-formed UTF-8; empty for one that is only an attachment
    bool fromMe = false;
    Date date{};
    bool hasAttachment = false;
    std::string service; ///< as the database names it: "iMessage", "SMS"

    friend bool operator==(const Message &, const Message &) = default;
};

struct Conversation {
    std::string name; ///< well-formed UTF-8, never empty
    std::vector<Message> messages;

    friend bool operator==(const Conversation &, const Conversation &) = default;
};

/// How many messages of one conversation a transcript shows where nobody says otherwise.
constexpr int usualLimitPerChat = 5000;

/// The conversations of the database at an absolute path, the most recent one first, each with its oldest
/// `limitPerChat` messages. Chats of the same name are one conversation; reactions are left out. Empty where
/// the database is missing or unreadable. Blocks.
[[nodiscard]] std::vector<Conversation> read(const std::string &path, int limitPerChat,
                                             const Tools &tools = platformTools());

/// What a reading came to.
struct Reading {
    std::vector<Conversation> conversations;
    bool isComplete = false; ///< false where there is no database, or its shell could not read it to the end
};

/// The same, for whoever has to tell an empty database from one that cannot be read.
[[nodiscard]] Reading readChecked(const std::string &path, int limitPerChat,
                                  const Tools &tools = platformTools());

/// One self-contained HTML page: the conversations at the left, the messages of the chosen one at the right,
/// in local time. No text of a conversation becomes markup or script.
[[nodiscard]] std::string html(const std::vector<Conversation> &conversations);

/// The text of a message that is stored only as rich text, in the serialised form of an attributed string.
/// Nothing where it is not found whole, or is not UTF-8.
[[nodiscard]] std::optional<std::string> decodeAttributedBody(std::string_view data);

/// Where `pattern` first occurs in `bytes`.
[[nodiscard]] std::optional<std::size_t> indexOf(std::string_view bytes, std::string_view pattern);

} // namespace MessagesExport

} // namespace brimvale
