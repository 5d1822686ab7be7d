#include "Core/Update/InstallScript.h"

#include "Core/Text/Shell.h"
#include "Support/StandInTools.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::makeApp;
using testing::makeTool;
using testing::TemporaryFolder;
using testing::workingContent;

using Lines = std::vector<std::string>;

/// The identifier of a process that has ended.
pid_t endedProcess() {
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    waitpid(child, nullptr, 0);
    return child;
}

struct Outcome {
    std::optional<int> status; ///< nothing when the script was interrupted
    Lines log;                 ///< without the first line, which has the time in it
};

/// An installed and a staged application, under paths as awkward as they may be, and the tools of the script.
/// What it takes from the system goes through stand-ins as well, so that tests can meddle.
struct Scene {
    Scene() {
        static_cast<void>(testing::makeUpdateTools(folder));
        makeTool(folder, "sleep", "echo \"$1\" >>\"$folder/sleeps\"");
        for (const std::string name : {"rm", "mv", "date"})
            makeTool(folder, name, "exec /bin/" + name + " \"$@\"");
        makeApp(folder, installed, {.content = "old", .executable = "Brimvale 2;"});
        makeApp(folder, "tmp * \\n/update-1/New one.app", {.executable = "Brimvale 2;"});
    }

    /// Runs the script. Stand-ins find the scene in the variable `folder`, and the script's own process in
    /// the file "pid" there.
    [[nodiscard]] Outcome run() const {
        const std::string around = "folder=$0 PATH=\"$0/tools:$PATH\"; export folder PATH\n"
                                   "echo $$ >\"$0/pid\"\n"
                                   "exec /bin/sh -c \"$1\"";
        const auto result = Shell::runWithStatus(
            "/bin/sh", {"-c", around, folder.path(), installScript(installation)}, StandardError::withOutput);
        Lines log = linesOf("install log");
        if (!log.empty())
            log.erase(log.begin());
        return {result ? result->exitStatus : std::nullopt, log};
    }

    [[nodiscard]] Lines linesOf(const std::string &file) const {
        Lines lines;
        if (!fs::is_regular_file(folder.path(file))) // a pipe would block
            return lines;
        std::ifstream stream(folder.path(file));
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    /// Puts commands before what a tool does.
    void meddle(const std::string &tool, const std::string &commands) const {
        std::string honest = "tools/honest-" + tool;
        while (fs::exists(folder.path(honest)))
            honest += "-still";
        fs::rename(folder.path("tools/" + tool), folder.path(honest));
        makeTool(folder, tool, commands + "\nexec \"$folder/" + honest + "\" \"$@\"");
    }

    const std::string installed = "Applications $(exit) \"here\"/Brimvale 2;.app";
    TemporaryFolder folder;
    std::string current = folder.path(installed);
    std::string backup = current + ".old";
    std::string staging = folder.path("tmp * \\n/update-1");
    std::string staged = staging + "/New one.app";
    Installation installation{FileURL(staged), FileURL(current), "Contents/MacOS/Brimvale 2;", endedProcess(),
                              FileURL(folder.path("install log"))};
};

const std::string copyWithoutExecutable =
    "\"$folder/tools/honest-ditto\" \"$@\"; /bin/rm -r \"$2/Contents/MacOS\"; exit 0";

/// Has the script killed at the tool that it starts as the `step`th: before its work or, where it works on
/// many files, halfway through.
void interrupt(const Scene &scene, int step, bool isHalfway) {
    for (const std::string tool : {"date", "codesign", "rm", "mv", "ditto", "xattr", "open"}) {
        std::string work;
        if (isHalfway && tool == "rm")
            work = "/bin/rm -rf \"$2/Contents/MacOS\"\n";
        if (isHalfway && tool == "ditto")
            work = "mkdir -p \"$2/Contents\"; cp -R \"$1/Contents/MacOS\" \"$2/Contents\"\n";
        scene.meddle(tool, "echo " + tool +
                               " >>\"$folder/steps\"\n"
                               "if [ $(wc -l <\"$folder/steps\") -eq " +
                               std::to_string(step) + " ]; then\n" + work +
                               "kill -KILL \"$(cat \"$folder/pid\")\"\nexit 1\nfi");
    }
}

} // namespace

TEST(InstallScript, ReplacesTheApplicationAndOpensIt) {
    const Scene scene;
    makeApp(scene.folder, scene.installed + ".old", {.content = "stale"});
    const Outcome outcome = scene.run();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.log, (Lines{"ditto exit=0", "OK: updated, relaunching"}));
    EXPECT_EQ(workingContent(scene.current), "new");
    EXPECT_FALSE(fs::exists(scene.backup));
    EXPECT_FALSE(fs::exists(scene.staging));
    EXPECT_EQ(scene.linesOf("opened"), Lines{scene.current});
    EXPECT_EQ(scene.linesOf("sleeps"), Lines{});
}

