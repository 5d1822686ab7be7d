#include "CommandLine/Program.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace brimvale::testing {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(Transcript, WritesHtmlOrJson) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db");
    if (!makeDatabase(database, {{1, "Team", "id"}},
                      {{.text = "one <b>", .fromMe = true, .hasAttachment = true, .service = "SMS"},
                       {.text = "two", .date = 700'000'001}}))
        GTEST_SKIP() << "sqlite3 is not installed";

    const Outcome printed = runProgram({"transcript", database});
    EXPECT_EQ(printed.status, 0) << printed.err;
    EXPECT_THAT(printed.out, StartsWith("<!doctype html>\n"));
    EXPECT_THAT(printed.out, HasSubstr("one &lt;b&gt;"));

    const Outcome written =
        runProgram({"transcript", database, "--limit", "1", "--output", folder.path("page.html")});
    EXPECT_EQ(written.status, 0) << written.err;
    EXPECT_EQ(written.out, "");
    const std::string page = contentOf(folder.path("page.html"));
    EXPECT_THAT(page, HasSubstr("\">1 messages<br>"));
    EXPECT_THAT(page, EndsWith("</html>\n"));
    EXPECT_EQ(std::filesystem::status(folder.path("page.html")).permissions(), std::filesystem::perms(0600));

    const Outcome json = runProgram({"transcript", "--json", database});
    const QJsonArray chats = jsonIn(json).array();
    ASSERT_EQ(chats.size(), 1) << json.out;
    EXPECT_EQ(chats[0].toObject()["name"].toString(), "Team");
    const QJsonArray messages = chats[0].toObject()["messages"].toArray();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[0].toObject(), (QJsonObject{{"text", "one <b>"},
                                                   {"fromMe", true},
                                                   {"date", "2023-03-08T20:26:40Z"},
                                                   {"hasAttachment", true},
                                                   {"service", "SMS"}}));
}

TEST(Transcript, InvalidDatabaseIsAnError) {
    const TemporaryFolder folder;
    const std::string garbage = folder.writeFile("garbage", std::string(5000, 'x'));
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string output = folder.path("page.html");
    const Outcome missing = runProgram({"transcript", folder.path("missing"), "--output", output});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, EndsWith("missing: No such file or directory\n"));
    for (const auto &[path, reason] :
         {std::pair(garbage, "sqlite3 can’t read it as a database."), std::pair(pipe, "It is not a file.")}) {
        const Outcome wrong = runProgram({"transcript", path, "--output", output});
        EXPECT_EQ(wrong.status, 1);
        EXPECT_THAT(wrong.err, HasSubstr("could not be fully read as a Messages database. "));
        EXPECT_THAT(wrong.err, EndsWith(std::string(reason) + "\n"));
    }
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST(Transcript, RunsNothingThatADatabaseHolds) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db"), trace = folder.path("started");
    if (!runStatements(database, hostileDatabases("touch " + trace).front().statements))
        GTEST_SKIP() << "sqlite3 is not installed";
    const Outcome outcome = runProgram({"transcript", database});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, EndsWith("It does not have the plain tables of a Messages database.\n"));
    EXPECT_FALSE(isThere(trace));
}

} // namespace brimvale::testing
