#include "Core/Backup/MessagesExport.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using MessagesExport::Conversation;
using MessagesExport::Message;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing::TemporaryFolder;

Date secondsAfterReference(std::int64_t seconds) {
    using namespace std::chrono;
    return sys_days(January / 1 / 2001) + std::chrono::seconds(seconds);
}

std::vector<std::string> textsOf(const Conversation &conversation) {
    std::vector<std::string> texts;
    for (const Message &message : conversation.messages)
        texts.push_back(message.text);
    return texts;
}

std::vector<std::string> namesOf(const std::vector<Conversation> &conversations) {
    std::vector<std::string> names;
    for (const Conversation &conversation : conversations)
        names.push_back(conversation.name);
    return names;
}

/// Tools whose database shell finds every database plain, notes its arguments, prints `answer`, whatever it
/// is asked, and then does `end`.
Tools shellThatPrints(const TemporaryFolder &folder, std::string_view answer,
                      const std::string &end = "exit 0") {
    Tools tools = platformTools();
    tools.databaseShell =
        folder.makeScript("shell", "case $* in *:memory:*) echo 0; exit;; esac\nprintf '%s|' \"$@\" >'" +
                                       folder.path("arguments") +
                                       "'\nprintf 'opened\\ntables\\ncolumns\\nmeasured\\nfits\\n'\ncat '" +
                                       folder.writeFile("answer", answer) + "'\n" + end);
    return tools;
}

} // namespace

TEST(MessagesExport, ReadsRealDatabase) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db");
    const std::int64_t nano = 1'000'000'000;
    if (!testing::makeDatabase(
            database,
            {{1, "Élan & friends", "chat1"},
             {2, "", "+49 123"},
             {3, std::nullopt, "+49 123"},
             {4, std::nullopt, ""},
             {5, "Nobody", "silent"}},
            {{.chat = 1, .text = "second", .date = 700'000'001, .fromMe = true, .service = "SMS"},
             {.chat = 1, .text = "first", .date = 700'000'000 * nano, .hasAttachment = true},
             {.chat = 1, .text = "Liked it", .date = 700'000'002, .associatedType = 2000},
             {.chat = 1, .text = std::nullopt, .attributedBody = testing::attributedBodyOf("rich\ntext 🎉")},
             {.chat = 1, .text = "", .attributedBody = "no such thing"},
             {.chat = 1, .text = "plain wins", .attributedBody = testing::attributedBodyOf("rich")},
             {.chat = 1, .text = "cut\nin two"},
             {.chat = 2, .text = "one", .date = 5},
             {.chat = 3, .text = "other", .date = 3},
             {.chat = 4, .text = "from nowhere", .date = 900'000'000}}))
        GTEST_SKIP() << "sqlite3 is not installed";

    const MessagesExport::Reading reading = MessagesExport::readChecked(database, 100);
    EXPECT_TRUE(reading.isComplete);
    const std::vector<Conversation> &conversations = reading.conversations;
    // By the last message; two chats of one name are one, and one without messages is none.
    ASSERT_THAT(namesOf(conversations), ElementsAre("Unknown", "Élan & friends", "+49 123"));
    EXPECT_THAT(textsOf(conversations[1]), ElementsAre("rich\ntext 🎉", "", "plain wins", "second", "first"));
    EXPECT_THAT(textsOf(conversations[2]), ElementsAre("one", "other"));
    const Date date = secondsAfterReference(700'000'000);
    EXPECT_EQ(conversations[1].messages[3],
              (Message{"second", true, date + std::chrono::seconds(1), false, "SMS"}));
    EXPECT_EQ(conversations[1].messages[4], (Message{"first", false, date, true, "iMessage"}));
    EXPECT_EQ(MessagesExport::read(database, 100), conversations);

    const auto limited = MessagesExport::read(database, 1);
    ASSERT_THAT(namesOf(limited), ElementsAre("Unknown", "Élan & friends", "+49 123"));
    EXPECT_THAT(textsOf(limited[1]), ElementsAre("rich\ntext 🎉"));
    EXPECT_THAT(namesOf(MessagesExport::read(database, 0)),
                ElementsAre("Élan & friends", "+49 123", "Unknown"));
}

