#include "Core/Apps/Linux/LinuxApps.h"

#include "Base/KeyFile.h"
#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Linux/AppFinders.h"
#include "Core/Apps/Linux/AppProcesses.h"
#include "Core/Apps/Linux/Packages.h"
#include "Core/Apps/RunningApp.h"
#include "Support/EnvironmentVariable.h"
#include "Support/SampleDesktop.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::linuxApps {

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::SampleDesktop;
using ::testing::UnorderedElementsAre;

std::string removalOf(const InstalledApp &app) {
    if (const auto *command = std::get_if<RemovedByCommand>(&app.removal)) {
        std::string words = command->program;
        for (const std::string &argument : command->arguments)
            words += ' ' + argument;
        return words;
    }
    if (const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal))
        return "terminal: " + inTerminal->command;
    if (const auto *elsewhere = std::get_if<RemovedElsewhere>(&app.removal))
        return "in " + elsewhere->program;
    return std::get<RemovedAsItem>(app.removal).uninstaller.empty() ? "item" : "item with uninstaller";
}

/// Name, kind, version, identifier, origin, known size, place and removal of each.
std::vector<std::string> described(const std::vector<InstalledApp> &apps, const SampleDesktop &desktop) {
    std::vector<std::string> lines;
    for (const InstalledApp &app : apps)
        lines.push_back(app.name + '|' + identifier(app.kind) + '|' + app.version.value_or("-") + '|' +
                        app.bundleID.value_or("-") + '|' + app.origin + '|' +
                        (app.knownSize ? std::to_string(*app.knownSize) : "-") + '|' +
                        app.url.path().substr(desktop.path().size()) + '|' + removalOf(app) +
                        (app.isSystemApp ? "|system" : ""));
    return lines;
}

const InstalledApp &named(const std::vector<InstalledApp> &apps, const std::string &name) {
    static const InstalledApp none{FileURL("/"), "none", {}, {}, false, false, {}};
    for (const InstalledApp &app : apps)
        if (app.name == name)
            return app;
    ADD_FAILURE() << "no " << name;
    return none;
}

} // namespace

TEST(LinuxApps, ListsEveryKindOnce) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    const testing::EnvironmentVariable shown("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const testing::EnvironmentVariable language("LC_ALL", "de_CH.UTF-8");
    const std::vector<InstalledApp> apps = AppInventory::scan(true, desktop.host());
    const std::string snaps =
        std::to_string(testing::allocatedBytes(desktop.path("var/lib/snapd/snaps/drawer_9.snap")) +
                       testing::allocatedBytes(desktop.path("var/lib/snapd/snaps/drawer_10.snap")));
    const std::string core =
        std::to_string(testing::allocatedBytes(desktop.path("var/lib/snapd/snaps/core22_1.snap")));
    const std::string own = "/home/user/.local/share/applications/";
    EXPECT_THAT(
        described(apps, desktop),
        ElementsAreArray(std::vector<std::string>{
            // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): long rows take several lines
            "Arch Tool|package|3-1|arch-tool|arch-tool|123456|/usr/share/applications/arch-tool.desktop|"
            "terminal: sudo pacman -Rs arch-tool",
            "Betrachter|package|1.4-1|org.example.Viewer|example-viewer|2097152|"
            "/usr/share/applications/org.example.Viewer.desktop|terminal: sudo apt remove example-viewer",
            "Chat|by-hand|-|chat||-|/opt/chat|item",
            "Cleaner|package|4|org.example.Cleaner|cleaner|102400|"
            "/usr/share/applications/org.example.Cleaner.desktop|terminal: sudo apt remove cleaner",
            "core22|snap|-|core22||" + core + "|/var/lib/snapd/snaps/core22_1.snap|snap remove core22|system",
            "Drawer|snap|1.0|drawer||" + snaps + "|/var/lib/snapd/snaps/drawer_10.snap|snap remove drawer",
            "Editor|by-hand|-|editor||-|/home/user/editor|item with uninstaller",
            "Game|steam-game|-|Game||9000000|" + own + "Game.desktop|in Steam",
            "Mail Page|web-app|-|chrome-abc-Default||0|" + own + "chrome-abc-Default.desktop|in the browser",
            "Maps|flatpak|47.1|org.example.Maps|flathub|345678901|/var/lib/flatpak/app/org.example.Maps|"
            "flatpak uninstall --system -y org.example.Maps",
            "My Browser|package|99|my-browser|vendor-browser|409600|" + own +
                "my-browser.desktop|"
                "terminal: sudo apt remove vendor-browser",
            "Notes|windows-program|-|wine-Programs-Notes||0|" + own + "wine/Programs/Notes.desktop|in Wine",
            "Office|package|7|office|office|102400|/usr/share/applications/office.desktop|"
            "terminal: sudo apt remove office",
            "Painter|appimage|2.1.7|appimagekit_abc-painter||-|"
            "/home/user/Applications/Painter-2.1-x86_64.AppImage|item",
            "Plain|appimage|3.0|-||-|/opt/tools/Plain_v3.0|item",
            "Player|flatpak|47.1|com.example.Player|flathub|345678901|"
            "/home/user/.local/share/flatpak/app/com.example.Player|"
            "flatpak uninstall --user -y com.example.Player",
            "Run|by-hand|-|run||-|/home/user/Documents/scripts/run|item",
            "Shell|package|43|org.gnome.Shell|gnome-shell|921600|"
            "/usr/share/applications/org.gnome.Shell.desktop|terminal: sudo apt remove gnome-shell|system",
            "Single|by-hand|-|single||-|/home/user/.local/bin/single|item",
        }));
    EXPECT_EQ(AppInventory::scan(false, desktop.host()).size(), apps.size() - 2);

    const auto icon = [&](const char *name) { return named(apps, name).iconPath; };
    EXPECT_EQ(icon("Betrachter"), desktop.path("usr/share/icons/hicolor/48x48/apps/org.example.Viewer.png"));
    EXPECT_EQ(icon("Drawer"), desktop.path("snap/drawer/current/meta/gui/icon.png"));
    EXPECT_EQ(icon("Office"), "");
    EXPECT_THAT(named(apps, "Office").names.identifiers, ElementsAre("office", "office-writer"));
    EXPECT_THAT(named(apps, "Drawer").names.identifiers, ElementsAre("drawer_drawer", "org.example.Drawer"));
}