TEST(InstallScript, AddsToTheLogAndGoesOnWithoutOne) {
    const Scene scene;
    scene.folder.writeFile("install log", "earlier\n");
    EXPECT_EQ(scene.run().status, 0);
    const Lines log = scene.linesOf("install log");
    ASSERT_EQ(log.size(), 4U);
    EXPECT_EQ(log[0], "earlier");
    EXPECT_THAT(log[1], ::testing::StartsWith("--- "));
    EXPECT_THAT(log[1], ::testing::HasSubstr(" update starting: " + scene.current + " <- "));
}

TEST(InstallScript, UsesNoLogThatOthersCouldHavePutThere) {
    struct Case {
        std::string name;
        std::function<void(const Scene &, const std::string &log)> make;
    };
    for (const Case &one : {
             Case{"a folder", [](const Scene &, const std::string &log) { fs::create_directory(log); }},
             Case{"a link",
                  [](const Scene &scene, const std::string &log) {
                      fs::create_symlink(scene.folder.path("kept"), log);
                  }},
             Case{"a link to nothing",
                  [](const Scene &scene, const std::string &log) {
                      fs::create_symlink(scene.folder.path("made"), log);
                  }},
             Case{"a second name",
                  [](const Scene &scene, const std::string &log) {
                      fs::create_hard_link(scene.folder.path("kept"), log);
                  }},
             Case{"a pipe", [](const Scene &, const std::string &log) { mkfifo(log.c_str(), 0666); }},
             Case{"the file of another user",
                  [](const Scene &, const std::string &log) {
                      std::ofstream(log) << "";
                      if (geteuid() == 0)
                          static_cast<void>(chown(log.c_str(), 65534, 65534));
                      else
                          fs::permissions(log, fs::perms::none);
                  }},
         }) {
        const Scene scene;
        const std::string log = scene.installation.log.path();
        scene.folder.writeFile("kept", "content");
        one.make(scene, log);
        auto running = std::async(std::launch::async, [&] { return scene.run(); });
        EXPECT_EQ(running.wait_for(std::chrono::seconds(20)), std::future_status::ready) << one.name;
        while (running.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
            close(open(log.c_str(), O_RDONLY | O_NONBLOCK)); // so a script that waits for a reader ends
        EXPECT_EQ(running.get().status, 0) << one.name;
        EXPECT_EQ(workingContent(scene.current), "new") << one.name;
        EXPECT_EQ(testing::contentOf(scene.folder.path("kept")), "content") << one.name;
        EXPECT_FALSE(fs::exists(scene.folder.path("made"))) << one.name;
        std::error_code error;
        EXPECT_TRUE(!fs::is_regular_file(log, error) || fs::file_size(log) <= 7) << one.name;
    }
}

TEST(InstallScript, IsNotStoppedBySignalsFromTheFirstMoveOn) {
    for (const std::string signal : {"HUP", "INT", "TERM", "PIPE"}) {
        const Scene scene;
        scene.meddle("rm", ": >\"$folder/moving\"");
        for (const std::string tool : {"mv", "ditto", "codesign", "xattr", "rm", "open"})
            scene.meddle(tool,
                         "[ ! -e \"$folder/moving\" ] || kill -" + signal + " \"$(cat \"$folder/pid\")\" $$");
        const Outcome outcome = scene.run();
        EXPECT_EQ(outcome.status, 0) << signal;
        EXPECT_EQ(outcome.log, (Lines{"ditto exit=0", "OK: updated, relaunching"})) << signal;
        EXPECT_EQ(workingContent(scene.current), "new") << signal;
        EXPECT_FALSE(fs::exists(scene.backup)) << signal;
    }
}

TEST(InstallScript, WaitsForTheApplicationToExit) {
    Scene scene;
    const pid_t application = fork();
    if (application == 0)
        while (true)
            pause();
    scene.installation.process = application;
    const std::string pid = std::to_string(application);
    scene.meddle("sleep", "if [ \"$(cat \"$folder/sleeps\" 2>/dev/null | wc -l)\" -eq 3 ]; then\n"
                          "    kill -KILL " +
                              pid +
                              "\n"
                              "    while kill -0 " +
                              pid +
                              " 2>/dev/null; do :; done\n"
                              "fi");
    // A process that nobody has waited for still counts as one.
    std::thread reaper([&] { waitpid(application, nullptr, 0); });
    const Outcome outcome = scene.run();
    kill(application, SIGKILL);
    reaper.join();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(scene.linesOf("sleeps"), Lines(4, "0.2"));
    EXPECT_EQ(workingContent(scene.current), "new");
}

TEST(InstallScript, TouchesNothingWhileTheApplicationRuns) {
    Scene scene;
    scene.installation.process = getpid();
    const Outcome outcome = scene.run();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.log, Lines{"ABORT: app still running after 30s, touching nothing"});
    EXPECT_EQ(scene.linesOf("sleeps").size(), 151U);
    EXPECT_EQ(workingContent(scene.current), "old");
    EXPECT_EQ(workingContent(scene.staged), "new");
}

