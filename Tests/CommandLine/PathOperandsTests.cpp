#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

namespace brimvale::testing {

namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

std::string hexOf(const std::string &bytes) {
    return QByteArray::fromStdString(bytes).toHex().toStdString();
}

/// The list that `find -print0` prints.
std::string listOf(const std::vector<std::string> &paths) {
    std::string list;
    for (const std::string &path : paths)
        list.append(path).push_back('\0');
    return list;
}

} // namespace

TEST(PathOperands, HexOfADocumentNamesTheSameFile) {
    const TemporaryFolder folder;
    const std::string odd = folder.makeFile(folder.possibleName("cache\xFF"), 5'000);
    const std::string twin = folder.path("cache\uFFFD");
    if (odd == twin)
        GTEST_SKIP() << "this file system takes only names that are text";
    folder.makeFile("cache\uFFFD", 5'000);
    const QJsonArray sizes = jsonIn(runProgram({"size", "--json", odd, twin})).array();
    EXPECT_EQ(sizes.at(0)["path"], sizes.at(1)["path"]);
    EXPECT_FALSE(sizes.at(1).toObject().contains("pathHex"));
    const std::string hex = sizes.at(0)["pathHex"].toString().toStdString();
    EXPECT_EQ(hex, hexOf(odd));

    EXPECT_EQ(runProgram({"check", "--hex", hex, hexOf(twin)}).out, "ok\nok\n");
    EXPECT_EQ(jsonIn(runProgram({"size", "--json", "--hex", hex})).array().at(0), sizes.at(0));
    const Outcome outcome =
        runProgram({"remove", "--json", "--delete", "--yes", "--hex", hex, hexOf("/usr")});
    EXPECT_EQ(jsonIn(outcome)["succeededHex"], QJsonArray{QString::fromStdString(hex)});
    EXPECT_FALSE(jsonIn(outcome).object().contains("needsAdminHex"));
    EXPECT_EQ(pathsIn(jsonIn(outcome)["failed"]), std::vector<std::string>{"/usr"});
    EXPECT_FALSE(std::filesystem::exists(odd));
    EXPECT_TRUE(std::filesystem::exists(twin));
}

TEST(PathOperands, ListOnStandardInputIsRemoved) {
    const TemporaryFolder folder;
    const std::string first = folder.makeFile("a\nb"), second = folder.makeFile("-second");
    const std::string kept = folder.makeFile("kept");
    const auto sized = runProgram({"size", "--json", "--from0", "-"}, withInput(listOf({first, kept})));
    EXPECT_EQ(jsonIn(sized).array().size(), 2);
    EXPECT_EQ(runProgram({"check", "--hex", "--from0=-"}, withInput(listOf({hexOf(first)}))).out, "ok\n");

    const Outcome outcome =
        runProgram({"remove", "--delete", "--yes", "--from0", "-"}, withInput(listOf({first, second})));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Removed 2 items"));
    EXPECT_EQ(std::filesystem::exists(first) || std::filesystem::exists(second), false);
    EXPECT_TRUE(std::filesystem::exists(kept));
    // A search that has found nothing is no mistake.
    EXPECT_EQ(runProgram({"remove", "--yes", "--from0", "-"}, withInput("")).status, 0);
}

TEST(PathOperands, QuestionAboutAListIsAskedOnTheTerminal) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const std::vector<std::string> command = {"remove", "--delete", "--from0", "-"};
    const Outcome alone = runProgram(command, [&] {
        setsid();
        withInput(listOf({file}))();
    });
    EXPECT_EQ(alone.status, 2);
    EXPECT_THAT(alone.err, HasSubstr("without a terminal"));
    for (const bool agrees : {false, true}) {
        Terminal terminal;
        terminal.type("y\n");
        std::thread user(
            [&] { terminal.answer(") immediately? This can't be undone. [y/N] ", agrees ? "y\n" : "n\n"); });
        const Outcome outcome = runProgram(command, [&] {
            setsid();
            ioctl(terminal.device(), TIOCSCTTY, 0);
            withInput(listOf({file}))();
        });
        user.join();
        EXPECT_EQ(outcome.status, agrees ? 0 : 1);
        EXPECT_EQ(std::filesystem::exists(file), !agrees);
    }
}

TEST(PathOperands, WrongPathsAreToldAndNothingIsDone) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file");
    struct Case {
        std::vector<std::string> options;
        std::string input, fault;
    };
    for (const Case &one : {
             Case{{}, "", "missing argument: PATH…"},
             Case{{"--hex", hexOf(file), "6G"}, "", "\"6G\" is not a path in hexadecimal digits"},
             Case{{"--hex", hexOf(file), "616"}, "", "\"616\" is not a path in hexadecimal digits"},
             Case{{"--hex", hexOf(file), ""}, "", "\"\" is not a path in hexadecimal digits"},
             Case{{"--hex", hexOf(file) + "00"}, "", "contains a zero byte"},
             Case{{"--from0", "list"}, "", "reads only standard input"},
             Case{{"--from0", "-", file}, file + "\0"s, "either given or read"},
             Case{{"--from0", "-"}, file + "\0\0"s, "path 2 of the list on standard input is empty"},
             Case{{"--from0", "-"}, "\0"s + file + "\0"s, "path 1 of the list on standard input is empty"},
             // The rest of a path that was cut off.
             Case{{"--from0", "-"}, file + "\0"s + folder.path(), "does not end with a zero byte"},
             Case{{"--from0", "-", "--hex"}, hexOf(file) + "\n\0"s, "is not a path in hexadecimal digits"},
         })
        for (const char *command : {"remove", "size", "check"}) {
            std::vector<std::string> arguments = {command};
            if (arguments[0] == "remove")
                arguments.insert(arguments.end(), {"--delete", "--yes"});
            arguments.insert(arguments.end(), one.options.begin(), one.options.end());
            const Outcome outcome = runProgram(arguments, withInput(one.input));
            EXPECT_EQ(outcome.status, 2) << one.fault;
            EXPECT_EQ(outcome.out, "");
            EXPECT_THAT(outcome.err, HasSubstr(one.fault));
            EXPECT_TRUE(std::filesystem::exists(file));
        }
    EXPECT_EQ(runProgram({"size", "--from0", "-"}, [] { close(STDIN_FILENO); }).err,
              "brimvalectl: standard input: Bad file descriptor\n");
}

} // namespace brimvale::testing
