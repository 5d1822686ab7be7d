// The applications on the sample of a computer with Linux, as each package manager records them.

#include "Base/FileURL.h"
#include "Sample/AppRecords.h"
#include "Sample/LinuxDisk.h"

#include <string>
#include <string_view>

namespace brimvale::sample {

namespace {

// Shapes of icons, in 64 by 64 points
constexpr const char *flame =
    "M32 14c10 10 14 16 14 23a14 14 0 0 1-28 0c0-5 3-9 6-12 1 4 3 6 6 7-1-8 0-13 2-18z";
constexpr const char *brush = "M44 17 28 33M24 35c-6 0-9 5-8 12 7 1 12-2 12-8z";
constexpr const char *cone = "M32 15 20 46h24zM26 31h12M16 50h32";
constexpr const char *letter = "M15 21h34v24H15zM15 22l17 14 17-14";
constexpr const char *page = "M21 14h16l8 8v28H21zM27 30h12M27 38h12";
constexpr const char *brackets = "M24 20 13 32l11 12M40 20l11 12-11 12";
constexpr const char *note = "M25 44V20l20-4v24M25 44a5 5 0 1 1-1-3M45 40a5 5 0 1 1-1-3";
constexpr const char *pen = "M18 46l3-11 20-20 8 8-20 20zM37 19l8 8";
constexpr const char *cube = "M32 14 48 23v18l-16 9-16-9V23zM16 23l16 9 16-9M32 32v18";
constexpr const char *pad =
    "M20 25h24a9 9 0 0 1 4 17c-4 1-6-5-9-5H25c-3 0-5 6-9 5a9 9 0 0 1 4-17zM22 31v4M42 32v1";
constexpr const char *map = "M15 20l11-5 12 5 11-5v29l-11 5-12-5-11 5zM26 15v29M38 20v29";
constexpr const char *book =
    "M32 20c-5-4-11-4-17-3v28c6-1 12-1 17 3 5-4 11-4 17-3V17c-6-1-12-1-17 3zM32 20v28";

/// A package of Debian with an application.
struct DebApp {
    const char *entry;
    const char *name;
    const char *package;
    const char *version;
    const char *program; ///< in /usr/bin
    std::int64_t kilobytes;
    int days;
    const char *color;
    const char *shape;
};

constexpr DebApp debApps[] = {
    {"firefox-esr", "Firefox ESR", "firefox-esr", "128.3.0esr-1", "firefox-esr", 14200, 18, "#e66100", flame},
    {"thunderbird", "Thunderbird", "thunderbird", "1:115.9.0-1", "thunderbird", 13100, 40, "#1c71d8", letter},
    {"gimp", "GIMP", "gimp", "2.10.34-1", "gimp-2.10", 9800, 300, "#865e3c", brush},
    {"vlc", "VLC", "vlc", "3.0.20-0", "vlc", 6700, 300, "#ff7800", cone},
    {"libreoffice-writer", "LibreOffice Writer", "libreoffice-writer", "1:7.4.7-1", "lowriter", 18400, 300,
     "#26a269", page},
    {"code", "Visual Studio Code", "code", "1.87.2-1709912201", "code", 16600, 44, "#3584e4", brackets},
    {"steam", "Steam", "steam-launcher", "1:1.0.0.79", "steam", 2400, 260, "#3d3846", pad},
};

struct FlatpakApp {
    const char *id;
    const char *name;
    bool isOfUser;
    std::int64_t kilobytes;
    int days;
    const char *color;
    const char *shape;
};

constexpr FlatpakApp flatpakApps[] = {
    {"org.inkscape.Inkscape", "Inkscape", false, 11900, 130, "#241f31", pen},
    {"org.kde.krita", "Krita", true, 14800, 210, "#9141ac", brush},
    {"org.gnome.Maps", "Maps", true, 3600, 75, "#33d17a", map},
};

constexpr SizedFile filesOfApps[] = {
    {"~/.mozilla/firefox/q1w2.default-release/storage/default/data.sqlite", 2900, 1},
    {"~/.config/GIMP/2.10/brushes/set.gbr", 2100, 230},
    {"~/.config/vlc/vlcrc", 120, 200},
    {"~/.config/libreoffice/4/user/registrymodifications.xcu", 900, 95},
    {"~/.var/app/org.inkscape.Inkscape/config/inkscape/preferences.xml", 40, 130},
    {"~/.var/app/org.inkscape.Inkscape/cache/fonts", 1900, 130},
    {"~/.var/app/org.kde.krita/data/krita/brushes.bundle", 5600, 210},
    {"~/.var/app/org.kde.krita/cache/thumbnails", 2700, 210},
    {"~/.var/app/org.gnome.Maps/cache/tiles", 4400, 75},
    {"~/.var/app/com.example.Farming/data/saves/world.dat", 5200, 1100}, // it was removed
    {"~/.var/app/com.example.Farming/cache/textures", 3100, 1100},
    {"~/snap/spotify/common/cache/chunk", 3900, 5},
    {"~/.config/blender/4.1/config/userpref.blend", 260, 150},
    {"~/.config/joplin-desktop/database.sqlite", 3300, 9},
    {"/opt/blender/lib/libblender.so", 12800, 150},
    {"/opt/blender/4.1/datafiles/studiolights.bin", 6900, 150},
    {"/var/lib/flatpak/repo/objects/3a/inkscape.filez", 5300, 130},
    {"/var/lib/flatpak/repo/objects/9c/platform.filez", 9700, 130},
    {"~/.local/share/flatpak/repo/objects/1f/krita.filez", 6100, 210},
    {"/var/lib/flatpak/runtime/org.gnome.Platform/x86_64/47/3d1a/files/lib/libgtk-4.so", 9400, 130},
    {"/var/lib/flatpak/runtime/org.gnome.Platform/x86_64/45/77b0/files/lib/libgtk-4.so", 9100, 800},
    {"/var/lib/snapd/snaps/spotify_79.snap", 9900, 160},
    {"/var/lib/snapd/snaps/spotify_80.snap", 10200, 35},
    {"/var/lib/snapd/snaps/core22_1380.snap", 7700, 90},
    {"/var/lib/snapd/snapshots/3_notes_2.1_44.zip", 2600, 28},
};

std::string iconKey(std::string_view name) {
    return "Icon=" + std::string(name) + "\n";
}

void makeIcon(DiskBuilder &disk, const std::string &data, std::string_view name, const char *color,
              const char *shape) {
    disk.writeFile(data + "/icons/hicolor/scalable/apps/" + std::string(name) + ".svg",
                   iconPicture(color, shape), 300);
}

std::string statusOf(const DebApp &app) {
    std::string status = "Package: ";
    status.append(app.package).append("\nStatus: install ok installed\nPriority: optional\nInstalled-Size: ");
    status.append(std::to_string(app.kilobytes)).append("\nVersion: ").append(app.version);
    return status.append("\n\n");
}

void makeDebApps(DiskBuilder &disk) {
    std::string status;
    for (const DebApp &app : debApps) {
        const std::string entry = std::string("/usr/share/applications/") + app.entry + ".desktop";
        const std::string program = std::string("/usr/bin/") + app.program;
        const std::string folder = std::string("/usr/lib/") + app.package;
        disk.writeFile(entry, desktopEntry(app.name, std::string(app.program) + " %U", iconKey(app.entry)),
                       app.days);
        makeIcon(disk, "/usr/share", app.entry, app.color, app.shape);
        disk.writeScript(program, "exit 0\n", app.days);
        disk.makeFile(folder + "/lib" + app.package + ".so", app.kilobytes * kilobyte, app.days);
        disk.writeFile("/var/lib/dpkg/info/" + std::string(app.package) + ".list",
                       "/.\n/usr\n" + program + "\n" + folder + "\n" + entry + "\n", app.days);
        status += statusOf(app);
    }
    disk.writeFile("/var/lib/dpkg/status", status, 1);
}

void makeFlatpakApps(DiskBuilder &disk) {
    for (const FlatpakApp &app : flatpakApps) {
        const std::string data = app.isOfUser ? "~/.local/share/flatpak" : "/var/lib/flatpak";
        const std::string folder = data + "/app/" + app.id, exports = data + "/exports/share";
        const std::string deployed = folder + "/x86_64/stable/5f0c";
        disk.writeFile(deployed + "/deploy", flatpakDeploy(app.kilobytes * kilobyte), app.days);
        disk.writeFile(deployed + "/metadata",
                       "[Application]\nname=" + std::string(app.id) +
                           "\nruntime=org.gnome.Platform/x86_64/47\n",
                       app.days);
        disk.makeFile(deployed + "/files/bin/program", app.kilobytes * kilobyte, app.days);
        disk.makeLink(folder + "/x86_64/stable/active", "5f0c");
        disk.makeLink(folder + "/current", "x86_64/stable");
        disk.writeFile(exports + "/applications/" + app.id + ".desktop",
                       desktopEntry(app.name, std::string("/usr/bin/flatpak run --branch=stable ") + app.id,
                                    iconKey(app.id) + "X-Flatpak=" + app.id + "\n"),
                       app.days);
        makeIcon(disk, exports, app.id, app.color, app.shape);
    }
    disk.makeLink("/var/lib/flatpak/runtime/org.gnome.Platform/x86_64/47/active", "3d1a");
    disk.makeLink("/var/lib/flatpak/runtime/org.gnome.Platform/x86_64/45/active", "77b0");
}

void makeSnaps(DiskBuilder &disk) {
    disk.writeFile("/snap/spotify/80/meta/snap.yaml", "name: spotify\nversion: '1.2.31'\ntype: app\n", 35);
    disk.writeFile("/snap/spotify/80/meta/gui/icon.svg", iconPicture("#2ec27e", note), 35);
    disk.makeLink("/snap/spotify/current", "80");
    disk.writeFile("/snap/core22/1380/meta/snap.yaml", "name: core22\ntype: base\n", 90);
    disk.makeLink("/snap/core22/current", "1380");
    disk.writeFile("/var/lib/snapd/desktop/applications/spotify_spotify.desktop",
                   desktopEntry("Spotify", "env BAMF=x /snap/bin/spotify %U",
                                "X-SnapInstanceName=spotify\nIcon=/snap/spotify/current/meta/gui/icon.svg\n"),
                   35);
}

/// Programs that no package manager knows.
void makeOwnApps(DiskBuilder &disk) {
    const std::string entries = "~/.local/share/applications/";
    std::string image("\x7F"
                      "ELF\x02\x01\x01\x00"
                      "AI\x02",
                      11);
    image.resize(2'900'000, 'x');
    disk.writeFile("~/Applications/Joplin-3.1.24.AppImage", image, 90);
    disk.writeFile(entries + "appimagekit-joplin.desktop",
                   desktopEntry("Joplin", "\"/home/sam/Applications/Joplin-3.1.24.AppImage\" %U",
                                "Icon=joplin\nX-AppImage-Version=3.1.24\n"),
                   90);
    makeIcon(disk, "~/.local/share", "joplin", "#1a5fb4", book);
    disk.writeScript("/opt/blender/blender", "exit 0\n", 150);
    disk.writeFile("/usr/local/share/applications/blender.desktop",
                   desktopEntry("Blender", "/opt/blender/blender %f", "Icon=blender\n"), 150);
    makeIcon(disk, "/usr/share", "blender", "#e5a50a", cube);
    disk.writeFile(entries + "Pine Valley.desktop",
                   desktopEntry("Pine Valley", "steam steam://rungameid/4711", "Icon=steam\n"), 260);
    disk.writeFile("~/.local/share/Steam/steamapps/appmanifest_4711.acf",
                   "\"AppState\"\n{\n\t\"appid\"\t\t\"4711\"\n\t\"name\"\t\t\"Pine Valley\"\n"
                   "\t\"installdir\"\t\t\"Pine Valley\"\n\t\"SizeOnDisk\"\t\t\"13000000\"\n}\n",
                   260);
    disk.writeFile("~/.local/share/Steam/steamapps/appmanifest_4712.acf",
                   "\"AppState\"\n{\n\t\"appid\"\t\t\"4712\"\n\t\"name\"\t\t\"Orbit\"\n"
                   "\t\"installdir\"\t\t\"Orbit\"\n}\n",
                   480);
}

} // namespace

void makeLinuxApps(DiskBuilder &disk) {
    disk.makeFiles(filesOfApps);
    makeDebApps(disk);
    makeFlatpakApps(disk);
    makeSnaps(disk);
    makeOwnApps(disk);
}

} // namespace brimvale::sample
