#include "Core/Apps/Linux/Packages.h"

#include "Catalogs/Catalog.h"
#include "Support/SampleDesktop.h"

#include <gmock/gmock.h>

namespace brimvale::linuxApps {

namespace {

using ::testing::IsEmpty;
using testing::SampleDesktop;
using ::testing::UnorderedElementsAre;

const std::string entry = "/usr/share/applications/org.example.Tool.desktop";
const std::string other = "/usr/share/applications/shell.desktop";

/// Path, package, version, size and command of each.
std::vector<std::string> ownersIn(const SampleDesktop &desktop) {
    const DesktopPlaces places = *catalogOf(System::linux).desktopPlaces(desktop.host());
    std::vector<std::string> lines;
    for (const auto &[path, package] :
         ownersOf({entry, other, "/opt/tool/bin", "/usr/share/applications/none.desktop"}, places))
        lines.push_back(path + '|' + package.name + '|' + package.version + '|' +
                        (package.size ? std::to_string(*package.size) : "-") + '|' + package.removeCommand +
                        (package.isOfSystem ? "|system" : ""));
    return lines;
}

} // namespace

TEST(Packages, AreFoundInTheDatabaseOfApk) {
    const SampleDesktop desktop;
    const std::string records =
        "C:Q1sRvEwe8wBQ2d0Zq0\nP:musl\nV:1.2.5-r9\nI:671744\nF:lib\nR:libc.so\na:0:0:755\n\n"
        "C:Q1pA\nP:tool\nV:2.4-r1\nA:x86_64\nS:90123\nI:450560\nT:A tool\nt:1719000000\n"
        "D:so:libc.musl-x86_64.so.1\nF:opt\nF:opt/tool\nF:opt/tool/bin\nM:0:0:755\nR:tool\n"
        "a:0:0:755\nZ:Q1x\nF:usr\nF:usr/share\nF:usr/share/applications\n"
        "R:org.example.Tool.desktop\nZ:Q1y\n\n"
        "P:gnome-shell\nV:48.1-r0\nI:12000000\nF:usr/share/applications\nR:shell.desktop\n\n";
    const auto expected = UnorderedElementsAre(
        entry + "|tool|2.4-r1|450560|sudo apk del tool", "/opt/tool/bin|tool|2.4-r1|450560|sudo apk del tool",
        other + "|gnome-shell|48.1-r0|12000000|sudo apk del gnome-shell|system");
    desktop.writeFile("lib/apk/db/installed", records);
    EXPECT_THAT(ownersIn(desktop), expected);
    desktop.writeFile("lib/apk/db/installed", "");
    desktop.writeFile("usr/lib/apk/db/installed", records.substr(0, records.size() - 1));
    EXPECT_THAT(ownersIn(desktop), expected);
    desktop.writeFile("usr/lib/apk/db/installed",
                      "\n\nP\nF:\n:\n\n\nR:x\n\nF:usr/share/applications\nR:shell.desktop");
    EXPECT_THAT(ownersIn(desktop), IsEmpty());
}

TEST(Packages, AreFoundInTheDatabaseOfXbps) {
    const SampleDesktop desktop;
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n";
    const auto files = [&](const std::string &path) {
        return start + "\t<key>files</key>\n\t<array>\n\t\t<dict>\n\t\t\t<key>file</key>\n\t\t\t<string>" +
               path +
               "</string>\n\t\t\t<key>sha256</key>\n\t\t\t<string>00ff</string>\n\t\t</dict>\n\t</array>\n</"
               "dict>\n</plist>\n";
    };
    desktop.writeFile("var/db/xbps/.tool-files.plist", files(entry));
    desktop.writeFile("var/db/xbps/.gnome-shell-files.plist", files(other));
    EXPECT_THAT(ownersIn(desktop),
                UnorderedElementsAre(entry + "|tool||-|sudo xbps-remove -R tool",
                                     other + "|gnome-shell||-|sudo xbps-remove -R gnome-shell|system"));
    desktop.writeFile(
        "var/db/xbps/pkgdb-0.38.plist",
        start +
            "\t<key>gnome-shell</key>\n\t<dict>\n\t\t<key>installed_size</key>\n\t\t<integer>0xb71b00</"
            "integer>\n"
            "\t\t<key>pkgver</key>\n\t\t<string>gnome-shell-48.1_1</string>\n\t</dict>\n"
            "\t<key>tool</key>\n\t<dict>\n\t\t<key>alternatives</key>\n\t\t<dict>\n\t\t\t<key>tool</key>\n"
            "\t\t\t<array>\n\t\t\t\t<string>tool:/usr/bin/tool2</string>\n\t\t\t</array>\n\t\t</dict>\n"
            "\t\t<key>installed_size</key>\n\t\t<integer>450560</integer>\n\t\t<key>pkgver</key>\n"
            "\t\t<string>tool-2.4_1</string>\n\t\t<key>state</key>\n\t\t<string>installed</string>\n"
            "\t</dict>\n</dict>\n</plist>\n");
    EXPECT_THAT(
        ownersIn(desktop),
        UnorderedElementsAre(entry + "|tool|2.4_1|450560|sudo xbps-remove -R tool",
                             other + "|gnome-shell|48.1_1|12000000|sudo xbps-remove -R gnome-shell|system"));
    for (const char *broken :
         {"<key>tool</key><dict>", "<key>tool</key>", "<key>tool</key><dict><key>pkgver</key></dict>",
          "<key>tool</key><dict><key>installed_size</key><integer"}) {
        desktop.writeFile("var/db/xbps/pkgdb-0.38.plist", broken);
        EXPECT_EQ(ownersIn(desktop).size(), 2U);
    }
}

TEST(Packages, AreFoundInTheDatabaseOfPortage) {
    const SampleDesktop desktop;
    desktop.writeFile(
        "var/db/pkg/app-misc/big-tool-3-2.4_p1-r1/CONTENTS",
        "dir /opt\ndir /opt/tool\ndir /opt/tool/bin\nobj /opt/tool/bin/tool d41d8cd98f00b204 1719000000\n"
        "sym /usr/bin/tool -> ../../opt/tool/bin/tool 1719000000\ndir /usr/share/applications\nobj " +
            entry + " d41d8cd98f00b204 1719000000\n");
    desktop.writeFile("var/db/pkg/app-misc/big-tool-3-2.4_p1-r1/SIZE", "450560\n");
    desktop.writeFile("var/db/pkg/gnome-base/gnome-shell-48.1/CONTENTS",
                      "obj " + other + " d41d8 1719000000\n");
    desktop.writeFile("var/db/pkg/app-misc/-MERGING-other-1/CONTENTS",
                      "obj " + entry + " d41d8 1719000000\n");
    const std::string tool =
        "|app-misc/big-tool-3|2.4_p1-r1|450560|sudo emerge --ask --depclean app-misc/big-tool-3";
    EXPECT_THAT(
        ownersIn(desktop),
        UnorderedElementsAre(
            entry + tool, "/opt/tool/bin" + tool,
            other +
                "|gnome-base/gnome-shell|48.1|-|sudo emerge --ask --depclean gnome-base/gnome-shell|system"));
}

} // namespace brimvale::linuxApps
