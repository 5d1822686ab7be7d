#include "Core/Apps/Linux/ClaimedFiles.h"

#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/LeftoverSearch.h"
#include "Core/Apps/Orphans.h"
#include "Support/SampleDesktop.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace brimvale::linuxApps {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::SampleDesktop;
using ::testing::UnorderedElementsAre;

/// What a well-known program leaves in an empty home: "C/", "H/", "D/" and "S/" are the folders for settings,
/// caches, data and state, "~/" is the home.
struct WellKnown {
    const char *id;
    const char *name;
    const char *program;
    std::vector<std::string> files;
};

const std::vector<WellKnown> programs = {
    {"google-chrome", "Google Chrome", "google-chrome-stable", {"C/google-chrome", "H/google-chrome"}},
    {"chromium", "Chromium Web Browser", "chromium", {"C/chromium", "H/chromium"}},
    {"brave-browser",
     "Brave Web Browser",
     "brave-browser",
     {"C/BraveSoftware/Brave-Browser", "H/BraveSoftware/Brave-Browser"}},
    {"microsoft-edge", "Microsoft Edge", "microsoft-edge-stable", {"C/microsoft-edge"}},
    {"firefox-esr", "Firefox ESR", "firefox-esr", {"~/.mozilla/firefox", "H/mozilla/firefox"}},
    {"thunderbird", "Thunderbird", "thunderbird", {"~/.thunderbird", "H/thunderbird"}},
    {"code", "Visual Studio Code", "code", {"C/Code", "~/.vscode"}},
    {"codium", "VSCodium", "codium", {"C/VSCodium", "~/.vscode-oss"}},
    {"code-oss", "Code - OSS", "code-oss", {"C/Code - OSS"}},
    {"jetbrains-idea",
     "IntelliJ IDEA",
     "idea.sh",
     {"C/JetBrains/IntelliJIdea2024.3", "H/JetBrains/IntelliJIdea2024.3"}},
    {"jetbrains-clion", "CLion", "clion.sh", {"C/JetBrains/CLion2024.1"}},
    {"android-studio", "Android Studio", "studio.sh", {"C/Google/AndroidStudio2024.2", "~/.android"}},
    {"discord", "Discord", "discord", {"C/discord"}},
    {"signal-desktop", "Signal", "signal-desktop", {"C/Signal"}},
    {"org.telegram.desktop", "Telegram", "telegram-desktop", {"D/TelegramDesktop"}},
    {"libreoffice-writer", "LibreOffice Writer", "libreoffice", {"C/libreoffice/4"}},
    {"gimp", "GNU Image Manipulation Program", "gimp-2.10", {"C/GIMP/2.10", "H/gimp"}},
    {"org.inkscape.Inkscape", "Inkscape", "inkscape", {"C/inkscape"}},
    {"org.kde.krita", "Krita", "krita", {"C/kritarc", "C/kritadisplayrc", "D/krita", "S/kritastaterc"}},
    {"org.kde.kdenlive",
     "Kdenlive",
     "kdenlive",
     {"C/kdenliverc", "C/kdenlive-layoutsrc", "D/kdenlive", "H/kdenlive"}},
    {"org.kde.gwenview", "Gwenview", "gwenview", {"C/gwenviewrc", "D/gwenview"}},
    {"com.obsproject.Studio", "OBS Studio", "obs", {"C/obs-studio"}},
    {"fr.handbrake.ghb", "HandBrake", "ghb", {"C/ghb"}},
    {"audacity", "Audacity", "audacity", {"C/audacity", "D/audacity"}},
    {"vlc", "VLC media player", "/usr/bin/vlc", {"C/vlc", "D/vlc", "H/vlc"}},
    {"mpv", "mpv Media Player", "mpv", {"C/mpv"}},
    {"org.gnome.Rhythmbox3", "Rhythmbox", "rhythmbox", {"D/rhythmbox", "H/rhythmbox"}},
    {"org.gnome.Shotwell", "Shotwell", "shotwell", {"D/shotwell", "H/shotwell"}},
    {"org.darktable.darktable", "darktable", "/usr/bin/darktable", {"C/darktable", "H/darktable"}},
    {"org.gnome.Evolution", "Evolution", "evolution", {"D/evolution/mail", "H/evolution/mail"}},
    {"org.keepassxc.KeePassXC", "KeePassXC", "keepassxc", {"C/keepassxc", "H/keepassxc", "S/keepassxc"}},
    {"org.qbittorrent.qBittorrent", "qBittorrent", "qbittorrent", {"C/qBittorrent", "D/qBittorrent"}},
    {"transmission-gtk", "Transmission", "transmission-gtk", {"C/transmission"}},
    {"filezilla", "FileZilla", "filezilla", {"C/filezilla", "H/filezilla"}},
    {"io.github.Hexchat", "HexChat", "hexchat", {"C/hexchat"}},
    {"pidgin", "Pidgin Internet Messenger", "pidgin", {"~/.purple"}},
    {"org.remmina.Remmina", "Remmina", "remmina-file-wrapper", {"C/remmina", "D/remmina", "H/remmina"}},
    {"org.gnome.Boxes", "Boxes", "gnome-boxes", {"C/gnome-boxes", "D/gnome-boxes"}},
    {"virt-manager", "Virtual Machine Manager", "virt-manager", {"H/virt-manager"}},
    {"calibre-gui", "calibre", "calibre", {"C/calibre", "H/calibre"}},
    {"anki", "Anki", "anki", {"D/Anki2"}},
    {"gnucash", "GnuCash", "gnucash", {"C/gnucash", "D/gnucash"}},
    {"org.qt-project.qtcreator", "Qt Creator", "qtcreator", {"C/QtProject/qtcreator"}},
    {"org.wireshark.Wireshark", "Wireshark", "wireshark", {"C/wireshark"}},
    {"steam", "Steam", "/usr/games/steam", {"D/Steam", "~/.steam"}},
};

