#include "Catalogs/KnownApps.h"

#include "Catalogs/Linux/Catalog.h"
#include "Catalogs/Linux/Places.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

/// Identifiers and places with semicolons between them. A place with "!" holds what people would miss: mail,
/// messages, passwords, notes, saved games, virtual machines.
struct KnownRow {
    std::string_view identifiers;
    std::string_view places;
};

constexpr KnownRow browsersAndMail[] = {
    {"google-chrome;com.google.Chrome",
     "!$CONFIG/google-chrome;$CACHE/google-chrome;$CONFIG/chrome-flags.conf"},
    {"chromium;chromium-browser;org.chromium.Chromium",
     "!$CONFIG/chromium;$CACHE/chromium;!~/snap/chromium/common/chromium"},
    {"brave-browser;com.brave.Browser",
     "!$CONFIG/BraveSoftware/Brave-Browser;$CACHE/BraveSoftware/Brave-Browser"},
    {"microsoft-edge;com.microsoft.Edge", "!$CONFIG/microsoft-edge;$CACHE/microsoft-edge"},
    {"vivaldi;vivaldi-stable;com.vivaldi.Vivaldi", "!$CONFIG/vivaldi;$CACHE/vivaldi;~/.local/lib/vivaldi"},
    {"opera;com.opera.Opera", "!$CONFIG/opera;$CACHE/opera"},
    {"firefox;firefox-esr;firefox_firefox;org.mozilla.firefox",
     "!~/.mozilla/firefox;!~/.mozilla/firefox-esr;!$CONFIG/mozilla/firefox;$CACHE/mozilla/firefox;"
     "!~/snap/firefox/common/.mozilla"},
    {"thunderbird;org.mozilla.Thunderbird", "!~/.thunderbird;$CACHE/thunderbird"},
    {"librewolf;io.gitlab.librewolf-community", "!~/.librewolf;!$CONFIG/librewolf;$CACHE/librewolf"},
    {"zen;zen-browser;app.zen_browser.zen", "!~/.zen;$CACHE/zen"},
    {"waterfox;net.waterfox.waterfox", "!~/.waterfox;$CACHE/waterfox"},
    // The rest of its folders also serves the calendar and the contacts of GNOME.
    {"org.gnome.Evolution;evolution",
     "!$DATA/evolution/mail;$CACHE/evolution/mail;$CONFIG/evolution/mail;$DATA/evolution/mediakeys;"
     "$DATA/org.gnome.Evolution"},
};

constexpr KnownRow messengers[] = {
    {"discord;com.discordapp.Discord", "$CONFIG/discord;$CONFIG/discordptb;$CONFIG/discordcanary"},
    {"slack;com.slack.Slack", "$CONFIG/Slack"},
    {"signal-desktop;org.signal.Signal", "!$CONFIG/Signal"},
    {"Zoom;us.zoom.Zoom", "~/.zoom;$CONFIG/zoomus.conf;$CONFIG/zoom.conf;$CACHE/zoom"},
    {"teams-for-linux;com.github.IsmaelMartinez.teams_for_linux", "$CONFIG/teams-for-linux"},
    {"element-desktop;im.riot.Riot", "!$CONFIG/Element"},
    {"org.telegram.desktop;telegram-desktop;telegramdesktop", "!$DATA/TelegramDesktop;!~/.TelegramDesktop"},
    {"io.github.Hexchat;hexchat", "$CONFIG/hexchat"},
    {"pidgin;im.pidgin.Pidgin", "!~/.purple"},
    {"quasselclient", "$CONFIG/quassel-irc.org;$CONFIG/quasselrc"},
    {"org.remmina.Remmina;remmina", "$CONFIG/remmina;$DATA/remmina;$CACHE/remmina"},
};

