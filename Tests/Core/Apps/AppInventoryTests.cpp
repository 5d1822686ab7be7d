#include "Core/Apps/AppInventory.h"

#include "Support/PropertyLists.h"
#include "Support/SampleApps.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::makeBundle;
using testing::TemporaryFolder;

/// Name, version and identifier of each, and what is special.
std::vector<std::string> described(const std::vector<InstalledApp> &apps) {
    std::vector<std::string> lines;
    for (const InstalledApp &app : apps) {
        std::string line = app.name + '|' + app.version.value_or("-") + '|' + app.bundleID.value_or("-");
        line += app.isSystemApp ? " system" : "";
        line += app.isMASApp ? " store" : "";
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> paths(const std::vector<InstalledApp> &apps, const std::string &below) {
    std::vector<std::string> lines;
    for (const InstalledApp &app : apps)
        lines.push_back(app.url.path().substr(below.size() + 1));
    return lines;
}

} // namespace

TEST(AppInventory, ListsBundlesInFinderOrder) {
    const TemporaryFolder home;
    testing::makeSampleApps(home, "");
    const AppRoots roots{{home.path("Applications")}, {}};
    EXPECT_THAT(described(AppInventory::scan(false, roots)),
                ElementsAreArray(std::vector<std::string>{
                    "Acme|1.2|com.example.acme",
                    "Acme Pro|7|com.example.acme.pro",
                    "Binäry ☃|3.0|com.example.binary",
                    "Broken|-|-",
                    "By its bundle name|-|-",
                    home.possibleName("caf\xE9") + "|-|-",
                    "Deep|-|-",
                    "Écran & son|-|com.example.ecran",
                    "Empty names|-|",
                    "Flat|-|com.example.flat",
                    "Foo|-|com.example.foo", // the link to it, found first, is no second one
                    "No dictionary|-|-",
                    "Numbers|4|-",
                    "Outer|-|-",
                    "Phone|-|com.example.phone",
                    "Pipe|-|-",
                    "Store|-|com.example.store store",
                    "Tool 2|-|-",
                    "Tool 10|-|-",
                    "日本語|-|-",
                }));
}

TEST(AppInventory, ListsBundleOnceForSeveralRoots) {
    const TemporaryFolder folder;
    makeBundle(folder, "Applications/One.app");
    makeBundle(folder, "Applications/Suite/Two.app");
    folder.makeFolder("home");
    folder.makeLink("home/Applications", "../Applications");
    const AppRoots roots{
        {folder.path("Applications"), folder.path("home/Applications"), folder.path("Applications/Suite")},
        {}};
    EXPECT_THAT(paths(AppInventory::scan(false, roots), folder.path()),
                ElementsAre("Applications/One.app", "Applications/Suite/Two.app"));

    // Whichever leads there first names it.
    const AppRoots reversed{{roots.user[1], roots.user[0]}, {}};
    EXPECT_THAT(paths(AppInventory::scan(false, reversed), folder.path()),
                ElementsAre("home/Applications/One.app", "home/Applications/Suite/Two.app"));
}

TEST(AppInventory, LinkCyclesEnd) {
    const TemporaryFolder folder;
    for (int i = 0; i < 12; ++i) {
        const std::string inside = "root/" + std::to_string(i);
        makeBundle(folder, inside + "/" + std::to_string(i) + ".app");
        for (int j = 0; j < 12; ++j)
            folder.makeLink(inside + "/to " + std::to_string(j), "../" + std::to_string(j));
        folder.makeLink(inside + "/up", "..");
    }
    EXPECT_EQ(AppInventory::bundles(folder.path("root"), 3).size(), 12U);
    // A folder that a link leads to near the top is searched as deep as from there.
    makeBundle(folder, "other/a/b/c/d/e.app");
    folder.makeLink("other/link", "a/b/c");
    EXPECT_THAT(AppInventory::bundles(folder.path("other"), 3),
                ElementsAre(folder.path("other/link/d/e.app")));
    EXPECT_TRUE(AppInventory::bundles(folder.path("missing"), 3).empty());
}

TEST(AppInventory, RecognizesSystemAppsByFolder) {
    const TemporaryFolder folder;
    makeBundle(folder, "Applications/User.app");
    makeBundle(folder, "System/Applications/Utilities/System.app");
    const AppRoots roots{{folder.path("Applications")}, {folder.path("System/Applications")}};
    EXPECT_THAT(described(AppInventory::scan(false, roots)), ElementsAre("User|-|-"));
    EXPECT_THAT(described(AppInventory::scan(true, roots)), ElementsAre("System|-|- system", "User|-|-"));
    EXPECT_TRUE(roots.isSystem(folder.path("System/Applications/Utilities/System.app")));
    EXPECT_FALSE(roots.isSystem(folder.path("Applications/User.app")));
}

TEST(AppInventory, LinksMakeNeitherSecondRowsNorRemovableSystemApps) {
    const TemporaryFolder folder;
    makeBundle(folder, "System/Applications/Deep/System.app");
    makeBundle(folder, "home/Applications/Own.app");
    makeBundle(folder, "elsewhere/Far.app");
    folder.makeLink("Applications/Far alias.app", "../elsewhere/Far.app");
    folder.makeLink("Applications/Own.app", "../home/Applications/Own.app");
    folder.makeLink("home/Applications/System.app", "../../System/Applications/Deep/System.app");
    const AppRoots roots{{folder.path("Applications"), folder.path("home/Applications")},
                         {folder.path("System/Applications")}};
    const std::vector<InstalledApp> apps = AppInventory::scan(false, roots);
    EXPECT_THAT(paths(apps, folder.path()),
                ElementsAre("Applications/Far alias.app", "home/Applications/Own.app",
                            "home/Applications/System.app"));
    EXPECT_THAT(described(apps), ElementsAre("Far alias|-|-", "Own|-|-", "System|-|- system"));
    EXPECT_EQ(AppInventory::scan(true, roots).size(), 3U);

    // The same by a link to the whole folder of the system.
    folder.makeLink("home/Applications/All", "../../System/Applications");
    std::filesystem::remove(folder.path("home/Applications/System.app"));
    EXPECT_THAT(described(AppInventory::scan(false, roots)),
                ElementsAre("Far alias|-|-", "Own|-|-", "System|-|- system"));
}

} // namespace brimvale
