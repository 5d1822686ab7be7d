#include "Core/Update/Installer.h"

#include "Support/StandInTools.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::makeApp;
using testing::makeTool;
using testing::TemporaryFolder;
using testing::workingContent;

using Lines = std::vector<std::string>;

/// An installed and a newer staged application, and an installer whose tools are stand-ins.
struct InstallerScene {
    InstallerScene() {
        environment.tools = testing::makeUpdateTools(folder);
        makeApp(folder, "Applications/Brim vale.app",
                {.content = "old", .executable = "Brim vale", .build = "41"});
        makeApp(folder, "tmp/update-1/New.app", {.executable = "Brim vale"});
    }

    /// Installs, and returns the lines of the log without the first one, which has the time in it.
    Lines install() {
        Lines lines;
        environment.log = [&](const std::string &line) { lines.push_back(line); };
        hasSucceeded = installUpdate(installation, environment);
        if (!lines.empty())
            lines.erase(lines.begin());
        return lines;
    }

    /// Puts commands before what a tool does.
    void meddle(const std::string &tool, const std::string &commands) const {
        const std::string honest = folder.path("tools/honest-" + tool);
        fs::rename(folder.path("tools/" + tool), honest);
        makeTool(folder, tool, commands + "\nexec '" + honest + "' \"$@\"");
    }

    /// Fails the renaming that is the `number`th.
    void failRename(int number) {
        environment.rename = [number, count = 0, rename = environment.rename](const FileURL &from,
                                                                              const FileURL &to) mutable {
            return ++count == number ? std::make_error_code(std::errc::operation_not_permitted)
                                     : rename(from, to);
        };
    }

    TemporaryFolder folder;
    std::string current = folder.path("Applications/Brim vale.app");
    std::string backup = current + ".old";
    std::string staging = folder.path("tmp/update-1");
    std::string staged = staging + "/New.app";
    Installation installation{FileURL(staged), FileURL(current), "", 999'999'999,
                              FileURL(folder.path("log"))};
    InstallerEnvironment environment = InstallerEnvironment::current(installation);
    bool hasSucceeded = false;
};

void write(const std::string &file, const std::string &content) {
    std::ofstream(file) << content;
}

/// Ends the process at the step with this number; a step is a renaming, before or after it, or a tool.
void interruptAt(InstallerScene &scene, int step) {
    const std::string steps = scene.folder.path("steps");
    const std::string count = "echo >>'" + steps + "'; [ $(wc -l <'" + steps + "') -ne " +
                              std::to_string(step) + " ] || kill -KILL $PPID";
    for (const char *tool : {"xattr", "codesign", "open"})
        scene.meddle(tool, count);
    const auto pass = [steps, step] {
        std::ofstream(steps, std::ios::app) << "\n";
        if (fs::file_size(steps) == static_cast<std::uintmax_t>(step))
            std::raise(SIGKILL);
    };
    scene.environment.rename = [pass, rename = scene.environment.rename](const FileURL &from,
                                                                         const FileURL &to) {
        pass();
        const std::error_code error = rename(from, to);
        pass();
        return error;
    };
}

} // namespace

TEST(Installer, ReplacesTheApplicationAndOpensIt) {
    InstallerScene scene;
    makeApp(scene.folder, "Applications/Brim vale.app.old", {.content = "stale"});
    EXPECT_EQ(scene.install(), Lines{"OK: updated, relaunching"});
    EXPECT_TRUE(scene.hasSucceeded);
    EXPECT_EQ(workingContent(scene.current), "new");
    EXPECT_FALSE(fs::exists(scene.backup));
    EXPECT_FALSE(fs::exists(scene.staging));
    EXPECT_EQ(testing::contentOf(scene.folder.path("opened")), scene.current);
}

