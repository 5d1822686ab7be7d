#include "Core/Backup/DatabaseShell.h"
#include "Core/Backup/MessagesExport.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

namespace brimvale {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::isThere;
using testing::TemporaryFolder;

MessagesExport::Reading read(const std::string &path, const Tools &tools = platformTools()) {
    return MessagesExport::readChecked(path, 100, tools);
}

/// The real shell as if it were older: without safe mode, and where wanted, without distrust.
Tools olderShell(const TemporaryFolder &folder, bool hasDistrust) {
    Tools tools = platformTools();
    const std::string real = tools.databaseShell;
    tools.databaseShell = folder.makeScript(
        "older", "for option; do [ \"$option\" != -safe ] || exit 1; done\n" +
                     std::string(hasDistrust ? "" : "case $* in *:memory:*) exit 0;; esac\n") + "exec " +
                     real + " \"$@\"");
    return tools;
}

} // namespace

TEST(DatabaseShell, RunsNothingThatADatabaseHolds) {
    const TemporaryFolder folder;
    const std::string trace = folder.path("started");
    const Tools older = olderShell(folder, true);
    int number = 0;
    for (const testing::HostileDatabase &one : testing::hostileDatabases("touch " + trace)) {
        const std::string database = folder.path(std::to_string(++number) + "/chat.db");
        if (!testing::runStatements(database, one.statements))
            GTEST_SKIP() << "no sqlite3 that can make " << one.name;
        for (const Tools &tools : {platformTools(), older}) {
            const auto reading = read(database, tools);
            EXPECT_THAT(reading.conversations, IsEmpty()) << one.name;
            EXPECT_FALSE(reading.isComplete) << one.name;
            EXPECT_NE(reading.reason, "") << one.name;
        }
        EXPECT_FALSE(isThere(trace)) << one.name;
    }
    // An old shell that would call any function for any database is not asked at all.
    EXPECT_THAT(read(folder.path("1/chat.db"), olderShell(folder, false)).reason,
                HasSubstr("older than 3.31"));
    EXPECT_FALSE(isThere(trace));
}

TEST(DatabaseShell, ReadsPlainTablesWhateverIsBesideThem) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db"), trace = folder.path("started");
    if (!testing::runStatements(
            database, testing::statementsOf({{1, "Team", "id"}}, {{.text = "text"}}) +
                          "CREATE INDEX folded ON message(lower(text));"
                          "CREATE INDEX some ON message(date) WHERE associated_message_type = 0;"
                          "CREATE VIEW harm AS SELECT edit('a','touch " +
                          trace +
                          "; :') AS a;"
                          "CREATE TRIGGER later AFTER INSERT ON message BEGIN DELETE FROM chat; END;"))
        GTEST_SKIP() << "sqlite3 is not installed";
    for (const Tools &tools : {platformTools(), olderShell(folder, true)}) {
        const auto reading = read(database, tools);
        EXPECT_TRUE(reading.isComplete) << reading.reason;
        EXPECT_EQ(reading.conversations.size(), 1U);
    }
    EXPECT_FALSE(isThere(trace));
}

TEST(DatabaseShell, OpensNothingButFiles) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db"), pipe = folder.path("pipe");
    if (!testing::makeDatabase(database, {{1, "Team", "id"}}, {{.text = "text"}}))
        GTEST_SKIP() << "sqlite3 is not installed";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(read(pipe).reason, "It is not a file.");
    EXPECT_EQ(read(folder.path()).reason, "It is not a file.");
    EXPECT_EQ(read(folder.path("missing")).reason, "No such file or directory.");
    EXPECT_EQ(read(folder.makeLink("link", "chat.db")).reason,
              "It is a link. Choose the file that it leads to.");
    for (const char *beside : {"chat.db-wal", "chat.db-journal", "chat.db-shm"}) {
        ASSERT_EQ(mkfifo(folder.path(beside).c_str(), 0600), 0);
        EXPECT_EQ(read(database).reason, "“" + std::string(beside) + "” beside it is not a file.");
        std::filesystem::remove(folder.path(beside));
    }
    EXPECT_TRUE(read(database).isComplete);
}

TEST(DatabaseShell, ReadsNoEndlessAnswer) {
    const TemporaryFolder folder;
    const std::string joins = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 600) "
                              "INSERT INTO chat_message_join SELECT 1, 1 FROM n;";
    const auto databaseWith = [&](const std::string &name, const std::string &change) {
        const std::string database = folder.path(name);
        return testing::runStatements(
                   database, testing::statementsOf({{1, "Team", "id"}}, {{.text = "text"}}) + change + joins)
                   ? database
                   : "";
    };
    // One megabyte that is one row each of many.
    const std::string body =
        databaseWith("body.db", "UPDATE message SET attributedBody=randomblob(1000000);");
    const std::string name =
        databaseWith("name.db", "UPDATE chat SET display_name=replace(hex(zeroblob(1000000)),'0','a');");
    if (body.empty())
        GTEST_SKIP() << "sqlite3 is not installed";
    for (const std::string &database : {body, name}) {
        const auto reading = read(database);
        EXPECT_THAT(reading.conversations, IsEmpty());
        EXPECT_EQ(reading.reason, "It holds more than 1.07 GB of text, too much to read.");
    }
    // Nor what would take much more memory than its rows.
    const std::string text =
        databaseWith("text.db", "UPDATE message SET text=replace(hex(zeroblob(300000)),'0','a');");
    const auto reading = MessagesExport::readChecked(text, 1000);
    EXPECT_EQ(reading.reason, "It holds more messages than a page can show.");
    EXPECT_EQ(reading.conversations.at(0).messages.size(), 336U);

    // Whatever a shell says about the size, it is ended when it prints more.
    Tools liar = platformTools();
    liar.databaseShell =
        folder.makeScript("liar", "case $* in *:memory:*) echo 0; exit;; esac\n"
                                  "printf 'opened\\ntables\\ncolumns\\nmeasured\\nfits\\n'; exec yes");
    const auto answer = DatabaseShell::ask(
        liar, text, {.tables = {}, .query = "", .sizeQuery = "0", .separator = '|', .mostBytes = 5'000'000},
        [](std::string_view) { return true; });
    EXPECT_EQ(answer.reason, "It holds more than 5 MB of text, too much to read.");
    EXPECT_TRUE(answer.isTooLong);
}

TEST(DatabaseShell, IsEndedAtOnce) {
    const TemporaryFolder folder;
    const std::string database = folder.path("chat.db");
    // Every message in every chat: more rows than anybody can wait for.
    const std::string numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 3000) ";
    if (!testing::runStatements(database, testing::statementsOf({}, {}) + "INSERT INTO chat " + numbers +
                                              "SELECT i,'Team','id' FROM n;INSERT INTO message " + numbers +
                                              "SELECT i,0,0,'text',NULL,0,'SMS',0 FROM n;"
                                              "INSERT INTO chat_message_join "
                                              "SELECT c.ROWID, m.ROWID FROM chat c, message m;"))
        GTEST_SKIP() << "sqlite3 is not installed";
    using Clock = std::chrono::steady_clock;
    const Clock::time_point stop = Clock::now() + std::chrono::milliseconds(300);
    const StopFlag cancelled;
    std::thread stopper([&] {
        std::this_thread::sleep_until(stop);
        cancelled.set();
    });
    const auto reading = MessagesExport::readChecked(database, 100, platformTools(), cancelled);
    EXPECT_LT(Clock::now() - stop, std::chrono::milliseconds(500));
    stopper.join();
    EXPECT_FALSE(reading.isComplete);
}

} // namespace brimvale
