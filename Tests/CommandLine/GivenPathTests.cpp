#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale::testing {

TEST(GivenPath, IsNamedAsItWasTypedWhereNothingCanBeMeasured) {
    const TemporaryFolder folder;
    folder.makeFile("file", 1'000);
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("circle", "circle");
    const auto enter = inFolder(folder.path());
    struct Case {
        std::string command, path, reason;
    };
    for (const Case &one : {
             Case{"scan", "missing", "No such file or directory"},
             Case{"size", "missing", "No such file or directory"},
             Case{"scan", "./missing/../x", "No such file or directory"},
             Case{"scan", "", "No such file or directory"},
             Case{"size", "", "No such file or directory"},
             Case{"scan", "dangling", "No such file or directory"},
             Case{"scan", "circle", "Too many levels of symbolic links"},
             Case{"scan", "file/below", "Not a directory"},
             Case{"size", "file/below", "Not a directory"},
             Case{"scan", "file/", "Not a directory"},
             Case{"size", "file/", "Not a directory"},
             Case{"scan", std::string(300, 'n'), "File name too long"},
         }) {
        const Outcome outcome = runProgram({one.command, one.path}, enter);
        EXPECT_EQ(outcome.status, 1) << one.command << " " << one.path;
        EXPECT_EQ(outcome.out, "") << one.command << " " << one.path;
        EXPECT_EQ(outcome.err, "brimvalectl: " + one.path + ": " + one.reason + "\n");
    }
}

TEST(GivenPath, OfAFolderThatCannotBeListedIsAnError) {
    const TemporaryFolder folder;
    folder.makeFile("closed/file", 1'000);
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::none);
    for (const char *command : {"scan", "size"}) {
        const Outcome outcome = runProgramUnprivileged(folder.path(), {command, folder.path("closed")});
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.err, "brimvalectl: " + folder.path("closed") + ": Permission denied\n");
    }
}

TEST(GivenPath, IsResolvedByItsBytes) {
    const TemporaryFolder folder;
    const std::string name = "caf\xE9 \n";
    std::error_code error;
    if (!std::filesystem::create_directory(folder.path(name), error))
        GTEST_SKIP() << "the file system takes no such name";
    folder.makeFile(name + "/file", 5'000'000);
    folder.makeLink("link", name);
    const auto enter = inFolder(folder.path(name));
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"scan"},
                                                      {"scan", "."},
                                                      {"scan", "../" + name},
                                                      {"scan", "../link"},
                                                      {"scan", "file"},
                                                      {"scan", "--", "../" + name}}) {
        const Outcome outcome = runProgram(arguments, enter);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_THAT(outcome.out, ::testing::HasSubstr("\n1 file in 0 folders, 5")) << arguments.back();
    }
}

} // namespace brimvale::testing
