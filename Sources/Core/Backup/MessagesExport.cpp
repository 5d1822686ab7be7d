#include "Core/Backup/MessagesExport.h"

#include "Base/Hex.h"
#include "Base/Text.h"
#include "Core/Backup/DatabaseShell.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <utility>

namespace brimvale::MessagesExport {

namespace {

constexpr char separator = '\x01';

const std::string joinedRows = "FROM message m\n"
                               "JOIN chat_message_join cmj ON cmj.message_id = m.ROWID\n"
                               "JOIN chat c ON c.ROWID = cmj.chat_id\n"
                               "WHERE m.associated_message_type = 0\n";

const std::string query = "SELECT c.display_name, c.chat_identifier, m.is_from_me, m.date,\n"
                          "       COALESCE(m.text,''), COALESCE(hex(m.attributedBody),''),\n"
                          "       COALESCE(m.cache_has_attachments,0), COALESCE(m.service,'')\n" +
                          joinedRows + "ORDER BY c.ROWID, m.date;";

/// The bytes of all rows of the query. Every value counts, because in a hostile database any can be long.
std::string sizeQuery() {
    std::string bytes = "8"; // between the fields
    for (const char *column :
         {"c.display_name", "c.chat_identifier", "m.is_from_me", "m.date", "m.text", "m.attributedBody",
          "m.attributedBody", "m.cache_has_attachments", "m.service"}) // two digits per byte of a body
        bytes.append("+COALESCE(length(CAST(").append(column).append(" AS BLOB)),0)");
    return "SELECT total(" + bytes + ") " + joinedRows;
}

/// The fields of one line of the answer.
struct Row {
    std::string_view displayName, chatIdentifier, isFromMe, date, text, attributedBody, hasAttachments,
        service;
};

/// Cuts off the part of `rest` before its first separator; false where there is none.
bool takeFirst(std::string_view &rest, std::string_view &field) {
    const std::size_t end = rest.find(separator);
    if (end == std::string_view::npos)
        return false;
    field = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    return true;
}

/// Cuts off the part of `rest` after its last separator; false where there is none.
bool takeLast(std::string_view &rest, std::string_view &field) {
    const std::size_t end = rest.rfind(separator);
    if (end == std::string_view::npos)
        return false;
    field = rest.substr(end + 1);
    rest.remove_suffix(rest.size() - end);
    return true;
}

/// Nothing for an incomplete row, which happens where a message holds a line feed. A message may also hold
/// the separator (newer shells print that one in another way), so its text is whatever remains between the
/// fields at both ends.
std::optional<Row> rowOf(std::string_view line) {
    Row row;
    const bool isWhole = takeFirst(line, row.displayName) && takeFirst(line, row.chatIdentifier) &&
                         takeFirst(line, row.isFromMe) && takeFirst(line, row.date) &&
                         takeLast(line, row.service) && takeLast(line, row.hasAttachments) &&
                         takeLast(line, row.attributedBody);
    row.text = line;
    return isWhole ? std::optional(row) : std::nullopt;
}

std::string_view nameOf(const Row &row) {
    if (!row.displayName.empty())
        return row.displayName;
    return row.chatIdentifier.empty() ? std::string_view("Unknown") : row.chatIdentifier;
}

std::string textOf(std::string_view bytes) {
    return isValidUtf8(bytes) ? std::string(bytes) : displayText(bytes);
}

std::string textOf(const Row &row) {
    if (!row.text.empty() || row.attributedBody.empty())
        return textOf(row.text);
    const std::optional<std::string> body = bytesOfHex(row.attributedBody);
    return body ? decodeAttributedBody(*body).value_or("") : "";
}

/// The moment for a count since the start of 2001, UTC: in seconds in older databases, in nanoseconds in
/// newer ones. A count out of range becomes the first or last possible date.
Date dateOf(std::string_view text) {
    constexpr std::int64_t mostSeconds = 1'000'000'000'000;
    constexpr std::int64_t referenceSeconds = 978'307'200; // 2001-01-01 in Unix time
    constexpr std::int64_t perSecond = 1'000'000'000;
    std::int64_t count = 0;
    std::from_chars(text.data(), text.data() + text.size(), count);

    const std::int64_t unit = count <= mostSeconds ? perSecond : 1;
    std::int64_t nanoseconds = 0;
    if (__builtin_mul_overflow(count, unit, &nanoseconds) ||
        __builtin_add_overflow(nanoseconds, referenceSeconds * perSecond, &nanoseconds))
        return count < 0 ? Date::min() : Date::max();
    return Date(std::chrono::nanoseconds(nanoseconds));
}

/// Collects rows, which arrive chat by chat, into conversations.
class Collector {
public:
    explicit Collector(int limitPerChat) : limit_(static_cast<std::size_t>(std::max(limitPerChat, 0))) {}