constexpr KnownRow developers[] = {
    {"code;com.visualstudio.code", "!$CONFIG/Code;~/.vscode"},
    {"codium;com.vscodium.codium", "!$CONFIG/VSCodium;~/.vscode-oss"},
    {"code-oss", "!$CONFIG/Code - OSS"},
    {"cursor", "!$CONFIG/Cursor;~/.cursor"},
    {"windsurf", "!$CONFIG/Windsurf"},
    {"jetbrains-idea*;com.jetbrains.IntelliJ-IDEA*",
     "$CONFIG/JetBrains/IntelliJIdea*;$CONFIG/JetBrains/IdeaIC*;$CACHE/JetBrains/IntelliJIdea*;"
     "$CACHE/JetBrains/IdeaIC*;$DATA/JetBrains/IntelliJIdea*;$DATA/JetBrains/IdeaIC*"},
    {"jetbrains-pycharm*;com.jetbrains.PyCharm*",
     "$CONFIG/JetBrains/PyCharm*;$CACHE/JetBrains/PyCharm*;$DATA/JetBrains/PyCharm*"},
    {"jetbrains-clion*;com.jetbrains.CLion",
     "$CONFIG/JetBrains/CLion*;$CACHE/JetBrains/CLion*;$DATA/JetBrains/CLion*"},
    {"jetbrains-webstorm*;com.jetbrains.WebStorm",
     "$CONFIG/JetBrains/WebStorm*;$CACHE/JetBrains/WebStorm*;$DATA/JetBrains/WebStorm*"},
    {"android-studio;com.google.AndroidStudio",
     "$CONFIG/Google/AndroidStudio*;$CACHE/Google/AndroidStudio*;$DATA/Google/AndroidStudio*;"
     "!~/.android;~/Android"},
    {"postman;Postman;com.getpostman.Postman", "!$CONFIG/Postman;!~/Postman"},
    {"insomnia;rest.insomnia.Insomnia", "!$CONFIG/Insomnia"},
    {"org.qt-project.qtcreator", "$CONFIG/QtProject/qtcreator"},
    {"org.wireshark.Wireshark;wireshark", "$CONFIG/wireshark"},
    {"filezilla;org.filezillaproject.Filezilla", "!$CONFIG/filezilla;$CACHE/filezilla"},
    {"virtualbox;org.virtualbox.VirtualBox", "$CONFIG/VirtualBox;~/.VirtualBox;!~/VirtualBox VMs"},
    {"org.gnome.Boxes", "$CONFIG/gnome-boxes;!$DATA/gnome-boxes"},
    {"virt-manager", "$CACHE/virt-manager"},
    {"emacs*;org.gnu.emacs", "!$CONFIG/emacs"},
    {"nvim;neovim;io.neovim.nvim", "!$CONFIG/nvim;$CACHE/nvim;!$DATA/nvim;$STATE/nvim"},
};

constexpr KnownRow gamesAndMedia[] = {
    {"spotify;com.spotify.Client", "$CONFIG/spotify;$CACHE/spotify;$DATA/spotify"},
    {"steam;com.valvesoftware.Steam", "!$DATA/Steam;!~/.steam;~/.steampath;~/.steampid"},
    {"net.lutris.Lutris;lutris", "$CONFIG/lutris;!$DATA/lutris;$CACHE/lutris"},
    {"heroic;com.heroicgameslauncher.hgl", "!$CONFIG/heroic"},
    {"org.prismlauncher.PrismLauncher", "!$DATA/PrismLauncher"},
    {"gpodder", "!~/gPodder"},
    {"sol", "!$CONFIG/gnome-games/aisleriot*"},
    {"minecraft-launcher;com.mojang.Minecraft", "!~/.minecraft"},
    {"org.kde.gwenview", "$CONFIG/gwenviewrc;$DATA/gwenview"},
    {"org.gnome.eog;eog", "$CONFIG/eog"},
    {"org.gnome.Dia;dia", "~/.dia"},
    {"gimp;org.gimp.GIMP", "$CONFIG/GIMP/*;$CACHE/gimp"},
    {"org.inkscape.Inkscape;inkscape", "$CONFIG/inkscape"},
    {"org.kde.krita;krita*", "$CONFIG/kritarc;$CONFIG/kritadisplayrc;$DATA/krita;$DATA/krita.log;"
                             "$DATA/krita-sysinfo.log"},
    {"blender;org.blender.Blender", "$CONFIG/blender"},
    {"org.kde.kdenlive",
     "$CONFIG/kdenliverc;$CONFIG/kdenlive-layoutsrc;$DATA/kdenlive;$CACHE/kdenlive;$CACHE/audioCache.kcache"},
    {"com.obsproject.Studio", "!$CONFIG/obs-studio"},
    {"org.shotcut.Shotcut", "$CONFIG/Meltytech/Shotcut*;$DATA/Meltytech/Shotcut*"},
    {"fr.handbrake.ghb", "$CONFIG/ghb;~/.ghb"},
    {"audacity;org.audacityteam.Audacity", "$CONFIG/audacity;$DATA/audacity"},
    {"vlc;org.videolan.VLC", "$CONFIG/vlc;$DATA/vlc;$CACHE/vlc"},
    {"mpv;io.mpv.Mpv", "$CONFIG/mpv"},
    {"org.gnome.Rhythmbox3", "!$DATA/rhythmbox;$CACHE/rhythmbox"},
    {"org.gnome.Shotwell;shotwell", "$CONFIG/shotwell;!$DATA/shotwell;$CACHE/shotwell"},
    {"org.darktable.darktable;darktable", "!$CONFIG/darktable;$CACHE/darktable"},
    {"org.kde.digikam", "$CONFIG/digikamrc;$CONFIG/digikam;!$DATA/digikam"},
    {"org.qbittorrent.qBittorrent", "$CONFIG/qBittorrent;$DATA/qBittorrent;$CACHE/qBittorrent"},
    {"transmission-gtk;com.transmissionbt.Transmission", "$CONFIG/transmission"},
};

