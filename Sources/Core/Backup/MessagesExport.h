#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
#include "Base/TextSink.h"
#include "Platform/Tools.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Makes a Messages database readable without Messages, as a page of conversations for any browser. The
/// system's own database shell reads the database and never writes to it. Nothing here fails: unreadable
/// conversations are left out.
namespace MessagesExport {

struct Message {
    std::string text; ///< well-formed UTF-8; empty for an attachment alone
    bool fromMe = false;
    Date date{};
    bool hasAttachment = false;
    std::string service; ///< the name in the database: "iMessage", "SMS"

    friend bool operator==(const Message &, const Message &) = default;
};

struct Conversation {
    std::string name; ///< well-formed UTF-8, never empty
    std::vector<Message> messages;

    friend bool operator==(const Conversation &, const Conversation &) = default;
};

/// The default number of messages of one conversation in a transcript.
constexpr int usualLimitPerChat = 5000;

/// The conversations of the database at an absolute path, the most recent one first, each with its oldest
/// `limitPerChat` messages. Chats of the same name are one conversation; reactions are left out. Empty where
/// the database is missing or unreadable. Blocks.
[[nodiscard]] std::vector<Conversation> read(const std::string &path, int limitPerChat,
                                             const Tools &tools = platformTools());

/// The result of reading a database.
struct Reading {
    std::vector<Conversation> conversations;
    bool isComplete = false; ///< false without a database, or if its shell could not read all of it
    std::string reason;      ///< why it is not complete, as a sentence
};

/// The same, and whether everything could be read. Ends early, and is not complete, once `cancelled` is set.
[[nodiscard]] Reading readChecked(const std::string &path, int limitPerChat,
                                  const Tools &tools = platformTools(), const StopFlag &cancelled = {});

/// Writes one self-contained HTML page, piece by piece: the conversations on the left, the messages of the
/// selected one on the right, in local time. Texts of a conversation never become markup or script. Not
/// complete once `cancelled` is set.
void writePage(TextSink &sink, const std::vector<Conversation> &conversations,
               const StopFlag &cancelled = {});

/// The text of a message that is stored only as rich text, a serialised attributed string. Nothing where the
/// text is incomplete or not UTF-8.
[[nodiscard]] std::optional<std::string> decodeAttributedBody(std::string_view data);

/// Where `pattern` first occurs in `bytes`.
[[nodiscard]] std::optional<std::size_t> indexOf(std::string_view bytes, std::string_view pattern);

} // namespace MessagesExport

} // namespace brimvale