TEST(LinuxApps, TheUsersEntryReplacesThatOfAPackage) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    desktop.makeEntry("home/user/.local/share/applications/org.example.Viewer.desktop", "My Viewer",
                      "viewer -x");
    const std::vector<InstalledApp> apps = AppInventory::scan(false, desktop.host());
    EXPECT_EQ(named(apps, "My Viewer").origin, "example-viewer");
    desktop.writeFile("home/user/.local/share/applications/org.example.Viewer.desktop",
                      "[Desktop Entry]\nType=Application\nName=My Viewer\nExec=viewer\nNoDisplay=true\n");
    for (const InstalledApp &app : AppInventory::scan(false, desktop.host()))
        EXPECT_NE(app.origin, "example-viewer");
}

TEST(LinuxApps, TakesNoNameThatIsMoreThanAName) {
    const SampleDesktop desktop;
    for (const char *name : {"x;reboot", "-y", "$(reboot)", "a b", "..."}) {
        desktop.installFlatpak("home/user/.local/share/flatpak", name, "Evil");
        desktop.installSnap(name, "1", "", 10);
    }
    EXPECT_THAT(AppInventory::scan(true, desktop.host()), IsEmpty());
}

TEST(LinuxApps, FindsTheFolderThatAProgramHasForItself) {
    const SampleDesktop desktop;
    const DesktopPlaces places = *catalogOf(System::linux).desktopPlaces(desktop.host());
    const auto folderOf = [&](const std::string &program) {
        desktop.makeProgram(program);
        const std::string folder = ownFolderOf(desktop.path(program), places);
        return folder.empty() ? folder : folder.substr(desktop.path().size() + 1);
    };
    EXPECT_EQ(folderOf("usr/bin/tool"), "");
    EXPECT_EQ(folderOf("opt/vendor/one/bin/one"), "opt/vendor");
    EXPECT_EQ(folderOf("usr/local/bin/tool"), "usr/local/bin/tool");
    EXPECT_EQ(folderOf("usr/local/lib/suite/suite"), "usr/local/lib/suite");
    EXPECT_EQ(folderOf("home/user/tool"), "home/user/tool");
    EXPECT_EQ(folderOf("home/user/bin/tool"), "home/user/bin/tool");
    EXPECT_EQ(folderOf("home/user/Games/start.sh"), "home/user/Games/start.sh");
    EXPECT_EQ(folderOf("home/user/Games/go"), "home/user/Games/go");
    EXPECT_EQ(folderOf("home/user/Suite-2.1/bin/suite.sh"), "home/user/Suite-2.1");
    EXPECT_EQ(folderOf("home/user/.cargo/bin/tool"), "home/user/.cargo/bin/tool");
    EXPECT_EQ(folderOf("home/user/go/bin/tool"), "home/user/go/bin/tool");
    EXPECT_EQ(folderOf("home/user/Downloads/tool"), "home/user/Downloads/tool");
    EXPECT_EQ(folderOf("home/user/Downloads/suite/tool"), "home/user/Downloads/suite");
    EXPECT_EQ(folderOf("home/user/.local/share/suite/bin/tool"), "home/user/.local/share/suite");
    desktop.makeFolder("home/user/project/.git");
    EXPECT_EQ(folderOf("home/user/project/tool"), "home/user/project/tool");
    desktop.makeLink("home/user/.local/bin/far", "../share/suite/bin/tool");
    EXPECT_EQ(ownFolderOf(desktop.path("home/user/.local/bin/far"), places),
              desktop.path("home/user/.local/share/suite"));
}

