#include "CommandLine/Program.h"
#include "CommandLine/Terminal.h"
#include "Support/SampleApps.h"
#include "Support/SampleDesktop.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>
#include <unistd.h>

namespace brimvale::testing {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using Paths = std::vector<std::string>;

bool exists(const std::string &path) {
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

/// A desktop with one application of each kind, and stand-ins for the programs of the package managers. What
/// these were called with is in the file "calls".
class Uninstalling : public ::testing::Test {
protected:
    Uninstalling() {
        makeSampleDesktop(desktop);
        data = desktop.makeFile("home/user/.var/app/org.example.Maps/data/x", 50'000);
        data = desktop.path("home/user/.var/app/org.example.Maps");
    }

    /// `body` runs in a shell that stops at once without a terminal to read from.
    void makeManager(const std::string &name, const std::string &body) {
        desktop.makeScript("usr/bin/" + name, "[ -t 0 ] || { echo 'no terminal' >&2; exit 9; }\n"
                                              "echo \"" +
                                                  name + " $*\" >>'" + desktop.path("calls") + "'\n" + body);
    }

    Outcome run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "uninstall");
        return runProgramOnLinux(desktop.path(), arguments, [this] {
            dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
            inHome(desktop.path("home/user"))();
        });
    }

    /// The items that failed, each with its reason.
    static Paths failuresIn(const QJsonDocument &document) {
        Paths lines;
        for (const QJsonValue &one : document["failed"].toArray())
            lines.push_back((one["url"].toString() + ": " + one["reason"].toString()).toStdString());
        return lines;
    }

    SampleDesktop desktop;
    std::string data;
    const std::string maps = desktop.path("var/lib/flatpak/app/org.example.Maps");
};

} // namespace