TEST(Installer, WaitsForTheApplicationToEndButNotForEver) {
    for (const int looks : {3, 1000}) {
        InstallerScene scene;
        int looked = 0;
        scene.environment.isRunning = [&](std::int64_t process) {
            EXPECT_EQ(process, 999'999'999);
            EXPECT_EQ(workingContent(scene.current), "old");
            return ++looked <= looks;
        };
        scene.environment.pause = {};
        const bool isEnough = looks < 100;
        EXPECT_EQ(scene.install(), Lines{isEnough ? "OK: updated, relaunching"
                                                  : "ABORT: app still running after 30s, touching nothing"});
        EXPECT_EQ(looked, isEnough ? looks + 1 : 152);
        EXPECT_EQ(workingContent(scene.current), isEnough ? "new" : "old");
        EXPECT_EQ(fs::exists(scene.staged), !isEnough);
        EXPECT_EQ(fs::exists(scene.folder.path("opened")), isEnough) << "a running one needs no opening";
    }
}

TEST(Installer, TakesOnlyANewerReleaseOfOurOwnThatNobodyElseCanChange) {
    struct Case {
        std::function<void(InstallerScene &)> spoil;
        std::string reason;
    };
    const auto otherPlaces = [](auto change) {
        return [change](InstallerScene &scene) {
            change(scene.installation);
            scene.environment.isRunning = [](std::int64_t) { return false; };
        };
    };
    const auto linked = [](const std::string &item) {
        fs::rename(item, item + "-real");
        fs::create_directory_symlink(item + "-real", item);
    };
    for (const Case &one : {
             Case{[](auto &scene) { fs::remove_all(scene.staged); }, "staged copy is gone"},
             Case{[](auto &scene) { fs::remove(scene.staged + "/Contents/MacOS/Brim vale"); },
                  "staged copy has no executable"},
             Case{[](auto &scene) { fs::remove(scene.staged + "/Contents/last"); },
                  "staged signature invalid"},
             Case{[](auto &scene) { write(scene.staged + "/Contents/team", "ABCDEFGHIJ"); },
                  "staged copy signed by someone else"},
             Case{[](auto &scene) { write(scene.current + "/Contents/team", "ABCDEFGHIJ"); },
                  "installed app is not signed by us"},
             Case{[](auto &scene) {
                      makeApp(scene.folder, "tmp/update-1/New.app",
                              {.executable = "Brim vale", .identifier = "example.brimvale.Other"});
                  },
                  "staged copy is a different program"},
             Case{[](auto &scene) {
                      makeApp(scene.folder, "tmp/update-1/New.app",
                              {.executable = "Brim vale", .build = "41"});
                  },
                  "staged copy is not newer"},
             Case{[&](auto &scene) { linked(scene.staged); }, "staged copy is gone"},
             Case{[&](auto &scene) { linked(scene.current); }, "no application to replace"},
             Case{[&](auto &scene) { linked(scene.staging); },
                  "the staged copy is in no unpack folder of its own"},
             Case{[&](auto &scene) { linked(scene.folder.path("Applications")); },
                  "another user could change the applications"},
             Case{[](auto &scene) {
                      fs::rename(scene.staging, scene.folder.path("tmp/Downloads"));
                      scene.installation.staged = FileURL(scene.folder.path("tmp/Downloads/New.app"));
                  },
                  "the staged copy is in no unpack folder of its own"},
             Case{otherPlaces([](Installation &places) { std::swap(places.staged, places.current); }),
                  "the staged copy is in no unpack folder of its own"},
             Case{otherPlaces([](Installation &places) {
                      places.current = FileURL(places.staged.path() + "/../../../Applications/Brim vale.app");
                  }),
                  "not the plain paths of two applications"},
             Case{otherPlaces([](Installation &places) { places.staged = FileURL("/"); }),
                  "not the plain paths of two applications"},
             Case{[](auto &scene) { fs::permissions(scene.staging, fs::perms::all); },
                  "another user could change the applications"},
             Case{[](auto &scene) { fs::permissions(scene.current, fs::perms::all); },
                  "another user could change the applications"},
         }) {
        InstallerScene scene;
        one.spoil(scene);
        EXPECT_EQ(scene.install(), (Lines{"ABORT: " + one.reason + ", installed app untouched",
                                          "relaunching the installed app"}));
        EXPECT_FALSE(scene.hasSucceeded);
        EXPECT_EQ(workingContent(scene.current), "old") << one.reason;
        EXPECT_FALSE(fs::exists(scene.backup)) << one.reason;
    }
}