/// What many programs share and some make first.
const std::vector<std::string> sharedFiles = {"C/dconf",
                                              "C/gtk-3.0",
                                              "C/mimeapps.list",
                                              "C/pulse",
                                              "C/QtProject.conf",
                                              "C/kdeglobals",
                                              "C/evolution",
                                              "C/enchant",
                                              "C/ibus",
                                              "H/fontconfig",
                                              "H/mesa_shader_cache",
                                              "H/gegl-0.4",
                                              "H/babl",
                                              "H/thumbnails",
                                              "H/gstreamer-1.0",
                                              "D/applications",
                                              "D/recently-used.xbel",
                                              "D/gvfs-metadata",
                                              "D/webkitgtk",
                                              "D/icc",
                                              "~/.pki",
                                              "~/.java",
                                              "~/.gnupg",
                                              "~/.ssh",
                                              "~/.bashrc",
                                              "C/Studio",
                                              "C/Browser",
                                              "D/Player",
                                              "~/.app",
                                              "C/mozilla",
                                              "C/office"};

std::string insideOf(const std::string &file) {
    const std::string rest = file.substr(2);
    switch (file[0]) {
    case 'C':
        return "home/user/.config/" + rest;
    case 'H':
        return "home/user/.cache/" + rest;
    case 'D':
        return "home/user/.local/share/" + rest;
    case 'S':
        return "home/user/.local/state/" + rest;
    default:
        return "home/user/" + rest;
    }
}

void install(const SampleDesktop &desktop, const WellKnown &one) {
    const std::string program = one.program;
    desktop.makeProgram(program.starts_with('/') ? program.substr(1) : "usr/bin/" + program, 10);
    desktop.makeEntry("usr/share/applications/" + std::string(one.id) + ".desktop", one.name,
                      program + " %U");
    desktop.installDeb(one.id, "Version: 1\nInstalled-Size: 10\nPriority: optional\n",
                       {"/usr/share/applications/" + std::string(one.id) + ".desktop"});
}

/// The path in the home, or on the disk.
std::string pathIn(const SampleDesktop &desktop, const LeftoverItem &item) {
    const std::string &path = item.url.path();
    const std::string home = desktop.path("home/user");
    return path.substr((isAtOrUnder(path, home) ? home : desktop.path()).size() + 1);
}

/// The leftovers of an application with their confidence, "?" for likely, "!" for careful, and who else
/// claims them.
std::vector<std::string> leftoversOf(const std::string &id, const SampleDesktop &desktop) {
    const LeftoverSearch search = leftoverSearch(desktop.host());
    std::vector<std::string> lines;
    for (const InstalledApp &app : AppInventory::scan(true, desktop.host()))
        if (app.bundleID == id)
            for (const LeftoverItem &item : search(app, {})) {
                std::string line = item.confidence == MatchConfidence::exact ? "" : "?";
                line.append(item.isCareful ? "!" : "").append(item.category).append(": ");
                line.append(pathIn(desktop, item)).append(" (").append(item.reason).append(")");
                for (const std::string &name : item.alsoClaimedBy)
                    line.append(", also ").append(name);
                lines.push_back(line);
            }
    return lines;
}

} // namespace

