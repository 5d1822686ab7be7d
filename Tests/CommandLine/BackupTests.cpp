#include "CommandLine/Program.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace brimvale::testing {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

} // namespace

TEST(Backup, CopiesAndVerifiesLater) {
    const TemporaryFolder folder;
    const std::string one = folder.makeFile("from/one", 70'000);
    const std::string two = folder.makeFolder("from/two");
    folder.writeFile("from/two/file", "content");
    const Outcome made =
        runProgram({"backup", one, two + "/", "--label", "Photos", "--into", folder.path("to"), "--json"});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.err, "");
    const QJsonObject result = jsonIn(made).object();
    const std::string destination = result["destination"].toString().toStdString();
    EXPECT_THAT(destination, ::testing::MatchesRegex(folder.path("to/Photos ") + "[0-9-]+ [0-9]{4}"));
    EXPECT_THAT(pathsIn(result["copied"]), ElementsAre(one, two));
    EXPECT_TRUE(result["failed"].toArray().isEmpty());
    EXPECT_TRUE(result["readableExport"].isNull());
    EXPECT_EQ(result["manifest"].toString().toStdString(), destination + "/manifest.json");

    const Outcome intact = runProgram({"backup", "--verify", destination});
    EXPECT_EQ(intact.status, 0) << intact.err;
    EXPECT_EQ(intact.out, "3 items are as backed up.\n");

    // A further file does no harm to what was backed up.
    std::ofstream(destination + "/two/later") << "extra";
    const Outcome extra = runProgram({"backup", "--verify", destination});
    EXPECT_EQ(extra.status, 0);
    EXPECT_THAT(extra.out, StartsWith("extra       two/later\n"));

    std::ofstream(destination + "/two/file") << "CONTENT";
    fs::remove(destination + "/one");
    const Outcome changed = runProgram({"backup", "--json", "--verify", destination});
    EXPECT_EQ(changed.status, 1);
    const QJsonObject verification = jsonIn(changed).object();
    EXPECT_THAT(pathsIn(verification["missing"]), ElementsAre("one"));
    EXPECT_THAT(pathsIn(verification["changed"]), ElementsAre("two/file"));
    EXPECT_THAT(pathsIn(verification["extra"]), ElementsAre("two/later"));
}

TEST(Backup, PrintsCopiesAndDestination) {
    const TemporaryFolder home;
    const EnvironmentVariable settings("XDG_CONFIG_HOME", std::nullopt);
    const std::string item = home.makeFile("item\n", 70'000);
    const Outcome outcome = runProgram({"backup", item, "--label", "x"}, inHome(home.path()));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("  " + home.path("item␊") + "\n\nBacked up to " +
                                       home.path("Documents/Brimvale Backups/x ")));
}

TEST(Backup, TellsWhatTheUserHasToKnow) {
    const TemporaryFolder folder;
    folder.makeFile("target/file", 10);
    const std::string link = folder.makeLink("link", "target");
    const std::vector<std::string> arguments = {"backup", link, "--label", "x", "--into", folder.path("to")};
    const Outcome made = runProgram(arguments);
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(made.err,
              "brimvalectl: “link” is a link. The backup holds the link itself, not what it leads to.\n");
    // A minute may have passed, which makes the second one another backup.
    const Outcome again = runProgram(arguments);
    if (again.status != 0) {
        EXPECT_THAT(again.err, HasSubstr("Use another label, such as “x 2”, or wait a minute."));
    }

    const std::string database = folder.writeFile("chat.db", "garbage");
    const Outcome unreadable =
        runProgram({"backup", "--json", database, "--label", "y", "--into", folder.path("to")});
    EXPECT_EQ(unreadable.status, 0) << "the copy is good";
    const std::string remark = "There is no readable transcript of “chat.db”. ";
    EXPECT_THAT(unreadable.err, HasSubstr(remark));
    EXPECT_THAT(jsonIn(unreadable)["remarks"][0].toString().toStdString(), StartsWith(remark));
}

TEST(Backup, CopiesNothingThatCannotBeBackedUpTogether) {
    const TemporaryFolder folder;
    folder.makeFile("a/same", 10);
    folder.makeFile("b/same", 10);
    const std::string to = folder.path("to");
    struct Case {
        std::vector<std::string> operands;
        int status;
        std::string error;
    };
    for (const Case &one : {
             Case{{folder.path("a/same"), folder.path("b/same"), "--label", "x"}, 1, "Two of the items"},
             Case{{folder.path("a"), folder.path("missing"), "--label", "x"}, 1, "No such file"},
             Case{{folder.path(), "--label", "x"}, 1, "can’t be backed up into a folder inside itself"},
             Case{{folder.path("a")}, 2, "backup: missing option: --label"},
             Case{{folder.path("a"), "--label", "../x"}, 2, "backup: \"--label\" takes"},
             Case{{folder.path("a"), "--verify", "x"},
                  2,
                  "backup: \"--verify\" takes no other option or path"},
         }) {
        std::vector<std::string> arguments = {"backup", "--into", to};
        arguments.insert(arguments.end(), one.operands.begin(), one.operands.end());
        const Outcome outcome = runProgram(arguments);
        EXPECT_EQ(outcome.status, one.status) << one.error;
        EXPECT_THAT(outcome.err, HasSubstr(one.error));
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_FALSE(fs::exists(to));
    const Outcome none = runProgram({"backup", "--verify", folder.path("a")});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("There is no readable backup manifest."));
}

} // namespace brimvale::testing
