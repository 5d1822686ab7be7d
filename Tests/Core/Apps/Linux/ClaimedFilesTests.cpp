#include "Core/Apps/Linux/ClaimedFiles.h"

#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/LeftoverSearch.h"
#include "Core/Apps/Orphans.h"
#include "Support/SampleDesktop.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::SampleDesktop;
using ::testing::UnorderedElementsAre;

/// What a well-known program leaves in an empty home, with semicolons between: "C/", "H/", "D/" and "S/" are
/// the folders for settings, caches, data and state, "~/" is the home.
struct WellKnown {
    const char *id;
    const char *name;
    const char *program;
    std::string_view files;
};

/// Most rows are what the program really left when it was started (Scripts/measure-leftovers).
constexpr WellKnown programs[] = {
    {"sol", "AisleRiot Solitaire", "sol", "C/gnome-games/aisleriot"},
    {"org.kde.akregator", "Akregator", "akregator",
     "C/akregatorrc;C/kde.org/UserFeedback.org.kde.akregator.conf;D/akregator;H/akregator"},
    {"android-studio", "Android Studio", "studio.sh", "C/Google/AndroidStudio2024.2;~/.android"},
    {"anki", "Anki", "anki", "D/Anki2"},
    {"org.kde.ark", "Ark", "ark", "C/arkrc;D/ark"},
    {"audacity", "Audacity", "audacity", "C/audacity;D/audacity"},
    {"org.bleachbit.BleachBit", "BleachBit", "bleachbit", "C/bleachbit"},
    {"org.gnome.Boxes", "Boxes", "gnome-boxes", "C/gnome-boxes;D/gnome-boxes"},
    {"brave-browser", "Brave Web Browser", "brave-browser",
     "C/BraveSoftware/Brave-Browser;H/BraveSoftware/Brave-Browser"},
    {"org.gnome.Calculator", "Calculator", "gnome-calculator", "H/gnome-calculator"},
    {"calibre-gui", "calibre", "calibre", "C/calibre;~/Calibre Library"},
    {"org.gnome.Chess", "Chess", "gnome-chess", "D/gnome-chess"},
    {"chromium", "Chromium Web Browser", "/usr/bin/chromium", "C/chromium;H/chromium"},
    {"claws-mail", "Claws Mail", "claws-mail", "~/.claws-mail"},
    {"jetbrains-clion", "CLion", "clion.sh", "C/JetBrains/CLion2024.1"},
    {"code-oss", "Code - OSS", "code-oss", "C/Code - OSS"},
    {"org.darktable.darktable", "Darktable", "/usr/bin/darktable", "C/darktable;H/darktable"},
    {"deluge", "Deluge", "deluge-gtk", "C/deluge"},
    {"org.gnome.Dia", "Dia", "dia", "~/.dia"},
    {"discord", "Discord", "discord", "C/discord"},
    {"simple-scan", "Document Scanner", "simple-scan", "C/simple-scan;H/simple-scan"},
    {"org.kde.dolphin", "Dolphin", "dolphin",
     "C/dolphinrc;C/kde.org/UserFeedback.org.kde.dolphin.conf;D/dolphin"},
    {"dosbox", "DOSBox Emulator", "dosbox", "~/.dosbox"},
    {"org.gnome.Evolution", "Evolution", "evolution",
     "C/evolution/mail;D/evolution/mail;D/evolution/mediakeys"},
    {"filezilla", "FileZilla", "filezilla", "C/filezilla;H/filezilla"},
    {"firefox-esr", "Firefox ESR", "/usr/lib/firefox-esr/firefox-esr",
     "H/mozilla/firefox;~/.mozilla/firefox;~/.mozilla/firefox-esr"},
    {"org.gajim.Gajim", "Gajim", "gajim", "C/gajim;D/gajim;H/gajim"},
    {"geany", "Geany", "geany", "C/geany"},
    {"org.gnome.gedit", "gedit", "gedit", "C/gedit"},
    {"org.gnome.Gnote", "Gnote", "gnote", "C/gnote;D/gnote"},
    {"gimp", "GNU Image Manipulation Program", "gimp-2.10", "C/GIMP/2.10;H/gimp"},
    {"gnucash", "GnuCash", "gnucash", "C/gnucash;D/gnucash"},
    {"google-chrome", "Google Chrome", "google-chrome-stable", "C/google-chrome;H/google-chrome"},
    {"org.kde.gwenview", "Gwenview", "gwenview", "C/gwenviewrc"},
    {"fr.handbrake.ghb", "HandBrake", "ghb", "C/ghb"},
    {"io.github.Hexchat", "HexChat", "hexchat", "C/hexchat"},
    {"homebank", "HomeBank", "homebank", "C/homebank"},
    {"org.hydrogenmusic.Hydrogen", "Hydrogen", "hydrogen", "~/.hydrogen"},
    {"org.gnome.eog", "Image Viewer", "eog", "C/eog"},
    {"org.inkscape.Inkscape", "Inkscape", "inkscape", "C/inkscape"},
    {"jetbrains-idea", "IntelliJ IDEA", "idea.sh",
     "C/JetBrains/IntelliJIdea2024.3;H/JetBrains/IntelliJIdea2024.3"},
    {"org.kde.kate", "Kate", "kate", "C/kate;C/katerc;C/kde.org/UserFeedback.org.kde.kate.conf;D/kate"},
    {"org.kde.kdeconnect.sms", "KDE Connect SMS", "kdeconnect-sms", "C/kdeconnect;H/kdeconnect.app"},
    {"org.kde.kdenlive", "Kdenlive", "kdenlive",
     "C/kdenlive-layoutsrc;C/kdenliverc;D/kdenlive;H/audioCache.kcache;H/kdenlive"},
    {"org.keepassxc.KeePassXC", "KeePassXC", "keepassxc", "C/keepassxc;H/keepassxc"},
    {"org.kde.konsole", "Konsole", "konsole", "C/konsolerc;C/konsolesshconfig;D/konsole"},
    {"org.kde.kpat", "KPatience", "kpat", "C/kpatrc;D/kpat"},
    {"org.kde.krita", "Krita", "krita",
     "C/kritadisplayrc;C/kritarc;D/krita;D/krita-sysinfo.log;D/krita.log;H/krita"},
    {"libreoffice-startcenter", "LibreOffice Start Center", "libreoffice", "C/libreoffice/4"},
    {"libreoffice-writer", "LibreOffice Writer", "libreoffice", ""},
    {"net.sourceforge.liferea", "Liferea", "liferea", "C/liferea;D/liferea;H/liferea"},
    {"org.gnome.Meld", "Meld", "meld", "D/meld"},
    {"microsoft-edge", "Microsoft Edge", "microsoft-edge-stable", "C/microsoft-edge"},
    {"org.gnome.Mines", "Mines", "gnome-mines", "D/gnome-mines"},
    {"org.xfce.mousepad", "Mousepad", "mousepad", "C/Mousepad;D/Mousepad"},
    {"com.nextcloud.desktopclient.nextcloud", "Nextcloud Desktop", "nextcloud", "C/Nextcloud;H/Nextcloud"},
    {"org.gnome.Notes", "Notes", "bijiben", "H/bijiben"},
    {"com.obsproject.Studio", "OBS Studio", "obs", "C/obs-studio"},
    {"org.kde.okular", "Okular", "okular", "C/okularpartrc;C/okularrc"},
    {"openttd", "OpenTTD", "openttd", "C/openttd;D/openttd"},
    {"pidgin", "Pidgin", "pidgin", "~/.purple"},
    {"org.qbittorrent.qBittorrent", "qBittorrent", "qbittorrent",
     "C/qBittorrent;D/qBittorrent;H/qBittorrent"},
    {"org.qt-project.qtcreator", "Qt Creator", "qtcreator", "C/QtProject/qtcreator"},
    {"quasselclient", "Quassel IRC (Client only)", "quasselclient", "C/quassel-irc.org;C/quasselrc"},
    {"io.github.quodlibet.QuodLibet", "Quod Libet", "quodlibet", "C/quodlibet;H/quodlibet"},
    {"org.remmina.Remmina", "Remmina", "remmina-file-wrapper", "C/remmina;D/remmina;H/remmina"},
    {"org.gnome.Rhythmbox3", "Rhythmbox", "rhythmbox", "D/rhythmbox;H/rhythmbox"},
    {"scummvm", "ScummVM", "scummvm", "C/scummvm;D/scummvm;H/scummvm"},
    {"shotwell", "Shotwell", "shotwell", "D/shotwell;H/shotwell"},
    {"signal-desktop", "Signal", "signal-desktop", "C/Signal"},
    {"smplayer", "SMPlayer", "smplayer", "C/smplayer"},
    {"steam", "Steam", "/usr/games/steam", "D/Steam;~/.steam"},
    {"org.strawberrymusicplayer.strawberry", "Strawberry", "strawberry",
     "C/strawberry;D/strawberry;H/strawberry"},
    {"org.telegram.desktop", "Telegram Desktop", "/usr/bin/telegram-desktop", "D/TelegramDesktop"},
    {"texstudio", "TeXstudio", "texstudio", "C/texstudio"},
    {"thunar", "Thunar File Manager", "thunar", "C/Thunar;C/xfce4/xfconf/xfce-perchannel-xml/thunar.xml"},
    {"thunderbird", "Thunderbird", "/usr/bin/thunderbird", "H/thunderbird;~/.thunderbird"},
    {"transmission-gtk", "Transmission", "transmission-gtk", "C/transmission"},
    {"org.gnome.Totem", "Videos", "totem", "C/totem;D/totem;H/totem"},
    {"virt-manager", "Virtual Machine Manager", "virt-manager", "H/virt-manager"},
    {"code", "Visual Studio Code", "code", "C/Code;~/.vscode"},
    {"vlc", "VLC media player", "/usr/bin/vlc", "C/vlc;D/vlc"},
    {"codium", "VSCodium", "codium", "C/VSCodium;~/.vscode-oss"},
    {"org.kde.kmines", "KMines", "kmines", "C/kminesrc;H/kgamerenderer-kmines-themes"},
    {"lyx", "LyX Document Processor", "lyx", "C/LyX;~/.lyx"},
    {"org.wireshark.Wireshark", "Wireshark", "wireshark", "C/wireshark"},
    {"com.github.xournalpp.xournalpp", "Xournal++", "xournalpp", "C/xournalpp;H/xournalpp"},
};

