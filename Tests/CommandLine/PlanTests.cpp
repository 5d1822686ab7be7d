#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;
using Paths = std::vector<std::string>;

/// Without a terminal, whoever runs the tests.
void closeInput() {
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
}

Outcome run(const std::vector<std::string> &arguments) {
    return runProgram(arguments, closeInput);
}

void write(const std::string &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// Every occurrence of `from` is replaced.
std::string replaced(std::string text, const std::string &from, const std::string &to) {
    for (std::size_t place = text.find(from); place != std::string::npos;
         place = text.find(from, place + to.size()))
        text.replace(place, from.size(), to);
    return text;
}

} // namespace

TEST(ReclaimCommand, TellsWhatDeletingFrees) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("in/file", 50'000);
    folder.makeFile("out/file", 30'000);
    std::filesystem::create_hard_link(folder.path("out/file"), folder.path("in/linked"));
    const Outcome json = runProgram({"reclaim", "--json", folder.path("in"), file});
    EXPECT_EQ(json.status, 0) << json.err;
    const QJsonDocument document = jsonIn(json);
    EXPECT_EQ(document["freesAtMost"].toInteger(), allocatedBytes(file));
    EXPECT_EQ(document["linkedElsewhere"].toInteger(), allocatedBytes(folder.path("in/linked")));
    EXPECT_EQ(document["filesLinkedElsewhere"].toInteger(), 1);
    EXPECT_EQ(document["unreadable"].toInteger(-1), 0);
    const Outcome text = runProgram({"reclaim", folder.path("in")});
    EXPECT_THAT(text.out, ::testing::StartsWith("Deleting frees now: "));
    EXPECT_THAT(text.out, HasSubstr("1 file that has other names elsewhere\n"));
    const Outcome named = runProgram({"reclaim", folder.path("in"), "--names-in", folder.path()});
    EXPECT_THAT(named.out, HasSubstr(" elsewhere (" + folder.path("out/file") + ")\n"));
    EXPECT_EQ(runProgram({"reclaim", folder.path("in"), "--names-in", file}).status, 1) << "no folder";
    EXPECT_GE(document["unaskedPrograms"].toInteger(-1), 0);
    EXPECT_TRUE(isThere(file));
}

TEST(ReclaimCommand, FailsPlainly) {
    const TemporaryFolder folder;
    const Outcome missing = runProgram({"reclaim", folder.path("missing")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_THAT(missing.err, HasSubstr("missing"));
    EXPECT_EQ(runProgram({"reclaim"}).status, 2);
    const Outcome stopped = runProgram({"reclaim", folder.path()}, pending(SIGINT));
    EXPECT_EQ(stopped.status, 130);
    EXPECT_EQ(stopped.out, "");
}

TEST(PlanFile, RemovesLaterWhatADryRunHasShown) {
    const TemporaryFolder folder;
    const std::string one = folder.makeFile("one", 5'000), two = folder.makeFile("two/inner", 9'000);
    const Outcome shown = run({"remove", "--dry-run", "--delete", one, folder.path("two")});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_THAT(shown.out, HasSubstr(one + "\n"));
    EXPECT_THAT(shown.out, HasSubstr("These would be deleted.\nDeleting frees now: "));
    EXPECT_THAT(run({"remove", "--dry-run", one}).out,
                HasSubstr("These would be moved to the Trash.\nFrees when the Trash is emptied: "));

    const std::string plan = folder.path("plan.json");
    const Outcome saved = run({"remove", "--save-plan", plan, "--delete", one, folder.path("two")});
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_EQ(saved.out, "Wrote a plan of 2 items. Nothing was removed.\n");
    struct stat status {};
    ASSERT_EQ(stat(plan.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    const Outcome again = run({"remove", "--save-plan", plan, one});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.err, HasSubstr("never replaces a file"));
    EXPECT_TRUE(isThere(one) && isThere(two));

    EXPECT_EQ(run({"remove", "--plan", plan}).status, 2) << "nobody can be asked";
    const Outcome shownAgain = run({"remove", "--plan", plan, "--dry-run", "--json"});
    EXPECT_EQ(shownAgain.status, 0) << shownAgain.err;
    EXPECT_EQ(shownAgain.out, contentOf(plan));
    EXPECT_TRUE(isThere(one));
    const Outcome done = run({"remove", "--plan", plan, "--yes", "--json"});
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(pathsIn(jsonIn(done)["succeeded"]), (Paths{one, folder.path("two")}));
    EXPECT_FALSE(isThere(one) || isThere(two));
}

TEST(PlanFile, LeavesWhatIsNotTheSameItemAnyMore) {
    const TemporaryFolder folder;
    const std::string same = folder.makeFile("same", 5'000), other = folder.makeFile("other", 5'000);
    const Outcome printed = run({"remove", "--dry-run", "--json", "--delete", same, other});
    ASSERT_EQ(printed.status, 0) << printed.err;
    const std::string plan = folder.path("plan.json");
    write(plan, printed.out);
    std::filesystem::rename(other, folder.path("kept"));
    folder.makeFile("other", 5'000);
    const Outcome done = run({"remove", "--plan", plan, "--yes"});
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.err, HasSubstr("“other” is not the item that the plan names"));
    EXPECT_FALSE(isThere(same));
    EXPECT_TRUE(isThere(other));

    // Another machine has other devices.
    const std::string device = jsonIn(printed)["items"][0]["device"].toString().toStdString();
    write(plan, replaced(run({"remove", "--dry-run", "--json", "--delete", other}).out, "\"" + device + "\"",
                         "\"" + device + "1\""));
    const Outcome foreign = run({"remove", "--plan", plan, "--yes"});
    EXPECT_EQ(foreign.status, 1);
    EXPECT_THAT(foreign.err, HasSubstr("nothing that this plan names can be removed here\n"))
        << "it was made here";
    const std::string host = jsonIn(printed)["host"].toString().toStdString();
    write(plan, replaced(contentOf(plan), "\"host\": \"" + host + "\"", "\"host\": \"another\""));
    write(plan, replaced(contentOf(plan), "\"host\":\"" + host + "\"", "\"host\":\"another\""));
    EXPECT_THAT(run({"remove", "--plan", plan, "--yes"}).err, HasSubstr("; it was made on “another”\n"));
    EXPECT_TRUE(isThere(other));
}

TEST(PlanFile, IsShownBeforeTheQuestion) {
    const TemporaryFolder folder;
    const std::string same = folder.makeFile("same", 5'000), other = folder.makeFile("other", 5'000);
    const std::string plan = folder.path("plan.json");
    ASSERT_EQ(run({"remove", "--save-plan", plan, "--delete", same, other}).status, 0);
    folder.makeFile("other", 6'000);
    for (const Paths &more : {Paths{}, Paths{"--json"}}) {
        Paths arguments = {"remove", "--plan", plan};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome asked = runOnTerminal(arguments, "n\n");
        EXPECT_EQ(asked.status, 1);
        EXPECT_THAT(asked.err, HasSubstr("A plan made on “"));
        EXPECT_THAT(asked.err, HasSubstr(same + "\nNot removed:\n" + other));
        EXPECT_THAT(asked.err, HasSubstr("Deleting frees now: "));
        EXPECT_THAT(asked.err, HasSubstr("\nDelete 1 item ("));
    }
    EXPECT_TRUE(isThere(same));
}

TEST(PlanFile, IsSavedWithAReportForScripts) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000), plan = folder.path("plan.json");
    const Outcome saved = run({"remove", "--json", "--as-admin", "--save-plan", plan, file, "/usr"});
    EXPECT_EQ(saved.status, 1);
    EXPECT_THAT(saved.err, HasSubstr("give \"--as-admin\" again with \"--plan\""));
    const QJsonDocument report = jsonIn(saved);
    EXPECT_EQ(report["plan"].toString().toStdString(), plan);
    EXPECT_EQ(report["items"].toInteger(), 1);
    EXPECT_EQ(pathsIn(report["leftOut"]), Paths{"/usr"});
    EXPECT_EQ(run({"remove", "--plan", plan, "--as-admin", "--dry-run"}).status, 0);
}

TEST(PlanFile, AllowsNothingThatRemoveRefuses) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const std::string good = run({"remove", "--dry-run", "--json", "--delete", file}).out;
    const std::string plan = folder.path("plan.json");
    write(plan, replaced(good, "\"" + file + "\"", "\"/usr\""));
    const Outcome guarded = run({"remove", "--plan", plan, "--yes", "--json"});
    EXPECT_EQ(guarded.status, 1);
    EXPECT_EQ(jsonIn(guarded)["failed"][0]["reason"].toString().toStdString(),
              "/usr is a structural directory and is never removed.");

    write(plan, good.substr(0, good.size() / 2));
    const Outcome damaged = run({"remove", "--plan", plan, "--yes"});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_THAT(damaged.err, HasSubstr("The plan is damaged."));
    EXPECT_THAT(run({"remove", "--plan", file, "--yes"}).err, HasSubstr("This file is no removal plan."));
    for (const Paths &extra : {Paths{file}, Paths{"--delete"}, Paths{"--hex"}, Paths{"--from0", "-"},
                               Paths{"--save-plan", folder.path("other-plan")}}) {
        Paths arguments = {"remove", "--yes", "--plan", plan};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        EXPECT_EQ(run(arguments).status, 2) << extra.front();
    }
    write(plan, run({"remove", "--dry-run", "--json", file}).out);
    const Outcome ofTrash = run({"remove", "--yes", "--plan", plan, "--as-admin"});
    EXPECT_EQ(ofTrash.status, 2);
    EXPECT_THAT(ofTrash.err, HasSubstr("this plan moves its items to the Trash"));
    EXPECT_TRUE(isThere(file));
    const Outcome refused = run({"remove", "--dry-run", "--delete", file, "/usr"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("never removed"));
    EXPECT_THAT(refused.out, ::testing::Not(HasSubstr("/usr\n")));
}

} // namespace brimvale::testing