TEST(ClaimedFiles, GiveEachFileToTheProgramThatMadeIt) {
    const SampleDesktop desktop;
    std::map<std::string, std::string> maker;
    for (const WellKnown &one : programs) {
        install(desktop, one);
        for (const std::string &file : one.files) {
            desktop.makeFile(insideOf(file) + "/data", 10);
            maker[desktop.path(insideOf(file))] = one.id;
        }
    }
    for (const std::string &file : sharedFiles)
        desktop.makeFile(insideOf(file) + "/data", 10);
    const LeftoverSearch search = leftoverSearch(desktop.host());
    std::set<std::string> found;
    std::vector<std::string> wrong;
    std::size_t exact = 0;
    for (const InstalledApp &app : AppInventory::scan(true, desktop.host()))
        for (const LeftoverItem &item : search(app, {})) {
            const auto made = maker.find(item.url.path());
            if (made == maker.end() || made->second != app.bundleID)
                wrong.push_back(*app.bundleID + ": " + item.url.path());
            else
                found.insert(item.url.path());
            exact += item.confidence == MatchConfidence::exact ? 1U : 0U;
        }
    EXPECT_THAT(wrong, IsEmpty());
    std::vector<std::string> missed;
    for (const auto &[path, id] : maker)
        if (!found.contains(path))
            missed.push_back(path);
    EXPECT_THAT(missed, IsEmpty());
    RecordProperty("files", static_cast<int>(maker.size()));
    RecordProperty("exact", static_cast<int>(exact));
}

TEST(ClaimedFiles, SayWhyAndWhatToLookAtFirst) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    desktop.makeFile("home/user/.var/app/org.example.Maps/config/x", 10);
    desktop.makeFile("home/user/.config/autostart/org.example.Maps.desktop", 10);
    desktop.makeFile("home/user/.config/org.example.Maps.Helper/x", 10);
    desktop.makeFile("home/user/.cache/org.example.Mapsbook/x", 10);
    EXPECT_THAT(
        leftoversOf("org.example.Maps", desktop),
        UnorderedElementsAre(
            "Sandbox data: .var/app/org.example.Maps (Flatpak data folder)",
            "Starts at login: .config/autostart/org.example.Maps.desktop (named after the app's identifier)",
            "Settings: .config/org.example.Maps.Helper (named after the app's identifier)"));

    desktop.makeFile("home/user/snap/drawer/common/x", 10);
    EXPECT_THAT(leftoversOf("drawer", desktop),
                UnorderedElementsAre("Sandbox data: snap/drawer (snap data folder)"));

    desktop.makeFile("home/user/.config/painter/x", 10);
    desktop.makeLink("home/user/.local/bin/paint", "/home/user/Applications/Painter-2.1-x86_64.AppImage");
    desktop.makeFile("home/user/.local/share/icons/hicolor/64x64/apps/appimagekit_abc-painter.png", 10);
    EXPECT_THAT(
        leftoversOf("appimagekit_abc-painter", desktop),
        UnorderedElementsAre(
            "Desktop files: .local/share/applications/appimagekit_abc-painter.desktop (starts the app)",
            "Desktop files: .local/bin/paint (leads to the app)",
            "Desktop files: .local/share/icons/hicolor/64x64/apps/appimagekit_abc-painter.png "
            "(named after the app's identifier)",
            "?Settings: .config/painter (same name)"));

    desktop.makeFile("etc/chat/x", 10);
    EXPECT_THAT(
        leftoversOf("chat", desktop),
        UnorderedElementsAre("Desktop files: usr/local/share/applications/chat.desktop (starts the app)",
                             "?System: etc/chat (same name)"));

    install(desktop, {"steam", "Steam", "/usr/games/steam", {}});
    install(desktop, {"org.example.Quest", "Quest", "quest", {}});
    desktop.makeEntry("usr/share/applications/org.example.Quest.desktop", "Quest", "quest",
                      "Categories=Game;\n");
    desktop.makeFile("home/user/.local/share/quest/world", 10);
    desktop.makeFile("home/user/.cache/quest/x", 10);
    EXPECT_THAT(leftoversOf("steam", desktop),
                UnorderedElementsAre("!Data: .local/share/Steam (known folder of this app)"));
    EXPECT_THAT(
        leftoversOf("org.example.Quest", desktop),
        UnorderedElementsAre("?!Data: .local/share/quest (same name)", "?Cache: .cache/quest (same name)"));
}