/// What many programs share and some make first, written like theirs.
constexpr std::string_view sharedFiles =
    "C/QtProject.conf;C/dconf;C/enchant;C/evolution/sources;C/gtk-3.0;C/gtkrc-2.0;C/ibus;"
    "C/kactivitymanagerdrc;C/kateschemarc;C/katevirc;C/kcminputrc;C/kconf_updaterc;C/kdeglobals;"
    "C/kglobalshortcutsrc;C/khotkeysrc;C/ktimezonedrc;C/kwinrulesrc;C/kxkbrc;C/lxqt;C/mimeapps.list;"
    "C/pulse;C/session;C/xfce4/panel;C/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml;D/applications;"
    "D/baloo;D/grilo-plugins;D/gvfs-metadata;D/icc;D/kactivitymanagerd;D/keyrings;D/krunnerstaterc;"
    "D/phishingurl;D/recently-used.xbel;D/user-places.xbel.bak;D/user-places.xbel.tbcache;D/webkitgtk;"
    "H/babl;H/fontconfig;H/gegl-0.4;H/gstreamer-1.0;H/icon-cache.kcache;H/kio_http;H/ksplash;"
    "H/ksycoca5_en_BgiPP9SOHXaaNSfLi85Y3Dm7LUw=;H/mesa_shader_cache;"
    "H/qtshadercache-x86_64-little_endian-lp64;H/sessions;H/shumate;H/thumbnails;~/.bashrc;~/.gnupg;"
    "~/.java;~/.pki;~/.ssh";

