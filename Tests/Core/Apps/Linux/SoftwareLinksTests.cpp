#include "Core/Apps/Linux/SoftwareLinks.h"

#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Uninstall.h"
#include "Support/SampleDesktop.h"

#include <gmock/gmock.h>
#include <map>

namespace brimvale::linuxApps {

namespace {

using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;
using Links = std::map<std::string, std::string>;

/// The links of the applications that have one, by the ids of their entries.
Links linksOn(const testing::SampleDesktop &desktop) {
    Links links;
    for (const InstalledApp &app : AppInventory::scan(true, desktop.host()))
        if (const std::string link = Uninstall::softwareLinkFor(app); !link.empty())
            links[*app.bundleID] = link;
    return links;
}

} // namespace

TEST(SoftwareLinks, AreThoseOfDescribedPackagesWhereAProgramOpensThem) {
    const testing::SampleDesktop desktop;
    makeSampleDesktop(desktop);
    const auto describe = [&](const std::string &file, const std::string &xml) {
        desktop.writeFile("usr/share/" + file,
                          "<?xml version=\"1.0\"?>\n<component>\n" + xml + "</component>\n");
    };
    describe("metainfo/org.example.Viewer.metainfo.xml",
             "<identity/><id>\n  org.example.Viewer.desktop </id>\n<name>Viewer</name>\n");
    describe("appdata/office.appdata.xml", "<id type=\"desktop\">org.example.Office</id>"
                                           "<launchable type=\"service\">arch-tool.service</launchable>"
                                           "<launchable type=\"desktop-id\">office.desktop</launchable>");
    describe("metainfo/shell.xml", "<id>org.gnome.Shell</id>"); // of the system
    describe("metainfo/maps.xml", "<id>org.example.Maps</id>"); // a Flatpak
    describe("metainfo/evil.xml", "<id>x\" y; rm</id><launchable type=\"desktop-id\">arch-tool.desktop"
                                  "</launchable>");
    describe("metainfo/broken.xml", "<id");
    EXPECT_THAT(linksOn(desktop), IsEmpty());

    const std::string types = "MimeType=text/plain;x-scheme-handler/appstream;\n";
    desktop.makeEntry("usr/share/applications/missing.desktop", "Missing", "missing-store %U", types);
    EXPECT_THAT(linksOn(desktop), IsEmpty()) << "its program is not there";
    desktop.makeProgram("usr/bin/store");
    desktop.makeEntry("usr/share/applications/deleted.desktop", "Deleted", "store %U",
                      types + "Hidden=true\n");
    EXPECT_THAT(linksOn(desktop), IsEmpty());
    desktop.makeEntry("usr/share/applications/store-links.desktop", "Store", "store %U",
                      types + "NoDisplay=true\n");
    EXPECT_THAT(linksOn(desktop),
                UnorderedElementsAre(Pair("org.example.Viewer", "appstream:org.example.Viewer.desktop"),
                                     Pair("office", "appstream:org.example.Office")));
}

} // namespace brimvale::linuxApps
