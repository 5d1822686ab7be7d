#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::testing {

using ::testing::HasSubstr;

TEST(Duplicates, AreListedByWhatTheyFree) {
    const TemporaryFolder folder;
    const std::string small = folder.writeFile("small", "equal");
    folder.writeFile("in/small", "equal");
    folder.makeFile("large", 90'000);
    folder.makeFile("in/large", 90'000);
    folder.writeFile("in/alone", "other");
    const Outcome table = runProgram({"duplicates", folder.path()});
    EXPECT_EQ(table.status, 0);
    EXPECT_LT(table.out.find("/large\n"), table.out.find("/small\n"));
    EXPECT_THAT(table.out, HasSubstr("  stays  " + small + "\n"));
    EXPECT_THAT(table.out, HasSubstr("\n2 groups of equal files among 5 files. Removing all but one of each "
                                     "group would free "));
    EXPECT_THAT(table.out, HasSubstr("One file of each group stays: "));

    const QJsonObject json = jsonIn(runProgram({"duplicates", folder.path("in"), small, "--json"})).object();
    const QJsonArray groups = json["groups"].toArray();
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups[0].toObject()["length"].toInteger(), 5);
    EXPECT_EQ(json["frees"].toInteger(), allocatedBytes(small));
    const QJsonObject first = groups[0].toObject()["files"].toArray()[0].toObject();
    EXPECT_EQ(first["path"].toString().toStdString(), small);
    EXPECT_TRUE(first["stays"].toBool() && first["keptBecause"].isNull());

    const Outcome none = runProgram({"duplicates", folder.path(), "--min-size", "1000000"});
    EXPECT_THAT(none.out, HasSubstr("0 groups of equal files among 0 files."));
}

TEST(Duplicates, ProtectedFilesStay) {
    const TemporaryFolder folder;
    const std::string home = folder.makeFolder("home/sam");
    const std::string secret = folder.writeFile("home/sam/.Private/key", "equal");
    std::filesystem::last_write_time(folder.writeFile("home/sam/old", "equal"),
                                     std::filesystem::file_time_type::clock::now() -
                                         std::chrono::hours(9999));
    folder.writeFile("home/sam/.Private/other", "equal");
    const QJsonObject json =
        jsonIn(runProgramOnLinux(folder.path(), {"duplicates", "--json", home}, inHome(home))).object();
    const QJsonArray files = json["groups"].toArray()[0].toObject()["files"].toArray();
    ASSERT_EQ(files.size(), 3);
    EXPECT_EQ(files[0].toObject()["path"].toString().toStdString(), secret);
    for (const int kept : {0, 1}) // the second was looked for in the same folder
        EXPECT_THAT(files[kept].toObject()["keptBecause"].toString().toStdString(),
                    HasSubstr("Removing it would destroy them."));
    EXPECT_TRUE(files[2].toObject()["keptBecause"].isNull());
    EXPECT_EQ(json["frees"].toInteger(), allocatedBytes(secret));
}

TEST(Duplicates, GoByAPlanWhileOneStays) {
    const TemporaryFolder folder;
    const std::string stays = folder.writeFile("in/a", "equal"), second = folder.writeFile("in/bb", "equal");
    const std::string third = folder.writeFile("in/ccc", "equal"), plan = folder.path("plan");
    const Outcome saved = runProgram({"duplicates", folder.path("in"), "--save-plan", plan, "--delete"});
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_EQ(saved.out, "Wrote a plan of 2 items. Nothing was removed.\n");
    std::filesystem::resize_file(third, 4);
    const Outcome done = runProgram({"remove", "--plan", plan, "--yes"});
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.err, HasSubstr("“ccc” has changed since the plan was made."));
    EXPECT_TRUE(isThere(stays) && !isThere(second) && isThere(third));
}

TEST(Duplicates, RefuseWrongUsage) {
    const TemporaryFolder folder;
    EXPECT_EQ(runProgram({"duplicates"}).status, 2);
    EXPECT_EQ(runProgram({"duplicates", folder.path(), "--min-size", "many"}).status, 2);
    EXPECT_EQ(runProgram({"duplicates", folder.path(), "--yes"}).status, 2);
    EXPECT_THAT(runProgram({"duplicates", folder.path(), "--share"}).err,
                HasSubstr("unless \"--yes\" is given"));
    EXPECT_EQ(runProgram({"duplicates", folder.path(), "--delete"}).status, 2);
    EXPECT_EQ(runProgram({"duplicates", folder.path("missing")}).status, 1);
    folder.writeFile("a", "equal");
    folder.writeFile("b", "equal");
    const Outcome stopped = runProgram({"duplicates", folder.path()}, pending(SIGINT));
    EXPECT_EQ(stopped.status, 130);
    EXPECT_THAT(stopped.err, HasSubstr("interrupted"));
}

} // namespace brimvale::testing
