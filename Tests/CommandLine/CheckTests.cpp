#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale::testing {

TEST(Check, PrintsOneLinePerPath) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file");
    const auto enter = inFolder(folder.path());
    const Outcome fine = runProgram({"check", file, "file", "./file/"}, enter);
    EXPECT_EQ(fine.status, 0);
    EXPECT_EQ(fine.out, "ok\nok\nok\n");
    EXPECT_EQ(fine.err, "");

    const Outcome mixed = runProgram({"check", "file", "/", "", "a\nb\xFF", "/usr/bin"}, enter);
    EXPECT_EQ(mixed.status, 1);
    EXPECT_EQ(mixed.out, "ok\n"
                         "Refusing to operate on the volume root.\n"
                         "Refusing to operate on the volume root.\n" +
                             folder.path("a␊b\uFFFD") +
                             " no longer exists.\n"
                             "/usr/bin is a structural directory and is never removed.\n");
    EXPECT_EQ(mixed.err, "");
}

TEST(Check, FollowsTheSelectedSystem) {
    const TemporaryFolder home;
    home.makeFolder("Library/Caches/some.app");
    const auto enter = inHome(home.path());
    const Outcome mac =
        runProgram({"--system", "macos", "check", "--json", "Library", "Library/Caches/some.app"}, enter);
    EXPECT_EQ(mac.status, 1);
    const QJsonArray document = jsonIn(mac).array();
    ASSERT_EQ(document.size(), 2);
    EXPECT_EQ(pathsIn(document), (std::vector{home.path("Library"), home.path("Library/Caches/some.app")}));
    EXPECT_EQ(document[0]["reason"].toString().toStdString(),
              home.path("Library") + " is a structural directory and is never removed.");
    EXPECT_TRUE(document[1].toObject().contains("reason"));
    EXPECT_TRUE(document[1]["reason"].isNull());

    const Outcome linuxCatalog = runProgram({"--system", "linux", "check", "Library"}, enter);
    EXPECT_EQ(linuxCatalog.out.find("ok\n") == 0, linuxCatalog.status == 0);
    EXPECT_EQ(runProgram({"--system", "linux", "check", "."}, enter).out,
              home.path() + " is a structural directory and is never removed.\n");
}

} // namespace brimvale::testing