TEST(LinuxApps, AsksRpmForAllOwnersAtOnce) {
    const SampleDesktop desktop;
    // Answers like rpm, in whose sample a file of "/two" has two owners.
    desktop.makeScript("usr/bin/rpm", "shift 3\necho call >> \"$0.calls\"\n"
                                      "for file; do case $file in\n"
                                      "*two*) printf 'first\\t1\\t10\\nsecond\\t2\\t20\\n';;\n"
                                      "*none*) echo \"file $file is not owned by any package\";;\n"
                                      "*) printf 'tool\\t5.1\\t7000\\n';; esac; done\n");
    desktop.makeFile("usr/lib/sysimage/rpm/rpmdb.sqlite");
    const DesktopPlaces places = *catalogOf(System::linux).desktopPlaces(desktop.host());
    Owners owners = ownersOf({"/usr/share/applications/a.desktop", "/none", "/c"}, places);
    EXPECT_EQ(testing::contentOf(desktop.path("usr/bin/rpm.calls")), "call\n");
    EXPECT_EQ(owners.size(), 2U);
    EXPECT_EQ(owners["/c"].size, 7000);
    EXPECT_EQ(owners["/c"].removeCommand, "sudo dnf remove tool");
    owners = ownersOf({"/a", "/two", "/none"}, places);
    EXPECT_EQ(owners["/two"].name, "first");
    EXPECT_EQ(owners["/a"].name, "tool");
    EXPECT_FALSE(owners.contains("/none"));
}

TEST(LinuxApps, ReadsWhenTheyWereLastUsed) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    desktop.writeFile("home/user/.local/share/gnome-shell/application_state",
                      "<?xml version=\"1.0\"?><application-state><context id=\"\">"
                      "<application id=\"org.example.Viewer.desktop\" score=\"3\" last-seen=\"1700000000\"/>"
                      "<application id=\"office.desktop\" last-seen=\"x\"/></context></application-state>");
    desktop.writeFile("home/user/.local/share/recently-used.xbel",
                      "<bookmark:applications>"
                      "<bookmark:application name=\"Chat\" exec=\"&apos;/opt/chat/lib/chat %u&apos;\" "
                      "modified=\"2024-02-29T12:30:05.5Z\" count=\"1\"/>"
                      "<bookmark:application name=\"x\" exec=\"&apos;viewer %u&apos;\" "
                      "modified=\"2020-01-01T00:00:00Z\"/></bookmark:applications>");
    const std::vector<InstalledApp> apps = AppInventory::scan(false, desktop.host());
    const auto used = [&](const char *name) {
        const std::optional<Date> date = named(apps, name).lastUsed;
        return date ? iso8601(*date) : "never";
    };
    EXPECT_EQ(used("Viewer"), "2023-11-14T22:13:20Z");
    EXPECT_EQ(used("Chat"), "2024-02-29T12:30:05Z");
    EXPECT_EQ(used("Office"), "never");
}

