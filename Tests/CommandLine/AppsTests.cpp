#include "CommandLine/Program.h"
#include "Support/SampleApps.h"
#include "Support/SampleDesktop.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

/// The program for a user whose home this is, on a Mac that has nothing else.
Outcome runIn(const TemporaryFolder &home, const std::vector<std::string> &arguments) {
    return runProgramOnMac(home.path("nothing"), arguments, inHome(home.path()));
}

QJsonArray arrayIn(const Outcome &outcome) {
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return jsonIn(outcome).array();
}

/// The row of the application in this bundle, null where there is none.
QJsonObject rowOf(const QJsonArray &rows, const std::string &path) {
    for (const QJsonValue &row : rows)
        if (row["app"]["url"].toString().toStdString() == path)
            return row.toObject();
    return {};
}

} // namespace

TEST(Apps, JsonHasEveryMember) {
    const TemporaryFolder home;
    makeSampleApps(home, "");
    const QJsonArray rows = arrayIn(runIn(home, {"apps", "--json"}));
    const QJsonObject row = rowOf(rows, home.path("Applications/Acme.app"));
    EXPECT_EQ(row["app"].toObject(),
              (QJsonObject{{"url", QString::fromStdString(home.path("Applications/Acme.app"))},
                           {"name", "Acme"},
                           {"bundleID", "com.example.acme"},
                           {"version", "1.2"},
                           {"isSystemApp", false},
                           {"isMASApp", false},
                           {"lastUsed", QJsonValue::Null}}));
    EXPECT_EQ(row["bundleSize"], 0);
    EXPECT_EQ(row["leftovers"], QJsonArray());
    EXPECT_EQ(row["analyzed"], false);
    EXPECT_EQ(row.size(), 4);
    const QJsonObject bare = rowOf(rows, home.path("Applications/No dictionary.app"));
    EXPECT_TRUE(bare["app"]["bundleID"].isNull());

    const Outcome table = runIn(home, {"apps"});
    EXPECT_THAT(table.out, HasSubstr("Acme  "));
    EXPECT_THAT(table.out, HasSubstr("  1.2"));
    EXPECT_THAT(table.out, HasSubstr("  " + home.path("Applications/Acme.app") + "\n"));
}

TEST(Apps, AnalyzeMeasuresAppsAndLeftovers) {
    const TemporaryFolder home;
    makeBundle(home, "Applications/Acme.app", {"com.example.acme", "Acme", {}, {}, {}});
    home.makeFile("Library/Caches/com.example.acme/data", 50'000);
    home.makeFile("Library/LaunchAgents/Acme.plist", 100);
    const QJsonObject row =
        rowOf(arrayIn(runIn(home, {"apps", "--analyze", "--json"})), home.path("Applications/Acme.app"));
    EXPECT_GE(row["bundleSize"].toInteger(), 10'000);
    EXPECT_EQ(row["analyzed"], true);
    const QJsonArray leftovers = row["leftovers"].toArray();
    ASSERT_EQ(leftovers.size(), 2);
    EXPECT_GE(leftovers[0]["size"].toInteger(), 50'000);
    EXPECT_EQ(leftovers[1].toObject(),
              (QJsonObject{{"url", QString::fromStdString(home.path("Library/LaunchAgents/Acme.plist"))},
                           {"category", "Login item"},
                           {"confidence", "likely"},
                           {"size", leftovers[1]["size"]},
                           {"requiresAdmin", false},
                           {"isFolder", false},
                           {"isVague", false}}));
    EXPECT_EQ(leftovers[0]["isFolder"], true);
    EXPECT_EQ(arrayIn(runIn(home, {"leftovers", "com.example.acme", "--json"})), leftovers);
}

TEST(Apps, OfLinuxHaveAKindAndAWayOfRemoval) {
    const SampleDesktop desktop;
    makeSampleDesktop(desktop);
    desktop.makeFile("home/user/.var/app/org.example.Maps/data/x", 50'000);
    desktop.writeFile("proc/10/cgroup", "0::/user.slice/app-flatpak-org.example.Maps-7.scope\n");
    const auto run = [&](const std::vector<std::string> &arguments) {
        return runProgramOnLinux(desktop.path(), arguments, inHome(desktop.path("home/user")));
    };
    const QJsonArray rows = arrayIn(run({"apps", "--analyze", "--json"}));
    const QJsonObject maps = rowOf(rows, desktop.path("var/lib/flatpak/app/org.example.Maps"));
    EXPECT_EQ(maps["bundleSize"], 345'678'901);
    EXPECT_EQ(maps["app"]["kind"], "flatpak");
    EXPECT_EQ(maps["app"]["origin"], "flathub");
    EXPECT_EQ(maps["app"]["isRunning"], true);
    EXPECT_EQ(maps["app"]["removal"].toObject(),
              (QJsonObject{{"way", "command"},
                           {"program", "flatpak"},
                           {"arguments", QJsonArray{"uninstall", "--system", "-y", "org.example.Maps"}}}));
    const QJsonObject leftover = maps["leftovers"][0].toObject();
    EXPECT_EQ(leftover["reason"], "Flatpak data folder");
    EXPECT_EQ(leftover["isCareful"], false);
    const QJsonObject editor = rowOf(rows, desktop.path("home/user/editor"));
    EXPECT_EQ(editor["app"]["isRunning"], false);
    EXPECT_EQ(editor["app"]["removal"]["uninstaller"].toString().toStdString(),
              desktop.path("home/user/editor/uninstall.sh"));

    EXPECT_THAT(run({"apps"}).out, MatchesRegex("KIND +NAME +VERSION +IDENTIFIER +PATH\n.*"));
    for (const std::string &app :
         {std::string("org.example.Maps"), desktop.path("var/lib/flatpak/app/org.example.Maps")})
        EXPECT_THAT(run({"leftovers", app}).out, HasSubstr("Sandbox data  Flatpak data folder  "));
    EXPECT_EQ(run({"leftovers", "example-viewer"}).out, "No other files found for this app.\n");
}

TEST(Leftovers, NameTheOtherApplicationsThatClaimThem) {
    const SampleDesktop desktop;
    for (const char *id : {"firefox", "firefox-esr"}) {
        desktop.makeProgram(std::string("usr/bin/") + id);
        desktop.makeEntry(std::string("usr/share/applications/") + id + ".desktop", id, id);
    }
    desktop.makeFile("home/user/.mozilla/firefox/profile/x", 10);
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"leftovers", "firefox"});
        return runProgramOnLinux(desktop.path(), arguments, inHome(desktop.path("home/user")));
    };
    EXPECT_THAT(run({}).out, HasSubstr("/.mozilla/firefox  [careful]  [also firefox-esr]\n"));
    const QJsonArray rows = arrayIn(run({"--json"}));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0]["confidence"], "likely");
    EXPECT_EQ(rows[0]["isCareful"], true);
    EXPECT_EQ(rows[0]["alsoClaimedBy"].toArray(), QJsonArray{"firefox-esr"});
}

