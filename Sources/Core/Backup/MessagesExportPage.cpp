#include "Core/Backup/MessagesExport.h"

#include "Core/Backup/TranscriptStyle.h"
#include "Platform/LocalTime.h"

#include <QString>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace brimvale::MessagesExport {

namespace {

/// The first character, as a reader sees it, in capitals: "É" of "élan", a whole flag of two code points.
std::string capitalInitial(const std::string &name) {
    constexpr std::size_t enough = 256; // of bytes; a hostile name can be very long
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme,
                                   QString::fromStdString(name.substr(0, enough)));
    const qsizetype end = characters.toNextBoundary();
    return characters.string().left(std::max<qsizetype>(end, 0)).toUpper().toStdString();
}

constexpr std::string_view headBeforeStyle =
    "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
    "<title>Messages archive</title>\n<style>\n";
constexpr std::string_view headAfterStyle = "</style>\n</head>\n<body>\n";

constexpr std::string_view tail = "</main>\n<script>\n"
                                  "const chats = document.querySelectorAll('.chat');\n"
                                  "const panes = document.querySelectorAll('.pane');\n"
                                  "for (const chat of chats)\n"
                                  "  chat.addEventListener('click', () => {\n"
                                  "    for (const one of chats)\n"
                                  "      one.classList.toggle('active', one === chat);\n"
                                  "    for (const pane of panes)\n"
                                  "      pane.classList.toggle('active', pane.id === chat.dataset.target);\n"
                                  "  });\n"
                                  "</script>\n</body>\n</html>\n";

/// The page, as far as it is written.
class Page {
public:
    explicit Page(TextSink &sink) : sink_(sink) {}

    Page &append(std::string_view text) {
        sink_.write(text);
        return *this;
    }

private:
    TextSink &sink_;
};

/// The number of messages that a browser lays out together, when they come into view. Laying out all of a
/// long conversation at once would take a minute.
constexpr std::size_t chunkSize = 200;
/// The approximate height of a message in pixels, for the scroll bar before the layout.
constexpr std::size_t usualHeight = 44;

/// The escaped form of a character that has a meaning in markup; empty for any other.
std::string_view replacementOf(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    case '\n':
        return "<br>";
    default:
        return {};
    }
}

/// Adds text that a browser only displays.
void addEscaped(Page &page, std::string_view text) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view replacement = replacementOf(text[i]);
        if (replacement.empty())
            continue;
        page.append(text.substr(start, i - start)).append(replacement);
        start = i + 1;
    }
    page.append(text.substr(start));
}

std::string longDay(const LocalTime &time) {
    constexpr std::array<const char *, 7> weekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                      "Thursday", "Friday", "Saturday"};
    constexpr std::array<const char *, 12> months = {"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
    return std::string(weekdays[static_cast<std::size_t>(time.weekday)]) + ", " + std::to_string(time.day) +
           " " + months[static_cast<std::size_t>(time.month - 1)] + " " + std::to_string(time.year);
}

/// "1 May 2024".
std::string shortDay(const LocalTime &time) {
    constexpr std::array<const char *, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return std::to_string(time.day) + " " + months[static_cast<std::size_t>(time.month - 1)] + " " +
           std::to_string(time.year);
}

/// The id that links a button to its pane: a number, because names may hold anything.
std::string paneId(std::size_t index) {
    return "pane-" + std::to_string(index);
}

std::string_view activeFirst(std::size_t index) {
    return index == 0 ? " active" : "";
}

void addButton(Page &page, const Conversation &conversation, std::size_t index, const LocalTimeZone &zone) {
    page.append("<button type=\"button\" class=\"chat").append(activeFirst(index));
    page.append("\" data-target=\"").append(paneId(index)).append("\"><span class=\"avatar\">");
    addEscaped(page, capitalInitial(conversation.name));
    page.append("</span><span class=\"who\"><b>");
    addEscaped(page, conversation.name);
    page.append("</b><i>").append(std::to_string(conversation.messages.size()));
    page.append(" messages</i></span><span class=\"when\">");
    if (!conversation.messages.empty())
        page.append(shortDay(zone.at(conversation.messages.back().date)));
    page.append("</span></button>\n");
}

void addList(Page &page, const std::vector<Conversation> &conversations, const LocalTimeZone &zone) {
    std::size_t count = 0;
    for (const Conversation &conversation : conversations)
        count += conversation.messages.size();
    page.append("<aside>\n<div class=\"hdr\">").append(std::to_string(count));
    page.append(" messages<br>Exported by Brimvale</div>\n");
    for (std::size_t i = 0; i < conversations.size(); ++i)
        addButton(page, conversations[i], i, zone);
    page.append("</aside>\n");
}

void addMessage(Page &page, const Message &message) {
    page.append(message.fromMe ? "<div class=\"row me\">" : "<div class=\"row\">");
    page.append(message.service == "SMS" ? "<div class=\"bubble sms\">" : "<div class=\"bubble\">");
    addEscaped(page, message.text);
    if (message.hasAttachment)
        page.append("<i class=\"att\">Attachment</i>");
    page.append("</div></div>\n");
}

void beginChunk(Page &page, std::size_t count) {
    page.append("<div style=\"content-visibility:auto;contain-intrinsic-height:auto ");
    page.append(std::to_string(count * usualHeight)).append("px\">\n");
}

void addPane(Page &page, const Conversation &conversation, std::size_t index, const LocalTimeZone &zone,
             const StopFlag &cancelled) {
    page.append("<section class=\"pane").append(activeFirst(index));
    page.append("\" id=\"").append(paneId(index)).append("\">\n<header>");
    addEscaped(page, conversation.name);
    page.append("</header>\n<div class=\"scroll\">\n");
    const std::vector<Message> &messages = conversation.messages;
    std::optional<LocalTime> day;
    for (std::size_t i = 0; i < messages.size() && !cancelled.isSet(); ++i) {
        if (i % chunkSize == 0)
            beginChunk(page, std::min(chunkSize, messages.size() - i));
        const LocalTime time = zone.at(messages[i].date);
        if (!day || !day->isSameDayAs(time))
            page.append("<div class=\"daysep\"><span>").append(longDay(time)).append("</span></div>\n");
        day = time;
        addMessage(page, messages[i]);
        if ((i + 1) % chunkSize == 0 || i + 1 == messages.size())
            page.append("</div>\n");
    }
    page.append("</div>\n</section>\n");
}

} // namespace

void writePage(TextSink &sink, const std::vector<Conversation> &conversations, const StopFlag &cancelled) {
    Page page(sink);
    page.append(headBeforeStyle).append(transcriptStyle).append(headAfterStyle);
    const LocalTimeZone zone;
    addList(page, conversations, zone);
    page.append("<main>\n");
    for (std::size_t i = 0; i < conversations.size(); ++i)
        addPane(page, conversations[i], i, zone, cancelled);
    page.append(tail);
}

} // namespace brimvale::MessagesExport