constexpr KnownRow officeAndStorage[] = {
    {"obsidian;md.obsidian.Obsidian", "$CONFIG/obsidian"},
    {"bitwarden;com.bitwarden.desktop", "!$CONFIG/Bitwarden"},
    {"joplin;net.cozic.joplin_desktop;appimagekit-joplin", "!$CONFIG/joplin-desktop;$CONFIG/Joplin"},
    // All its programs use the folder, so it belongs to what all of them need.
    {"libreoffice-startcenter;org.libreoffice.LibreOffice*", "$CONFIG/libreoffice/4"},
    {"org.kde.ark", "$CONFIG/arkrc;$DATA/ark"},
    {"org.kde.kate", "$CONFIG/katerc;$CONFIG/kate;!$DATA/kate"},
    {"org.kde.okular", "$CONFIG/okularrc;$CONFIG/okularpartrc;$DATA/okular"},
    {"org.kde.kdeconnect*", "$CONFIG/kdeconnect;$CACHE/kdeconnect.app"},
    {"org.kde.konsole", "$CONFIG/konsolerc;$CONFIG/konsolesshconfig;$DATA/konsole"},
    {"lyx", "~/.lyx;$CONFIG/LyX"},
    {"org.keepassxc.KeePassXC", "$CONFIG/keepassxc;$CACHE/keepassxc;$STATE/keepassxc"},
    {"calibre-gui;com.calibre_ebook.calibre", "$CONFIG/calibre;$CACHE/calibre;!~/Calibre Library"},
    {"anki;net.ankiweb.Anki", "!$DATA/Anki2"},
    {"gnucash;org.gnucash.GnuCash", "!$CONFIG/gnucash;!$DATA/gnucash"},
    {"com.nextcloud.desktopclient.nextcloud", "$CONFIG/Nextcloud;$CACHE/Nextcloud;$DATA/Nextcloud"},
    {"dropbox", "~/.dropbox;~/.dropbox-dist"},
    {"syncthing*", "!$STATE/syncthing;!$CONFIG/syncthing"},
    {"org.freecad.FreeCAD;freecad", "$CONFIG/FreeCAD;$DATA/FreeCAD"},
    {"wps-office-*", "$CONFIG/Kingsoft;~/.kingsoft;$DATA/Kingsoft"},
    {"bitcoin-qt;org.bitcoincore.bitcoin-qt", "!~/.bitcoin"},
    {"electrum;org.electrum.electrum", "!~/.electrum"},
    {"monero-gui;org.getmonero.Monero", "!~/Monero;!~/.bitmonero"},
};

std::vector<std::string_view> parted(std::string_view list) {
    std::vector<std::string_view> parts;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(';'), list.size());
        parts.push_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return parts;
}