TEST(AppProcesses, AreKnownByGroupFileAndImage) {
    EXPECT_EQ(applicationOfGroup("app-gnome-org.example.App-1234.scope"), "org.example.App");
    EXPECT_EQ(applicationOfGroup("app-flatpak-org.example.App-99.scope"), "org.example.App");
    EXPECT_EQ(applicationOfGroup("app-KDE-code\\x2doss@autostart.service"), "code-oss");
    EXPECT_EQ(applicationOfGroup("snap.drawer.drawer-0a1b.scope"), "drawer");
    EXPECT_EQ(applicationOfGroup("session-2.scope"), "");

    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    const testing::EnvironmentVariable shown("XDG_CURRENT_DESKTOP", "GNOME");
    const std::vector<InstalledApp> apps = AppInventory::scan(true, desktop.host());
    const auto running = [&] {
        std::vector<std::string> names;
        for (const InstalledApp &app : apps)
            if (isRunning(app, desktop.host()))
                names.push_back(app.name);
        return names;
    };
    EXPECT_THAT(running(), IsEmpty());
    desktop.writeFile("proc/10/cgroup", "0::/user.slice/app-flatpak-org.example.Maps-7.scope\n");
    desktop.writeFile("proc/11/cgroup", "0::/user.slice/app-flatpak-com.example.Play-7.scope\n");
    desktop.makeFolder("proc/12");
    desktop.makeLink("proc/12/exe", desktop.path("home/user/editor/lib/java"));
    desktop.makeFolder("proc/13");
    desktop.makeLink("proc/13/exe", "/usr/lib/viewer/viewer");
    desktop.writeFile("proc/14/environ",
                      std::string("A=1\0APPIMAGE=", 13) + desktop.path("opt/tools/Plain_v3.0") + '\0');
    EXPECT_THAT(running(), UnorderedElementsAre("Maps", "Editor", "Viewer", "Plain"));
}

TEST(DesktopEntry, ChoosesTheNameByLocale) {
    EXPECT_THAT(localeEndings("sr_RS.UTF-8@latin"), ElementsAre("sr_RS@latin", "sr_RS", "sr@latin", "sr"));
    EXPECT_THAT(localeEndings("de"), ElementsAre("de"));
    EXPECT_THAT(localeEndings("C.UTF-8"), IsEmpty());
    const std::string text = "[Desktop Entry]\nName=Plain\nName[sr]=Cyrillic\nName[sr@latin]=Latin\n"
                             "Name[pt_BR]=Brazil\n[Desktop Action x]\nName=Other\n";
    const auto name = [&](const char *locale) {
        return parseDesktopEntry("x", "/x", text, localeEndings(locale)).name;
    };
    EXPECT_EQ(name("sr_RS.UTF-8@latin"), "Latin");
    EXPECT_EQ(name("sr_RS"), "Cyrillic");
    EXPECT_EQ(name("pt_BR.UTF-8"), "Brazil");
    EXPECT_EQ(name("pt_PT"), "Plain");
}

TEST(DesktopEntry, ReadsCommands) {
    EXPECT_THAT(commandWords(R"(app "a b" "q\"\$" %f 100%% --x=%u "" )"),
                ElementsAre("app", "a b", "q\"$", "100%", "--x=", ""));
    const auto program = [](const std::string &line) {
        return parseDesktopEntry("x", "/x", "[Desktop Entry]\nExec=" + line + "\n", {}).program();
    };
    EXPECT_EQ(program("env A=/b B=c -i /opt/x/y %F"), "/opt/x/y");
    EXPECT_EQ(program("sh -c \"run it\""), "");
    EXPECT_EQ(program("sh /opt/x/run.sh"), "/opt/x/run.sh");
    EXPECT_EQ(program("/odd/na=me"), "/odd/na=me");
    EXPECT_EQ(program(R"("/with space\\s/x")"), "/with spaces/x");
    EXPECT_EQ(program(""), "");
}

TEST(FlatpakDeploy, ReadsWhatGLibWrites) {
    for (const bool hasLanguages : {false, true}) {
        const std::string bytes = testing::flatpakDeployBytes(hasLanguages);
        const auto deploy = parseFlatpakDeploy(bytes);
        ASSERT_TRUE(deploy);
        EXPECT_EQ(deploy->origin, "flathub");
        EXPECT_EQ(deploy->installedSize, 345'678'901);
        EXPECT_EQ(deploy->version, "47.1");
        for (std::size_t length = 0; length < bytes.size(); ++length)
            EXPECT_GE(parseFlatpakDeploy(bytes.substr(0, length)).value_or(FlatpakDeploy()).installedSize, 0);
    }
    EXPECT_FALSE(parseFlatpakDeploy(std::string(64, '\xFF')));
}

} // namespace brimvale::linuxApps
