#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale::testing {

using ::testing::HasSubstr;

TEST(Compare, ShowsWhatHasGrownSinceAScanWasSaved) {
    const TemporaryFolder folder, out;
    folder.makeFile("a/log", 40'960);
    folder.makeFile("b/file", 40'960);
    const std::string file = out.path("scan");
    ASSERT_EQ(runProgram({"scan", folder.path(), "--save", file}).status, 0);
    EXPECT_EQ(runProgram({"scan", folder.path(), "--save", file}).status, 1); // never over a file unasked
    EXPECT_THAT(runProgram({"open", file}).out, HasSubstr("2 files in 2 folders"));

    folder.makeFile("a/log", 4'096'000);
    folder.makeFile("c/\xFF", 20'480);
    const Outcome table = runProgram({"compare", file, folder.path(), "--top=1"});
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_THAT(table.out, HasSubstr("changed  " + folder.path("a/log") + "\n"));
    EXPECT_THAT(table.out, HasSubstr("; 2 changes\n"));

    ASSERT_EQ(runProgram({"scan", folder.path(), "--save", out.path("later")}).status, 0);
    for (const std::string &later : {folder.path(), out.path("later")}) {
        const Outcome json = runProgram({"compare", file, later, "--json"});
        const QJsonArray changes = jsonIn(json)["changes"].toArray();
        ASSERT_EQ(changes.size(), 2) << json.out << json.err;
        EXPECT_EQ(changes[0]["kind"].toString(), "changed");
        EXPECT_EQ(changes[0]["after"].toInteger() - changes[0]["before"].toInteger(), 4'055'040);
        EXPECT_EQ(changes[1]["kind"].toString(), "new");
    }
    const Outcome wrong = runProgram({"compare", folder.path("a/log"), folder.path()});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.err, HasSubstr("/a/log: Line 1, byte "));
}

} // namespace brimvale::testing