KnownApp placedRow(const KnownRow &row, const Places &places) {
    KnownApp app;
    for (const std::string_view identifier : parted(row.identifiers))
        app.identifiers.emplace_back(identifier);
    for (std::string_view place : parted(row.places)) {
        const bool isCareful = place.starts_with('!');
        place.remove_prefix(isCareful ? 1 : 0);
        for (std::string &path : places.pathsOf(place))
            app.places.push_back({std::move(path), isCareful});
    }
    return app;
}

template<std::size_t count>
void addRows(std::vector<KnownApp> &apps, const KnownRow (&rows)[count], const Places &places) {
    for (const KnownRow &row : rows)
        apps.push_back(placedRow(row, places));
}

std::vector<std::string> wordsIn(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (end > 0)
            words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

} // namespace

DesktopLeftoverRules desktopLeftoverRules(const Host &host) {
    const Places places(host);
    DesktopLeftoverRules rules;
    addRows(rules.knownApps, browsersAndMail, places);
    addRows(rules.knownApps, messengers, places);
    addRows(rules.knownApps, developers, places);
    addRows(rules.knownApps, gamesAndMedia, places);
    addRows(rules.knownApps, officeAndStorage, places);
    rules.genericWords = wordsIn(
        "app application client desktop studio player editor viewer browser launcher manager settings "
        "terminal files main start run python python2 python3 perl java node electron wine bash steam-run "
        "calendar contacts photos music videos games maps weather clock notes mail office");
    rules.sharedNames = wordsIn(
        "autostart dconf dbus-1 environment.d enchant evolution fcitx fcitx5 flatpak fontconfig fonts fish "
        "glib-2.0 gnome gnome-session goa-1.0 gtk-2.0 gtk-3.0 gtk-4.0 ibus kdeglobals kde.org kdedefaults "
        "libaccounts-glib libvirt menus mimeapps.list mozilla nautilus pipewire wireplumber plasma* pulse "
        "qt5ct qt6ct QtProject QtProject.conf systemd user-dirs.dirs user-dirs.locale xfce4 xsettingsd "
        "user-places Trolltech.conf applications baloo* containers desktop-directories gnome-shell "
        "grilo-plugins gvfs-metadata icc icons keyrings kwalletd mime metainfo pki recently-used.xbel* "
        "RecentDocuments sounds themes tracker tracker3 Trash user-places.xbel* webkitgtk xorg zeitgeist "
        "babl event-sound-cache.* gegl-* gstreamer-* mesa_shader_cache* nvidia obexd qtshadercache* "
        "thumbnails brimvale* "
        // of the desktops themselves, and of parts that many of their programs have
        "bluedevilglobalrc breezerc drkonqirc gtkrc* icon-cache.kcache kactivitymanagerd* kateschemarc "
        "katevirc emaildefaults emailidentities kcminputrc kconf_updaterc kcookiejar kcrash-metadata kded* "
        "kglobalshortcutsrc khotkeysrc kio_http kiorc klipper klipperrc knewstuff* krunner* kscreen "
        "kscreenlockerrc kservicemenurc ksmserver* ksplash* ksycoca* ktimezonedrc kwalletrc kwin* kxkbrc "
        "kxmlgui* lxqt phishingurl powerdevilrc powermanagementprofilesrc session sessions shumate "
        "startkderc trashrc xdg-desktop-portal*");
    rules.sharedNamesInHome =
        wordsIn(".cache .config .local .gnupg .ssh .pki .mozilla .java .wine .var .ecryptfs .Private "
                ".password-store .aws .kube .docker .netrc .bash* .profile .z* .vim .emacs.d .git* .gnome "
                ".kde* .fonts .icons .themes .dbus .snap .npm .cargo .rustup");
    rules.vendorFolders =
        wordsIn("BraveSoftware JetBrains Google mozilla GIMP libreoffice Meltytech QtProject "
                "Microsoft Kingsoft unity3d");
    rules.carefulCategories = wordsIn("Game Email InstantMessaging WebBrowser Finance Office Emulator "
                                      "ContactManagement ProjectManagement");
    return rules;
}

} // namespace brimvale::linuxCatalog