    void add(const Row &row) {
        std::vector<Message> &messages = conversationOf(nameOf(row)).messages;
        if (messages.size() >= limit_)
            return;
        messages.push_back({textOf(row), row.isFromMe == "1", dateOf(row.date), row.hasAttachments == "1",
                            textOf(row.service)});
        bytes_ += sizeof(Message) + messages.back().text.size() + messages.back().service.size();
    }

    /// The memory of the conversations, approximately.
    [[nodiscard]] std::size_t bytes() const { return bytes_; }

    /// All conversations, the one with the most recent last message first.
    std::vector<Conversation> take() {
        const auto last = [](const Conversation &one) {
            return one.messages.empty() ? Date::min() : one.messages.back().date;
        };
        std::stable_sort(conversations_.begin(), conversations_.end(),
                         [&](const auto &a, const auto &b) { return last(a) > last(b); });
        return std::move(conversations_);
    }

private:
    Conversation &conversationOf(std::string_view name) {
        // Nearly every row has the same chat as the previous one.
        if (conversations_.empty() || name != currentName_) {
            if (!conversations_.empty())
                conversations_[current_].messages.shrink_to_fit();
            const auto [found, isNew] = indices_.try_emplace(std::string(name), conversations_.size());
            if (isNew) {
                conversations_.push_back({textOf(name), {}});
                bytes_ += sizeof(Conversation) + 2 * name.size();
            }
            current_ = found->second;
            currentName_ = name;
        }
        return conversations_[current_];
    }

    std::size_t limit_;
    std::size_t bytes_ = 0;
    std::vector<Conversation> conversations_;
    std::unordered_map<std::string, std::size_t> indices_; ///< by the name's bytes
    std::size_t current_ = 0;
    std::string currentName_;
};

/// The most that conversations may take in memory. A page of them can take six times as much, and no browser
/// shows such a page.
constexpr std::size_t mostBytesOfConversations = std::size_t{192} << 20;

} // namespace

std::vector<Conversation> read(const std::string &path, int limitPerChat, const Tools &tools) {
    return readChecked(path, limitPerChat, tools).conversations;
}

Reading readChecked(const std::string &path, int limitPerChat, const Tools &tools,
                    const StopFlag &cancelled) {
    Collector collector(limitPerChat);
    bool hasRows = false, hasValidRows = false, isTooMuch = false;
    DatabaseShell::Answer answer = DatabaseShell::ask(
        tools, path,
        {.tables = {"message", "chat", "chat_message_join"},
         .query = query,
         .sizeQuery = sizeQuery(),
         .separator = separator},
        [&](std::string_view line) {
            hasRows = true;
            if (const std::optional<Row> row = rowOf(line)) {
                hasValidRows = true;
                collector.add(*row);
                isTooMuch = collector.bytes() > mostBytesOfConversations;
            }
            return !isTooMuch;
        },
        cancelled);
    if (isTooMuch)
        answer.reason = "It holds more messages than a page can show.";
    if (answer.reason.empty() && hasRows && !hasValidRows)
        answer.reason = "The output of sqlite3 could not be understood.";
    if (answer.reason.empty() && cancelled.isSet())
        answer.reason = "It was cancelled.";
    return {answer.isTooLong ? std::vector<Conversation>() : collector.take(), answer.reason.empty(),
            std::move(answer.reason)};
}

} // namespace brimvale::MessagesExport