TEST_F(Uninstalling, LetsFlatpakRemoveAnAppAndThenRemovesItsFiles) {
    makeManager("flatpak", "rm -r '" + desktop.path("var/lib/flatpak/app/") + "'\"$4\"");
    const Outcome plan = run({"org.example.Maps", "--dry-run", "--with-leftovers"});
    EXPECT_EQ(plan.status, 0) << plan.err;
    EXPECT_THAT(plan.out,
                AllOf(StartsWith("Maps: This removes the app with “flatpak uninstall --system "
                                 "org.example.Maps” and 1 supporting item, freeing about 345.7 MB.\n"),
                      HasSubstr(data + "\n")));
    const Outcome saved = run({"org.example.Maps", "--save-plan", desktop.path("plan")});
    EXPECT_EQ(saved.status, 1);
    EXPECT_THAT(saved.err, HasSubstr("no plan was written: this app is removed by another program"));
    EXPECT_FALSE(exists(desktop.path("plan")));
    EXPECT_FALSE(exists(desktop.path("calls")));

    const Outcome outcome = run({"org.example.Maps", "--with-leftovers", "--delete", "--yes", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    EXPECT_EQ(contentOf(desktop.path("calls")), "flatpak uninstall --system -y org.example.Maps\n");
    EXPECT_EQ(pathsIn(jsonIn(outcome)["succeeded"]), (Paths{maps, data}));
    EXPECT_GE(jsonIn(outcome)["bytesDeleted"].toInteger(), 345'678'901 + 50'000);
    EXPECT_FALSE(exists(data));
    EXPECT_EQ(run({"org.example.Maps", "--dry-run"}).status, 1) << "it is not installed any more";
}

TEST_F(Uninstalling, KeepsWhatAStorageCategoryProtectsUnlessTold) {
    desktop.installFlatpak("var/lib/flatpak", "org.mozilla.Thunderbird", "Thunderbird");
    desktop.makeFile("home/user/.var/app/org.mozilla.Thunderbird/.thunderbird/abc/Mail/x", 50'000);
    makeManager("flatpak", "rm -r '" + desktop.path("var/lib/flatpak/app/") + "'\"$4\"");
    const std::string mail = desktop.path("home/user/.var/app/org.mozilla.Thunderbird");
    const std::string warning = "it is the only copy";
    const Outcome plan = run({"org.mozilla.Thunderbird", "--with-leftovers", "--dry-run", "--json"});
    EXPECT_EQ(plan.status, 0) << plan.err;
    EXPECT_EQ(jsonIn(plan)["application"]["leftovers"].toArray().size(), 0);
    EXPECT_EQ(jsonIn(plan)["kept"][0]["url"].toString().toStdString(), mail);
    EXPECT_THAT(plan.err, AllOf(HasSubstr(mail), HasSubstr(warning), HasSubstr(" Use --anyway")));
    const Outcome all = run({"org.mozilla.Thunderbird", "--with-leftovers", "--anyway", "--delete", "--yes"});
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_THAT(all.err, AllOf(HasSubstr(mail), HasSubstr(warning), Not(HasSubstr("--anyway"))));
    EXPECT_FALSE(exists(mail));
}

TEST_F(Uninstalling, KeepsTheFilesOfAnAppThatStays) {
    const std::string hint = " Try this in a terminal: flatpak uninstall --system org.example.Maps";
    struct Case {
        std::string body;
        std::string reason;
    };
    for (const auto &[body, reason] :
         {Case{"echo Looking; printf 'Error: \\033[1mnot\\033[0m allowed\\n\\n' >&2; exit 1",
               "“flatpak” reports: Error: ␛[1mnot␛[0m allowed" + hint},
          Case{"exit 3", "“flatpak” failed without a message." + hint},
          Case{"echo Uninstall complete.",
               "“flatpak” finished without an error, but the app is still there."}}) {
        makeManager("flatpak", body);
        const Outcome outcome = run({"org.example.Maps", "--with-leftovers", "--yes", "--json"});
        EXPECT_EQ(outcome.status, 1) << body;
        EXPECT_EQ(failuresIn(jsonIn(outcome)),
                  (Paths{maps + ": " + reason, data + ": It is kept because the app was not removed."}));
        EXPECT_TRUE(exists(data));
    }
    std::filesystem::remove(desktop.path("usr/bin/flatpak"));
    EXPECT_THAT(run({"org.example.Maps", "--yes"}).err, HasSubstr("“flatpak” is not installed."));
    // It may have failed only after the app was gone.
    makeManager("flatpak", "rm -r '" + maps + "'; echo 'no icons' >&2; exit 1");
    const Outcome late = run({"org.example.Maps", "--yes", "--json"});
    EXPECT_EQ(failuresIn(jsonIn(late)), Paths{maps + ": “flatpak” reports: no icons"});
    EXPECT_EQ(pathsIn(jsonIn(late)["goneAnyway"]), Paths{maps});
}

TEST_F(Uninstalling, StopsAProgramThatHangs) {
    makeManager("flatpak", "kill -INT $PPID; exec sleep 60");
    const Outcome outcome = run({"org.example.Maps", "--with-leftovers", "--yes", "--json"});
    EXPECT_EQ(outcome.status, 130) << outcome.err;
    EXPECT_EQ(failuresIn(jsonIn(outcome)).front(), maps + ": It was stopped.");
    EXPECT_TRUE(exists(data));
}

TEST_F(Uninstalling, CountsWhatASnapTakesWithIt) {
    desktop.makeFile("home/user/snap/drawer/common/x", 10'000);
    makeManager("snap", "rm '" + desktop.path("var/lib/snapd/snaps") + "'/\"$2\"_*; rm -r '" +
                            desktop.path("home/user/snap") + "'/\"$2\"");
    const Outcome outcome = run({"drawer", "--with-leftovers", "--yes", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    EXPECT_EQ(contentOf(desktop.path("calls")), "snap remove drawer\n");
    EXPECT_EQ(
        pathsIn(jsonIn(outcome)["succeeded"]),
        (Paths{desktop.path("var/lib/snapd/snaps/drawer_10.snap"), desktop.path("home/user/snap/drawer")}));
    EXPECT_EQ(jsonIn(outcome)["remarks"][0]["reason"], "It was removed together with the app.");
    EXPECT_EQ(run({"core22", "--yes"}).out, "core22: This is a system app. Brimvale will not remove it.\n");
}

TEST_F(Uninstalling, PrintsTheCommandForAPackage) {
    const Outcome outcome = run({"example-viewer", "--yes"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "Viewer: It belongs to the package example-viewer. Remove it with this command:\n"
                           "    sudo apt remove example-viewer\n");
    const QJsonDocument json = jsonIn(run({"example-viewer", "--json", "--dry-run"}));
    EXPECT_EQ(json["isPossible"], false);
    EXPECT_EQ(json["command"], "sudo apt remove example-viewer");
    EXPECT_EQ(json["application"]["app"]["name"], "Viewer");
    EXPECT_TRUE(exists(desktop.path("usr/bin/viewer")));

    desktop.makeProgram("usr/bin/store");
    desktop.makeEntry("usr/share/applications/store.desktop", "Store", "store %U",
                      "MimeType=x-scheme-handler/appstream;\n");
    desktop.writeFile("usr/share/metainfo/viewer.xml", "<component><id>org.example.Viewer</id></component>");
    EXPECT_THAT(run({"example-viewer", "--yes"}).out,
                HasSubstr("Remove it in the software center, or with this command:\n"
                          "    sudo apt remove example-viewer\n    xdg-open appstream:org.example.Viewer\n"));
    EXPECT_EQ(jsonIn(run({"example-viewer", "--json", "--dry-run"}))["application"]["app"]["removal"]["link"],
              "appstream:org.example.Viewer");
}

TEST_F(Uninstalling, RemovesAnAppImageWithItsEntry) {
    const std::string image = desktop.path("home/user/Applications/Painter-2.1-x86_64.AppImage");
    const std::string entry =
        desktop.path("home/user/.local/share/applications/appimagekit_abc-painter.desktop");
    desktop.makeFile("home/user/.config/painter/x", 10); // likely only
    EXPECT_EQ(run({image, "--delete"}).status, 2) << "there is nobody to ask";
    EXPECT_TRUE(exists(image));
    desktop.makeFile("home/user/.config/appimagekit_abc-painter/x", 10); // surely, but no part of the app
    EXPECT_EQ(jsonIn(run({image, "--dry-run", "--with-leftovers", "--json"}))["application"]["leftovers"]
                  .toArray()
                  .size(),
              2);
    EXPECT_EQ(
        jsonIn(run({image, "--dry-run", "--json"}))["plan"]["items"][1]["path"].toString().toStdString(),
        image);
    const Outcome outcome = run({image, "--delete", "--yes"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_FALSE(exists(image));
    EXPECT_FALSE(exists(entry));
    EXPECT_TRUE(exists(desktop.path("home/user/.config/painter/x")));
    EXPECT_TRUE(exists(desktop.path("home/user/.config/appimagekit_abc-painter/x")));
    EXPECT_THAT(run({desktop.path("home/user/editor"), "--dry-run"}).out,
                HasSubstr("use instead: " + desktop.path("home/user/editor/uninstall.sh") + "\n"));
    EXPECT_THAT(run({"nothing", "--yes"}).err, HasSubstr("neither an app nor"));
}

TEST_F(Uninstalling, LeavesOrphansToBeFound) {
    desktop.makeFile("home/user/.var/app/org.example.Gone/data/x", 50'000);
    const auto leftovers = [&](const std::vector<std::string> &arguments) {
        return runProgramOnLinux(desktop.path(), arguments, inHome(desktop.path("home/user")));
    };
    const Outcome table = leftovers({"leftovers", "--orphans"});
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_THAT(table.out, AllOf(HasSubstr("  data of a Flatpak that is not installed  "),
                                 HasSubstr(desktop.path("home/user/.var/app/org.example.Gone  [careful]\n")),
                                 Not(HasSubstr("org.example.Maps"))));
    const QJsonArray rows = jsonIn(leftovers({"leftovers", "--orphans", "--json"})).array();
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows[0]["url"].toString().toStdString(), desktop.path("home/user/.var/app/org.example.Gone"));
    EXPECT_TRUE(rows[0]["lastChange"].isString());
    EXPECT_EQ(leftovers({"leftovers", "--orphans", "drawer"}).status, 2);
    EXPECT_EQ(leftovers({"leftovers"}).status, 2);
}

TEST(Uninstall, RemovesABundleAfterAQuestion) {
    const TemporaryFolder home;
    makeBundle(home, "Applications/Acme.app", {"com.example.acme", "Acme", {}, {}, {}});
    home.makeFile("Library/Caches/com.example.acme/data", 50'000);
    home.makeFile("Library/LaunchAgents/Acme.plist", 100);
    const auto answered = [&](std::string_view answer) {
        Terminal terminal;
        std::thread user([&] { terminal.answer(" [y/N] ", answer); });
        const Outcome outcome = runProgramOnMac(
            home.path("nothing"), {"uninstall", "com.example.acme", "--with-leftovers", "--delete"}, [&] {
                inHome(home.path())();
                dup2(terminal.device(), STDIN_FILENO);
                dup2(terminal.device(), STDERR_FILENO);
            });
        user.join();
        return outcome;
    };
    const Outcome refused = answered("n\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.out, StartsWith("Acme: This removes the app bundle and 1 supporting item, freeing"));
    EXPECT_TRUE(exists(home.path("Applications/Acme.app")));
    EXPECT_EQ(answered("y\n").status, 0);
    EXPECT_FALSE(exists(home.path("Applications/Acme.app")));
    EXPECT_FALSE(exists(home.path("Library/Caches/com.example.acme")));
    EXPECT_TRUE(exists(home.path("Library/LaunchAgents/Acme.plist"))) << "it only has the same name";
}

} // namespace brimvale::testing