/// What is of none of them, with names that say little.
constexpr std::string_view otherFiles = "C/Studio;C/Browser;D/Player;~/.app;C/office";

std::string insideOf(std::string_view file) {
    const std::string rest(file.substr(2));
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

/// Makes files that are written as those of a program. Returns their paths.
std::vector<std::string> makeFiles(const SampleDesktop &desktop, std::string_view files) {
    std::vector<std::string> paths;
    while (!files.empty()) {
        const std::string inside = insideOf(files.substr(0, files.find(';')));
        files.remove_prefix(std::min(files.find(';'), files.size() - 1) + 1);
        desktop.makeFile(inside + "/data", 10);
        paths.push_back(desktop.path(inside));
    }
    return paths;
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

/// Installs the programs and makes the files of all. Returns the program of each path.
std::map<std::string, std::string> makeFilesOfAll(const SampleDesktop &desktop) {
    std::map<std::string, std::string> maker;
    for (const WellKnown &one : programs) {
        install(desktop, one);
        for (const std::string &path : makeFiles(desktop, one.files))
            maker[path] = one.id;
    }
    makeFiles(desktop, sharedFiles);
    makeFiles(desktop, otherFiles);
    return maker;
}

} // namespace

TEST(ClaimedFiles, GiveEachFileToTheProgramThatMadeIt) {
    const SampleDesktop desktop;
    const std::map<std::string, std::string> maker = makeFilesOfAll(desktop);
    const LeftoverSearch search = leftoverSearch(desktop.host());
    std::set<std::string> found;
    std::vector<std::string> wrong;
    for (const InstalledApp &app : AppInventory::scan(true, desktop.host()))
        for (const LeftoverItem &item : search(app, {})) {
            const auto made = maker.find(item.url.path());
            if (made == maker.end() || made->second != app.bundleID)
                wrong.push_back(*app.bundleID + ": " + item.url.path());
            else
                found.insert(item.url.path());
        }
    EXPECT_THAT(wrong, IsEmpty());
    std::vector<std::string> missed;
    for (const auto &[path, id] : maker)
        if (!found.contains(path))
            missed.push_back(path);
    EXPECT_THAT(missed, IsEmpty());

    std::vector<std::string> orphans;
    const Orphans all = findOrphans({}, desktop.host());
    for (const Orphan &orphan : all.found)
        orphans.push_back(pathIn(desktop, orphan.item));
    EXPECT_THAT(orphans, UnorderedElementsAre(".config/Browser", ".config/Studio", ".config/office",
                                              ".local/share/Player"));
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
            "Starts at login: .config/autostart/org.example.Maps.desktop (named after the app’s identifier)",
            "Settings: .config/org.example.Maps.Helper (named after the app’s identifier)"));

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
            "(named after the app’s identifier)",
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
                                     "Settings: .config/firefox (named after the app’s identifier)"));
    install(desktop, {"firefox-esr", "Firefox ESR", "firefox-esr", {}});
    const std::string profiles = "?!Settings and data: .mozilla/firefox (known folder of this app), also ";
    EXPECT_THAT(leftoversOf("firefox", desktop),
                UnorderedElementsAre(profiles + "Firefox ESR",
                                     "Settings: .config/firefox (named after the app’s identifier)"));
    EXPECT_THAT(leftoversOf("firefox-esr", desktop), UnorderedElementsAre(profiles + "Firefox"));

    // A weaker claim is named, a stronger one decides.
    desktop.makeFile("home/user/.config/org.example.Notes/x", 10);
    install(desktop, {"org.example.Notes", "Notes", "notes-app", {}});
    install(desktop, {"other-notes", "org.example.Notes", "other-notes", {}});
    EXPECT_THAT(
        leftoversOf("org.example.Notes", desktop),
        UnorderedElementsAre("Settings: .config/org.example.Notes (named after the app’s identifier), "
                             "also org.example.Notes"));
    EXPECT_THAT(leftoversOf("other-notes", desktop), IsEmpty());

    // A folder with something inside that surely belongs to another application is not offered.
    install(desktop, {"org.example.Suite", "Suite", "suite", {}});
    install(desktop, {"libreoffice-startcenter", "LibreOffice", "libreoffice", {}});
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
          ".var/app/org.example.Gone", "snap/gone", ".thunderbird",
          // in the home only known folders are told
          ".viewer", ".something", ".gimp-2.8"})
        desktop.makeFile("home/user/" + std::string(file) + "/x", 10);
    desktop.makeLink("home/user/.config/link", "oldtool");
    std::vector<std::string> lines;
    const Orphans all = findOrphans({}, desktop.host());
    for (const Orphan &orphan : all.found) {
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
            "!.thunderbird (known folder of thunderbird, which is not installed)",
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