TEST(Leftovers, AcceptsBundlePathOrBundleID) {
    const TemporaryFolder home;
    makeBundle(home, "Applications/Acme.app", {"com.example.acme", "Acme", {}, {}, {}});
    makeBundle(home, "Elsewhere/Old.app", {"com.example.old", {}, {}, {}, {}});
    makeBundle(home, "com.example.here.app", {"com.example.here", {}, {}, {}, {}});
    const std::string cache = home.path("Library/Caches/com.example.acme");
    home.makeFile("Library/Caches/com.example.acme/data", 50'000);
    home.makeFile("Library/LaunchAgents/Acme.plist", 100);
    home.makeFile("Library/Logs/com.example.old", 100);
    for (const char *app :
         {"com.example.acme", "Applications/Acme.app", "./Applications/../Applications/Acme.app/"})
        EXPECT_THAT(runIn(home, {"leftovers", app}).out,
                    MatchesRegex("Definitely this app: Matched on bundle identifier.\n"
                                 " +SIZE  CATEGORY  PATH\n +[0-9.]+ KB  Cache     " +
                                 cache +
                                 "\n\n"
                                 "Possibly this app: Matched on name only, [^\n]+\n"
                                 " +SIZE  CATEGORY    PATH\n[^\n]+/Acme.plist\n"))
            << app;
    EXPECT_EQ(arrayIn(runIn(home, {"leftovers", "Elsewhere/Old.app", "--json"})).size(), 1);
    EXPECT_EQ(runIn(home, {"leftovers", "com.example.here.app"}).out, "No files found outside the bundle.\n");
}

TEST(Leftovers, UnknownOrAmbiguousAppIsAnError) {
    const TemporaryFolder home;
    makeBundle(home, "Applications/One.app", {"com.example.same", {}, {}, {}, {}});
    makeBundle(home, "Applications/Two.app", {"com.example.same", {}, {}, {}, {}});
    home.makeFolder("Applications/Invalid.app");
    for (const char *app : {"com.example.unknown", "Applications/Invalid.app", "/nowhere.app", ""}) {
        const Outcome outcome = runIn(home, {"leftovers", app});
        EXPECT_EQ(outcome.status, 1) << app;
        EXPECT_EQ(outcome.out, "") << app;
        EXPECT_EQ(outcome.err,
                  "brimvalectl: \"" + std::string(app) + "\" is neither an app nor the identifier of one\n");
    }
    const Outcome ambiguous = runIn(home, {"leftovers", "com.example.same", "--json"});
    EXPECT_EQ(ambiguous.status, 1);
    EXPECT_EQ(ambiguous.out, "");
    EXPECT_THAT(ambiguous.err, HasSubstr("\"" + home.path("Applications/One.app") + "\", \"" +
                                         home.path("Applications/Two.app") + "\""));
    EXPECT_EQ(runIn(home, {"leftovers", "Applications/One.app"}).status, 0);
}

} // namespace brimvale::testing
