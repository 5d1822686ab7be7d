#include "Support/SampleDesktop.h"

#include "Sample/AppRecords.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace brimvale::testing {

namespace {

void append(const std::string &path, std::string_view text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::app | std::ios::binary) << text;
}

void makeExecutable(const std::string &path) {
    std::filesystem::permissions(path, std::filesystem::perms(0755));
}

std::string lines(const std::vector<std::string> &texts) {
    std::string all;
    for (const std::string &text : texts)
        all.append(text).append("\n");
    return all;
}

std::string bytesOfHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::strtol(std::string(hex.substr(i, 2)).c_str(), nullptr, 16));
    return bytes;
}

void makePackages(const SampleDesktop &desktop) {
    desktop.makeProgram("usr/bin/viewer");
    desktop.makeEntry("usr/share/applications/org.example.Viewer.desktop", "Viewer", "viewer %U",
                      "Name[de]=Betrachter\nName[de_AT]=Anschauer\nIcon=org.example.Viewer\n");
    desktop.makeFile("usr/share/icons/hicolor/48x48/apps/org.example.Viewer.png", 100);
    desktop.makeFile("usr/share/icons/hicolor/scalable/apps/org.example.Viewer.svg", 100);
    desktop.installDeb("example-viewer", "Version: 2:1.4-1\nInstalled-Size: 2048\nPriority: optional\n",
                       {"/.", "/usr", "/usr/bin/viewer", "/usr/share/applications",
                        "/usr/share/applications/org.example.Viewer.desktop"});
    // Two entries of one package, in a list for an architecture.
    desktop.makeProgram("usr/bin/office");
    desktop.makeEntry("usr/share/applications/office-writer.desktop", "Office Writer", "office --writer");
    desktop.makeEntry("usr/share/applications/office.desktop", "Office", "env LANG=C office");
    desktop.installDeb(
        "office:amd64", "Version: 7\nInstalled-Size: 100\nPriority: optional\n",
        {"/usr/share/applications/office-writer.desktop", "/usr/share/applications/office.desktop"});
    desktop.makeProgram("usr/bin/cleaner");
    desktop.makeEntry("usr/share/applications/org.example.Cleaner.desktop", "Cleaner", "cleaner");
    desktop.makeEntry("usr/share/applications/cleaner-root.desktop", "Cleaner (as root)", "pkexec cleaner");
    desktop.installDeb("cleaner", "Version: 4\nInstalled-Size: 100\nPriority: optional\n",
                       {"/usr/share/applications/cleaner-root.desktop",
                        "/usr/share/applications/org.example.Cleaner.desktop"});
    desktop.makeProgram("usr/bin/gnome-shell");
    desktop.makeEntry("usr/share/applications/org.gnome.Shell.desktop", "Shell", "gnome-shell");
    desktop.installDeb("gnome-shell", "Version: 43\nInstalled-Size: 900\nPriority: optional\n",
                       {"/usr/share/applications/org.gnome.Shell.desktop"});
    desktop.makeProgram("usr/bin/arch-tool");
    desktop.makeEntry("usr/share/applications/arch-tool.desktop", "Arch Tool", "/usr/bin/arch-tool");
    desktop.installForPacman("arch-tool", "3-1", "123456", {"usr/share/applications/arch-tool.desktop"});
    // A package in /opt, which the user has given an entry of another name as well.
    desktop.makeProgram("opt/vendor/browser/browser");
    desktop.installDeb("vendor-browser", "Version: 99\nInstalled-Size: 400\nPriority: optional\n",
                       {"/opt/vendor", "/opt/vendor/browser", "/opt/vendor/browser/browser"});
    desktop.makeEntry("home/user/.local/share/applications/my-browser.desktop", "My Browser",
                      "/opt/vendor/browser/browser --profile mine");
}