TEST(InstallScript, LeavesAWorkingApplicationHoweverItFails) {
    struct Case {
        std::function<void(const Scene &)> meddle;
        Lines log;
        std::optional<std::string> atCurrent = "old";
        std::optional<std::string> atBackup = std::nullopt;
    };
    const std::vector<Case> cases = {
        {[](const Scene &scene) { fs::remove_all(scene.staging); },
         {"ABORT: staged copy is gone, installed app untouched"}},
        {[](const Scene &scene) { fs::remove(scene.staged + "/Contents/MacOS/Brimvale 2;"); },
         {"ABORT: staged copy has no executable, installed app untouched"}},
        {[](const Scene &scene) { fs::remove(scene.staged + "/Contents/last"); },
         {"ABORT: staged signature invalid, installed app untouched"}},
        {[](const Scene &scene) { std::ofstream(scene.staged + "/Contents/team") << "ABCDEFGHIJ"; },
         {"ABORT: staged copy signed by someone else, installed app untouched"}},
        {[](const Scene &scene) { scene.meddle("mv", "exit 1"); },
         {"FAIL: could not move the old bundle aside"}},
        {[](const Scene &scene) {
             makeApp(scene.folder, scene.installed + ".old", {.content = "stale"});
             scene.meddle("rm", "exit 1");
         },
         {"FAIL: could not move the old bundle aside"},
         "old",
         "stale"},
        {[](const Scene &scene) { scene.meddle("ditto", "exit 3"); },
         {"ditto exit=3", "FAIL: no bundle after copy", "FAIL: no executable after copy",
          "FAIL: signature invalid after copy", "restoring backup", "restored"}},
        {[](const Scene &scene) { scene.meddle("ditto", copyWithoutExecutable); },
         {"ditto exit=0", "FAIL: no executable after copy", "restoring backup", "restored"}},
        {[](const Scene &scene) {
             scene.meddle("ditto", "\"$folder/tools/honest-ditto\" \"$@\"; rm \"$2/Contents/last\"; exit 28");
         },
         {"ditto exit=28", "FAIL: signature invalid after copy", "restoring backup", "restored"}},
        {[](const Scene &scene) {
             scene.meddle("ditto",
                          "\"$folder/tools/honest-ditto\" \"$@\"; echo X >\"$2/Contents/team\"; exit 0");
         },
         {"ditto exit=0", "FAIL: signed by someone else after copy", "restoring backup", "restored"}},
        {[](const Scene &scene) {
             scene.meddle("ditto", copyWithoutExecutable);
             scene.meddle("mv", "case $1 in *.old) exit 1 ;; esac");
         },
         {"ditto exit=0", "FAIL: no executable after copy", "restoring backup", "FAIL: restore failed"},
         std::nullopt,
         "old"},
        {[](const Scene &scene) {
             scene.meddle("ditto", copyWithoutExecutable);
             scene.meddle("rm", "case $2 in *.old) ;; *) exit 1 ;; esac");
         },
         {"ditto exit=0", "FAIL: no executable after copy", "restoring backup", "FAIL: restore failed"},
         std::nullopt,
         "old"},
    };
    for (const Case &one : cases) {
        const Scene scene;
        one.meddle(scene);
        const Outcome outcome = scene.run();
        const std::string name = ::testing::PrintToString(one.log);
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.log, one.log);
        EXPECT_EQ(workingContent(scene.current), one.atCurrent) << name;
        EXPECT_EQ(workingContent(scene.backup), one.atBackup) << name;
        EXPECT_FALSE(fs::exists(scene.folder.path("opened"))) << name;
    }
}

TEST(InstallScript, LeavesAWorkingApplicationWhereverItIsInterrupted) {
    for (const bool fails : {false, true})
        for (const bool isHalfway : {false, true}) {
            int step = 0;
            Outcome outcome;
            do {
                const Scene scene;
                if (fails)
                    scene.meddle("ditto", copyWithoutExecutable);
                interrupt(scene, ++step, isHalfway);
                outcome = scene.run();
                EXPECT_TRUE(workingContent(scene.current) || workingContent(scene.backup))
                    << "halfway: " << isHalfway << ", " << ::testing::PrintToString(scene.linesOf("steps"));
            } while (!outcome.status && step < 20);
            EXPECT_EQ(outcome.status, fails ? 1 : 0);
            EXPECT_EQ(step, fails ? 11 : 12) << "one more than the script starts tools";
        }
}

} // namespace brimvale