TEST(Installer, ChangesNothingInAPlaceThatItRefuses) {
    InstallerScene scene;
    const std::string changed = scene.folder.path("changed");
    scene.meddle("xattr", "touch '" + changed + "'");
    scene.installation.staged = FileURL(scene.folder.path("tmp"));
    EXPECT_EQ(scene.install().front(),
              "ABORT: not the plain paths of two applications, installed app untouched");
    EXPECT_FALSE(fs::exists(changed));
}

TEST(Installer, RefusesAsAdministratorWhatBelongsToAUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    InstallerScene scene;
    for (const std::string &item : {scene.staging, scene.staged, scene.current}) {
        ASSERT_EQ(chown(item.c_str(), 65534, 65534), 0);
        EXPECT_EQ(refusalToExchange(FileURL(scene.staged), FileURL(scene.current), scene.environment.tools),
                  "another user could change the applications");
        ASSERT_EQ(chown(item.c_str(), 0, 0), 0);
    }
}

TEST(Installer, PutsTheOldApplicationBackHoweverItFails) {
    struct Case {
        std::function<void(InstallerScene &)> meddle;
        Lines log;
        std::optional<std::string> atCurrent = "old";
        std::optional<std::string> atBackup = std::nullopt;
    };
    // Once the old application has been moved aside, the signature of the one in its place is taken for
    // invalid.
    const auto spoilSignature = [](InstallerScene &scene) {
        scene.meddle("codesign", "[ ! -e '" + scene.backup + "' ] || exit 1");
    };
    for (const Case &one : {
             Case{[](auto &scene) { scene.failRename(1); }, {"FAIL: could not move the old bundle aside"}},
             Case{[](auto &scene) { scene.failRename(2); },
                  {"FAIL: could not move the new bundle in", "restoring backup", "restored"}},
             Case{spoilSignature, {"FAIL: signature invalid after the move", "restoring backup", "restored"}},
             Case{[&](auto &scene) {
                      spoilSignature(scene);
                      scene.failRename(4);
                  },
                  {"FAIL: signature invalid after the move", "restoring backup", "FAIL: restore failed"},
                  std::nullopt,
                  "old"},
         }) {
        InstallerScene scene;
        one.meddle(scene);
        Lines log = one.log;
        log.emplace_back("relaunching the installed app");
        EXPECT_EQ(scene.install(), log);
        EXPECT_FALSE(scene.hasSucceeded);
        EXPECT_EQ(workingContent(scene.current), one.atCurrent) << ::testing::PrintToString(one.log);
        EXPECT_EQ(workingContent(scene.backup), one.atBackup) << ::testing::PrintToString(one.log);
        EXPECT_EQ(fs::exists(scene.folder.path("opened")), one.atCurrent.has_value());
    }
}

TEST(Installer, LeavesAWorkingApplicationWhereverItIsInterrupted) {
    int status = 0, step = 0;
    do {
        InstallerScene scene;
        interruptAt(scene, ++step);
        const pid_t installer = fork();
        if (installer == 0)
            _exit(installUpdate(scene.installation, scene.environment) ? 0 : 1);
        waitpid(installer, &status, 0);
        EXPECT_TRUE(workingContent(scene.current) || workingContent(scene.backup)) << step;
    } while (WIFSIGNALED(status) && step < 20);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(step, 11) << "one more than there are steps";
}

TEST(Installer, WritesToNoLogThatOthersCouldHavePutThere) {
    for (const bool isLink : {true, false}) {
        InstallerScene scene;
        scene.folder.writeFile("kept", "content\n");
        fs::remove(scene.folder.path("log")); // it was made with the scene
        if (isLink)
            fs::create_symlink(scene.folder.path("kept"), scene.folder.path("log"));
        else
            scene.folder.writeFile("log", "earlier\n");
        scene.environment = InstallerEnvironment::current(scene.installation);
        scene.environment.log("line");
        EXPECT_EQ(testing::contentOf(scene.folder.path("kept")), "content\n");
        EXPECT_EQ(testing::contentOf(scene.folder.path("log")), isLink ? "content\n" : "earlier\nline\n");
    }
}

} // namespace brimvale