TEST(MessagesExport, AcceptsAnyBytesAsText) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db");
    if (!testing::makeDatabase(database, {{1, "caf\xE9 \x02", "id"}},
                               {{.text = "before \x01 after", .fromMe = true, .service = "SMS"},
                                {.text = "\xF0\x9F ill-formed \xFF"},
                                {.text = std::string(30'000, '<')},
                                {.text = "|,\"'\\ \t\r \x1B[2J"}}))
        GTEST_SKIP() << "sqlite3 is not installed";
    const auto conversations = MessagesExport::read(database, 100);
    ASSERT_EQ(conversations.size(), 1U);
    EXPECT_THAT(conversations[0].name, StartsWith("caf\uFFFD "));
    const std::vector<std::string> texts = textsOf(conversations[0]);
    ASSERT_EQ(texts.size(), 4U);
    // Newer shells print a control character inside a value as two.
    EXPECT_THAT(texts[0], ::testing::AnyOf("before \x01 after", "before ^A after"));
    EXPECT_TRUE(conversations[0].messages[0].fromMe);
    EXPECT_EQ(conversations[0].messages[0].service, "SMS");
    EXPECT_EQ(texts[1], "\uFFFD ill-formed \uFFFD");
    EXPECT_EQ(texts[2].size(), 30'000U);
    EXPECT_THAT(texts[3], StartsWith("|,\"'\\ \t"));
}

TEST(MessagesExport, OpensReadOnlyAndParsesAnyOutput) {
    const TemporaryFolder folder;
    const std::string database = folder.writeFile("any.db", "");
    // Fields: name, identifier, from me, date, text, rich text, attachments, service.
    const std::string answer = "A\1a\0011\0015\1^A is no separator\1\0010\1SMS\n"
                               "\n"
                               "A\1a\1half a row\n"
                               "rest of it\1\0010\1SMS\n"
                               "A\1a\0010\1\1\1ZZ\0010\1iMessage\n"
                               "A\1a\0010\1not a number\1odd\1ABC\0011\1iMessage\n"
                               "B\1b\0010\0019223372036854775807\1late\1\0010\1\n"
                               "C\1c\0010\1-9223372036854775808\1early\1\0010\1";
    const Tools tools = shellThatPrints(folder, answer);
    const auto conversations = MessagesExport::read(database, 100, tools);
    ASSERT_THAT(namesOf(conversations), ElementsAre("B", "A", "C"));
    EXPECT_THAT(textsOf(conversations[1]), ElementsAre("^A is no separator", "", "odd"));
    EXPECT_TRUE(conversations[1].messages[2].date == secondsAfterReference(0));
    EXPECT_TRUE(conversations[1].messages[2].hasAttachment);
    EXPECT_TRUE(conversations[0].messages[0].date == Date::max());
    EXPECT_TRUE(conversations[2].messages[0].date == Date::min());

    const std::string arguments = testing::contentOf(folder.path("arguments"));
    EXPECT_THAT(arguments, StartsWith("-readonly|-separator|\x01|-batch|-bail|-init|/dev/null|-safe|-cmd|"));
    EXPECT_THAT(arguments, HasSubstr("|" + database +
                                     "|SELECT c.display_name, c.chat_identifier, "
                                     "m.is_from_me, m.date,\n"));
    EXPECT_THAT(arguments, HasSubstr("\nORDER BY c.ROWID, m.date;|"));
}

TEST(MessagesExport, TellsWhyItIsNotComplete) {
    const TemporaryFolder folder;
    const std::string garbage = folder.writeFile("garbage.db", std::string(5000, 'x'));
    const std::string row = "A\1a\0011\0015\1text\1\0010\1SMS\n";
    Tools none = platformTools();
    none.databaseShell = folder.path("missing");
    struct Case {
        Tools tools;
        std::size_t conversations;
        std::string reason;
    };
    const TemporaryFolder places[4];
    for (const Case &one :
         {Case{platformTools(), 0, "sqlite3 can’t read it as a database."},
          Case{none, 0, "sqlite3 is not installed."},
          // What was printed before a shell failed is kept, and that it failed is told.
          Case{shellThatPrints(places[0], row, "exit 1"), 1, "sqlite3 could not read all of it."},
          Case{shellThatPrints(places[1], row, "kill -9 $$"), 1,
               "sqlite3 was stopped before it had read everything."},
          // Boxes, as a start file may ask for.
          Case{shellThatPrints(places[2], "┌──────┐\n│ text │\n└──────┘\n"), 0,
               "The output of sqlite3 could not be understood."},
          Case{shellThatPrints(places[3], ""), 0, ""}}) {
        const auto reading = MessagesExport::readChecked(garbage, 100, one.tools);
        EXPECT_EQ(reading.conversations.size(), one.conversations) << one.reason;
        EXPECT_EQ(reading.reason, one.reason);
        EXPECT_EQ(reading.isComplete, one.reason.empty());
    }
}

} // namespace brimvale