void makeHiddenEntries(const SampleDesktop &desktop) {
    const auto entry = [&](const char *id, const char *keys) {
        desktop.makeEntry("usr/share/applications/" + std::string(id) + ".desktop", id, "viewer", keys);
    };
    entry("no-display", "NoDisplay=true\n");
    entry("in-terminal", "Terminal=true\n");
    entry("for-others", "OnlyShowIn=KDE;\n");
    entry("not-for-us", "NotShowIn=XFCE;GNOME;\n");
    entry("missing-program", "TryExec=missing\n");
    entry("deleted-by-user", "");
    desktop.writeFile("home/user/.local/share/applications/deleted-by-user.desktop",
                      "[Desktop Entry]\nHidden=true\n");
    desktop.writeFile("usr/share/applications/link.desktop",
                      "[Desktop Entry]\nType=Link\nName=Link\nURL=https://example.org\n");
    desktop.writeFile("usr/share/applications/broken.desktop", "Name=Broken\n[Desktop");
    // A shortcut of the user to a program of the system is no application.
    desktop.makeEntry("home/user/.local/share/applications/shortcut.desktop", "Shortcut", "viewer /tmp");
}

void makeOwnPrograms(const SampleDesktop &desktop) {
    const std::string entries = "home/user/.local/share/applications/";
    desktop.makeAppImage("home/user/Applications/Painter-2.1-x86_64.AppImage");
    desktop.makeEntry(entries + "appimagekit_abc-painter.desktop", "Painter",
                      "\"/home/user/Applications/Painter-2.1-x86_64.AppImage\" %F",
                      "X-AppImage-Version=2.1.7\n");
    desktop.makeAppImage("opt/tools/Plain_v3.0");
    desktop.writeFile("home/user/Downloads/unfinished.AppImage.part", "no");
    desktop.makeProgram("home/user/editor/bin/editor.sh", 20'000);
    desktop.makeFile("home/user/editor/uninstall.sh", 10);
    desktop.makeEntry(entries + "editor.desktop", "Editor", "/home/user/editor/bin/editor.sh %f");
    desktop.makeProgram("opt/chat/lib/chat", 10'000);
    desktop.makeEntry("usr/local/share/applications/chat.desktop", "Chat", "/opt/chat/lib/chat");
    desktop.makeProgram("home/user/.local/bin/single");
    desktop.makeEntry(entries + "single.desktop", "Single", "single");
    desktop.makeProgram("home/user/Documents/scripts/run");
    desktop.makeEntry(entries + "run.desktop", "Run", "/home/user/Documents/scripts/run");
    desktop.makeEntry(entries + "Game.desktop", "Game", "steam steam://rungameid/4711");
    desktop.writeFile("home/user/.local/share/Steam/steamapps/appmanifest_4711.acf",
                      "\"AppState\"\n{\n\t\"SizeOnDisk\"\t\t\"9000000\"\n}\n");
    desktop.makeEntry(entries + "chrome-abc-Default.desktop", "Mail Page",
                      "/usr/bin/browser --profile-directory=Default --app-id=abc");
    desktop.makeEntry(entries + "wine/Programs/Notes.desktop", "Notes",
                      "env WINEPREFIX=\"/home/user/.wine\" wine C:\\\\\\\\notes.exe");
}

} // namespace

Host SampleDesktop::host() const {
    return {System::linux, FileURL(path("home/user")), {}, path()};
}

void SampleDesktop::makeEntry(std::string_view inside, std::string_view name, std::string_view command,
                              std::string_view keys) const {
    writeFile(inside, sample::desktopEntry(name, command, keys));
}

void SampleDesktop::makeProgram(std::string_view inside, std::int64_t bytes) const {
    makeExecutable(makeFile(inside, bytes));
}

void SampleDesktop::installDeb(const std::string &name, const std::string &fields,
                               const std::vector<std::string> &files) const {
    writeFile("var/lib/dpkg/info/" + name + ".list", lines(files));
    append(path("var/lib/dpkg/status"),
           "Package: " + name.substr(0, name.find(':')) + "\nStatus: install ok installed\n" + fields + "\n");
}

void SampleDesktop::installForPacman(const std::string &name, const std::string &version,
                                     const std::string &size, const std::vector<std::string> &files) const {
    const std::string folder = "var/lib/pacman/local/" + name + "-" + version + "/";
    writeFile(folder + "desc",
              "%NAME%\n" + name + "\n\n%VERSION%\n" + version + "\n\n%SIZE%\n" + size + "\n");
    writeFile(folder + "files", "%FILES%\nusr/\n" + lines(files));
}

void SampleDesktop::installFlatpak(std::string_view installation, const std::string &id,
                                   std::string_view name) const {
    const std::string folder = std::string(installation) + "/app/" + id;
    writeFile(folder + "/x86_64/stable/0123/deploy", flatpakDeployBytes(false));
    makeLink(folder + "/x86_64/stable/active", "0123");
    makeLink(folder + "/current", "x86_64/stable");
    makeEntry(std::string(installation) + "/exports/share/applications/" + id + ".desktop", name,
              "/usr/bin/flatpak run --branch=stable --command=run " + id, "X-Flatpak=" + id + "\n");
}

void SampleDesktop::installSnap(const std::string &name, const std::string &revision,
                                std::string_view description, std::int64_t bytes) const {
    makeFile("var/lib/snapd/snaps/" + name + "_" + revision + ".snap", bytes);
    writeFile("snap/" + name + "/" + revision + "/meta/snap.yaml", description);
    std::filesystem::remove(path("snap/" + name + "/current"));
    makeLink("snap/" + name + "/current", revision);
}

void SampleDesktop::makeAppImage(std::string_view inside) const {
    std::string bytes("\x7F"
                      "ELF\x02\x01\x01\x00"
                      "AI\x02",
                      11);
    bytes.resize(70'000, 'x');
    makeExecutable(writeFile(inside, bytes));
}

std::string flatpakDeployBytes(bool hasLanguages) {
    const std::string start =
        "666c617468756200616261626162616261626162616261626162616261626162616261626162616261626162616261626162"
        "6162616261626162616261626162616261626162616200";
    const std::string rest =
        "00000000149aa4356465706c6f792d76657273696f6e00000400000000690f0074696d657374616d700000000000000000f1"
        "53650000000000740a000000000070726576696f75732d696473000000000061730d00000000617070646174612d6e616d65"
        "000000004d6170730000730d617070646174612d76657273696f6e0034372e310000731072756e74696d65006f72672e676e"
        "6f6d652e506c6174666f726d2f7838365f36342f34370000730817334c6880a8";
    return bytesOfHex(hasLanguages ? start + "2f6465002f66720004080000000000" + rest + "530049000800"
                                   : start + "00000000000000" + rest + "490049000800");
}

void makeSampleDesktop(const SampleDesktop &desktop) {
    makePackages(desktop);
    makeHiddenEntries(desktop);
    desktop.installFlatpak("var/lib/flatpak", "org.example.Maps", "Maps");
    desktop.installFlatpak("home/user/.local/share/flatpak", "com.example.Player", "Player");
    desktop.installSnap("drawer", "9", "name: drawer\nversion: '0.9'\ntype: app\n", 10'000);
    desktop.installSnap("drawer", "10", "name: drawer\nversion: '1.0'\ntype: app\n", 20'000);
    desktop.makeEntry("var/lib/snapd/desktop/applications/drawer_drawer.desktop", "Drawer",
                      "env BAMF=x /snap/bin/drawer %U",
                      "X-SnapInstanceName=drawer\nX-SnapCommonID=org.example.Drawer\n"
                      "Icon=/snap/drawer/current/meta/gui/icon.png\n");
    desktop.makeFile("snap/drawer/10/meta/gui/icon.png", 10);
    desktop.installSnap("core22", "1", "name: core22\ntype: base\n", 5'000);
    makeOwnPrograms(desktop);
}

} // namespace brimvale::testing