TEST(ClaimedFiles, AreOnlyLikelyWhereAnotherApplicationHasTheSameRight) {
    const SampleDesktop desktop;
    install(desktop, {"firefox", "Firefox", "firefox", {}});
    desktop.makeFile("home/user/.mozilla/firefox/profile/x", 10);
    desktop.makeFile("home/user/.config/firefox/x", 10);
    EXPECT_THAT(leftoversOf("firefox", desktop),
                UnorderedElementsAre("!Settings and data: .mozilla/firefox (known folder of this app)",
                                     "Settings: .config/firefox (named after the app's identifier)"));
    install(desktop, {"firefox-esr", "Firefox ESR", "firefox-esr", {}});
    const std::string profiles = "?!Settings and data: .mozilla/firefox (known folder of this app), also ";
    EXPECT_THAT(leftoversOf("firefox", desktop),
                UnorderedElementsAre(profiles + "Firefox ESR",
                                     "Settings: .config/firefox (named after the app's identifier)"));
    EXPECT_THAT(leftoversOf("firefox-esr", desktop), UnorderedElementsAre(profiles + "Firefox"));

    // A weaker claim is named, a stronger one decides.
    desktop.makeFile("home/user/.config/org.example.Notes/x", 10);
    install(desktop, {"org.example.Notes", "Notes", "notes-app", {}});
    install(desktop, {"other-notes", "org.example.Notes", "other-notes", {}});
    EXPECT_THAT(
        leftoversOf("org.example.Notes", desktop),
        UnorderedElementsAre("Settings: .config/org.example.Notes (named after the app's identifier), "
                             "also org.example.Notes"));
    EXPECT_THAT(leftoversOf("other-notes", desktop), IsEmpty());

    // A folder with something inside that surely belongs to another application is not offered.
    install(desktop, {"org.example.Suite", "Suite", "suite", {}});
    install(desktop, {"libreoffice-writer", "LibreOffice Writer", "libreoffice", {}});
    install(desktop, {"org.example.libreoffice", "Office Starter", "libreoffice-starter", {}});
    desktop.makeFile("home/user/.config/libreoffice/4/x", 10);
    EXPECT_THAT(leftoversOf("org.example.libreoffice", desktop), IsEmpty());
}

TEST(ClaimedFiles, TellWhatNoInstalledApplicationClaims) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    for (const char *file :
         {// of what is installed, of commands, and shared
          ".config/viewer", ".config/arch-toolrc", ".cache/org.example.Maps", ".config/dconf",
          ".var/app/org.example.Maps", "snap/drawer", ".local/share/applications", ".config/autostart",
          // of what is gone
          ".config/oldtool", ".config/Code", ".local/share/quest", ".config/JetBrains/PyCharm2023.1",
          ".var/app/org.example.Gone", "snap/gone"})
        desktop.makeFile("home/user/" + std::string(file) + "/x", 10);
    desktop.makeLink("home/user/.config/link", "oldtool");
    std::vector<std::string> lines;
    for (const Orphan &orphan : findOrphans({}, desktop.host()).found) {
        EXPECT_EQ(orphan.item.confidence, MatchConfidence::likely);
        EXPECT_TRUE(orphan.lastChange);
        lines.push_back((orphan.item.isCareful ? "!" : "") + pathIn(desktop, orphan.item) + " (" +
                        orphan.item.reason + ")");
    }
    const std::string nameOnly = " (no app or command has this name)";
    EXPECT_THAT(
        lines,
        UnorderedElementsAre(
            ".config/oldtool" + nameOnly, "!.local/share/quest" + nameOnly,
            "!.config/Code (known folder of code, which is not installed)",
            "!.local/share/Steam (known folder of steam, which is not installed)",
            ".config/JetBrains/PyCharm2023.1 (known folder of jetbrains-pycharm, which is not installed)",
            "!.var/app/org.example.Gone (data of a Flatpak that is not installed)",
            "!snap/gone (data of a snap that is not installed)"));
}

TEST(ClaimedFiles, NeverLeadOutOfTheFoldersForThem) {
    const SampleDesktop desktop;
    desktop.makeFile("home/user/Documents/x", 10);
    desktop.makeFile("home/user/.config/x/y", 10);
    const DesktopPlaces places = *catalogOf(System::linux).desktopPlaces(desktop.host());
    InstalledApp app{FileURL(desktop.path("home/user/.local/share/flatpak/app/evil")),
                     "..",
                     "../../Documents",
                     {},
                     false,
                     false,
                     {}};
    app.kind = AppKind::flatpak;
    app.names.identifiers = {"../../Documents", "..", ".", "", "/"};
    app.names.names = {"../x", ""};
    const ClaimedFiles files(places, catalogOf(System::linux).desktopLeftoverRules(desktop.host()), {app});
    EXPECT_THAT(files.leftovers(app, {}), IsEmpty());
}

} // namespace brimvale::linuxApps
