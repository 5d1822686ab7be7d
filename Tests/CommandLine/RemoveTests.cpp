#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Core/Text/Formatting.h"
#include "Support/ReferenceScan.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;
using Paths = std::vector<std::string>;

/// Every path in the folder, with what is in each file and where each link leads, sorted.
Paths inventory(const std::string &folder) {
    Paths paths;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder))
        paths.push_back(entry.path().string() + (entry.is_symlink() ? " > " + read_symlink(entry).string()
                                                 : entry.is_regular_file()
                                                     ? " " + std::to_string(entry.file_size())
                                                     : ""));
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// Without a terminal, whoever runs the tests.
void closeInput() {
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
}

} // namespace

TEST(Remove, DeletesOnlyNamedItems) {
    const TemporaryFolder folder;
    folder.makeFile("outside/kept", 5'000);
    folder.makeFile("doomed/a/b/file", 9'000);
    folder.makeLink("doomed/a/link", "../../outside");
    folder.makeLink("link", "outside");
    const std::string odd = folder.makeFile(folder.possibleName("it's -rf \"\xFF\n*"));
    folder.makeFile("-rf");
    Paths expected = inventory(folder.path());
    std::erase_if(expected, [&](const std::string &path) {
        return path.starts_with(folder.path("doomed")) || path.starts_with(folder.path("link")) ||
               path.starts_with(odd) || path.starts_with(folder.path("-rf"));
    });
    const auto enter = [&] {
        closeInput();
        inFolder(folder.path())();
    };
    const Outcome outcome =
        runProgram({"remove", "doomed", "--delete", "link/", odd, "--yes", "--", "-rf"}, enter);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("removed  " + folder.path("doomed") + "\n"));
    EXPECT_THAT(outcome.out, HasSubstr("removed  " + folder.path("it's -rf \"\uFFFD␊*") + "\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\nRemoved 4 items, reclaiming "));
    EXPECT_EQ(inventory(folder.path()), expected);
}

TEST(Remove, ReportsEachItem) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    chmod(folder.path().c_str(), 0755);
    const std::string locked = folder.makeFile("locked/file", 5'000);
    chmod(folder.path("locked").c_str(), 0555);
    const std::string open = folder.makeFile("open/file", 5'000);
    chmod(folder.path("open").c_str(), 0777);
    const std::string missing = folder.path("missing");
    const std::string program = folder.makeFolder("program");
    chmod(program.c_str(), 0777);

    const Outcome json = runProgramUnprivileged(
        program, {"remove", "--json", "--delete", "--yes", open, "/usr", locked, missing});
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.err, "");
    const QJsonDocument document = jsonIn(json);
    EXPECT_EQ(pathsIn(document["succeeded"]), Paths{open});
    EXPECT_EQ(pathsIn(document["failed"]), (Paths{"/usr", missing}));
    EXPECT_EQ(document["failed"][0]["reason"].toString().toStdString(),
              "/usr is a structural directory and is never removed.");
    EXPECT_EQ(pathsIn(document["needsAdmin"]), Paths{locked});
    EXPECT_EQ(document["needsAppManagement"], false);
    EXPECT_GE(document["bytesFreed"].toInteger(-1), 5'000);
    EXPECT_FALSE(std::filesystem::exists(open));
    EXPECT_TRUE(std::filesystem::exists(locked));

    const Outcome text =
        runProgramUnprivileged(program, {"remove", "--delete", "--yes", "/usr", locked, missing});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out, "Removed 0 items, reclaiming " + Fmt::byteFormatter(0) + "\n");
    EXPECT_EQ(text.err, "brimvalectl: /usr is a structural directory and is never removed.\n"
                        "brimvalectl: " +
                            missing +
                            " no longer exists.\n"
                            "brimvalectl: " +
                            locked + ": needs admin rights (see --as-admin)\n");
}

TEST(Remove, NeedsTerminalOrYes) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const Outcome outcome = runProgram({"remove", "--delete", file}, closeInput);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("without a terminal"));
    EXPECT_THAT(outcome.err, HasSubstr("\"--yes\""));
    // An answer that comes through a pipe is none, and neither is a question that nobody reads.
    EXPECT_EQ(runProgram({"remove", "--delete", file},
                         [&] {
                             Terminal terminal;
                             terminal.type("y\n");
                             dup2(terminal.device(), STDIN_FILENO);
                         })
                  .status,
              2);
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(Remove, AsksOnATerminal) {
    const TemporaryFolder folder;
    folder.makeFile("a", 5'000);
    folder.makeFile("b/c", 5'000);
    const std::vector<std::string> command = {"remove", "--delete", folder.path("a"), folder.path("b")};
    const Paths before = inventory(folder.path());
    for (const char *answer : {"\n", "n\n", "no\n", "yep\n", "\x04"}) {
        const Outcome outcome = runOnTerminal(command, answer);
        EXPECT_EQ(outcome.status, 1) << answer;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr("Delete 2 items ("));
        EXPECT_THAT(outcome.err, HasSubstr(") immediately? This can't be undone. [y/N] "));
        EXPECT_THAT(outcome.err, HasSubstr("brimvalectl: nothing was removed\n"));
        EXPECT_EQ(inventory(folder.path()), before);
    }
    const Outcome json = runOnTerminal({"remove", "--json", folder.path("a")}, "\n");
    EXPECT_THAT(json.err, HasSubstr("Move 1 item ("));
    EXPECT_THAT(json.err, HasSubstr(") to the Trash? [y/N] "));
    EXPECT_TRUE(pathsIn(jsonIn(json)["succeeded"]).empty());
    EXPECT_EQ(inventory(folder.path()), before);

    const Outcome outcome = runOnTerminal(command, "Yes\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(inventory(folder.path()).empty());
}

TEST(Remove, AnswersTypedAheadDoNotCount) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const Outcome outcome = runOnTerminal({"remove", "--delete", file}, "n\n", "y\ny\nyes\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(Remove, QuestionCountsOnlyAllowedItems) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const Outcome some = runOnTerminal({"remove", "--delete", "/usr", file}, "n\n");
    EXPECT_THAT(some.err, HasSubstr("Delete 1 of 2 items ("));
    const Outcome none = runOnTerminal({"remove", "--delete", "/usr"}, "");
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "brimvalectl: /usr is a structural directory and is never removed.\n");
}

TEST(Remove, RemovesNestedAndRepeatedItemsOnce) {
    const TemporaryFolder folder;
    folder.makeFile("a/b/file", 9'000);
    folder.makeFile("beside/file", 9'000);
    folder.makeLink("a/link", "../beside");
    folder.makeLink("name", "a");
    const std::int64_t size = referenceScan(folder.path("a"), ScanOptions()).bytes;
    const std::string a = folder.path("a");
    // The file behind the link does not go with the folder that the link is in.
    const Outcome outcome =
        runProgram({"remove", "--json", "--delete", "--yes", folder.path("a/b/file"), a, a + "/", a + "/b",
                    folder.path("name/b"), folder.path("a/link/file")});
    const QJsonDocument document = jsonIn(outcome);
    EXPECT_EQ(pathsIn(document["succeeded"]), Paths{a});
    EXPECT_EQ(pathsIn(document["failed"]), Paths{folder.path("a/link/file")});
    EXPECT_EQ(document["bytesFreed"].toInteger(-1), size);
    EXPECT_TRUE(std::filesystem::exists(folder.path("beside/file")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("name")));
}

TEST(Remove, RemovesItemInsideARefusedFolder) {
    const TemporaryFolder home;
    home.makeFile("Downloads/file", 5'000);
    home.makeFile("Downloads/other", 5'000);
    const Outcome outcome = runProgram(
        {"remove", "--json", "--delete", "--yes", home.path("Downloads"), home.path("Downloads/file")},
        inHome(home.path()));
    EXPECT_EQ(pathsIn(jsonIn(outcome)["failed"]), Paths{home.path("Downloads")});
    EXPECT_EQ(pathsIn(jsonIn(outcome)["succeeded"]), Paths{home.path("Downloads/file")});
    EXPECT_TRUE(std::filesystem::exists(home.path("Downloads/other")));
}

TEST(Remove, StopsOnSignal) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("folder/file", 5'000);
    const Outcome outcome = runProgram({"remove", "--json", "--delete", "--yes", file}, pending(SIGINT));
    EXPECT_EQ(outcome.status, 130);
    EXPECT_EQ(outcome.err, "brimvalectl: interrupted\n");
    EXPECT_EQ(pathsIn(jsonIn(outcome)["failed"]), Paths{file});
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(Remove, KeepsWhatACategoryProtectsUnlessToldOtherwise) {
    const TemporaryFolder home;
    const std::string photo = home.makeFile("Pictures/Trip.photoslibrary/photo", 5'000);
    const std::string message = home.makeFile("Library/Messages/chat.db", 5'000);
    const std::string file = home.makeFile("Documents/file", 5'000);
    const auto enter = [&] {
        closeInput();
        inHome(home.path())();
    };
    const Outcome kept =
        runProgram({"--system", "macos", "remove", "--delete", "--yes", photo, message, file}, enter);
    EXPECT_EQ(kept.status, 1);
    EXPECT_THAT(kept.err, HasSubstr(photo + ": Photos: A photo library is a bundle"));
    EXPECT_THAT(kept.err, HasSubstr(message + ": Messages: Messages keeps an index"));
    EXPECT_THAT(kept.err, HasSubstr("--anyway"));
    EXPECT_TRUE(std::filesystem::exists(photo) && std::filesystem::exists(message));
    EXPECT_FALSE(std::filesystem::exists(file));

    const Outcome removed =
        runProgram({"--system", "macos", "remove", "--delete", "--yes", "--anyway", photo, message}, enter);
    EXPECT_EQ(removed.status, 0) << removed.err;
    EXPECT_THAT(removed.err, HasSubstr("A photo library is a bundle"));
    EXPECT_FALSE(std::filesystem::exists(photo) || std::filesystem::exists(message));
}

TEST(Remove, OnLinuxTakesPicturesButAsksForMail) {
    const TemporaryFolder home;
    const std::string photo = home.makeFile("Pictures/Trip/photo", 5'000);
    const std::string mail = home.makeFile(".thunderbird/a.default/ImapMail/server/INBOX", 5'000);
    const Outcome outcome =
        runProgram({"--system", "linux", "remove", "--delete", "--yes", photo, mail}, [&] {
            closeInput();
            inHome(home.path())();
        });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(mail + ": Mail: For IMAP accounts this is a local copy"));
    EXPECT_THAT(outcome.err, ::testing::Not(HasSubstr("photo")));
    EXPECT_FALSE(std::filesystem::exists(photo));
    EXPECT_TRUE(std::filesystem::exists(mail));
}

} // namespace brimvale::testing
