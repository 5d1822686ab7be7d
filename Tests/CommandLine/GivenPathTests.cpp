#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::testing {

TEST(GivenPath, ErrorNamesThePathAsTyped) {
    const TemporaryFolder folder;
    folder.makeFile("file", 1'000);
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("circle", "circle");
    const auto enter = inFolder(folder.path());
    const std::string missing = "No such file or directory", noFolder = "Not a directory";
    for (const auto &[path, reason] : {std::pair<std::string, std::string>{"missing", missing},
                                       {"./missing/../x", missing},
                                       {"", missing},
                                       {"file/below", noFolder},
                                       {"file/", noFolder},
                                       {std::string(300, 'n'), "File name too long"}})
        for (const char *command : {"scan", "size"}) {
            const Outcome outcome = runProgram({command, path}, enter);
            EXPECT_EQ(outcome.status, 1) << command << " " << path;
            EXPECT_EQ(outcome.out, "") << command << " " << path;
            EXPECT_EQ(outcome.err, "brimvalectl: " + path + ": " + reason + "\n");
        }
    // Only a scan looks behind a link.
    EXPECT_EQ(runProgram({"scan", "dangling"}, enter).err, "brimvalectl: dangling: " + missing + "\n");
    EXPECT_EQ(runProgram({"scan", "circle"}, enter).err,
              "brimvalectl: circle: Too many levels of symbolic links\n");
}

TEST(GivenPath, UnreadableFolderIsAnError) {
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

TEST(GivenPath, ResolvesPathsOfAnyBytes) {
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
