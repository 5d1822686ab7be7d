#include "Core/Apps/LeftoverFinder.h"

#include "Catalogs/Catalog.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;
using ::testing::UnorderedElementsAre;

/// A Mac in a temporary folder: the places of the whole machine lie in "machine", those of the user in
/// "home".
class LeftoverFinderTest : public ::testing::Test {
protected:
    /// Category and path of each, with a question mark where it is only likely, and a star where it takes an
    /// administrator.
    std::vector<std::string> find(const InstalledApp &app) const {
        std::vector<std::string> lines;
        for (const LeftoverItem &item : LeftoverFinder(rules, host).leftovers(app)) {
            std::string line = item.confidence == MatchConfidence::exact ? "" : "?";
            line += item.requiresAdmin ? "*" : "";
            lines.push_back(line + item.category + ": " + item.url.path().substr(folder.path().size() + 1));
        }
        return lines;
    }

    static InstalledApp app(const std::string &name, std::optional<std::string> identifier = {},
                            const std::string &fileName = "") {
        InstalledApp app{.url = FileURL("/Applications/" + (fileName.empty() ? name : fileName) + ".app"),
                         .name = name,
                         .bundleID = std::move(identifier),
                         .version = {},
                         .isSystemApp = false,
                         .isMASApp = false,
                         .lastUsed = {}};
        return app;
    }

    void make(const std::string &inside) const { folder.makeFile(inside, 1000); }

    TemporaryFolder folder;
    Host host{System::macOS, FileURL(folder.path("home")), {}, folder.path("machine")};
    LeftoverRules rules = catalogOf(host.system).leftoverRules(host);
};

} // namespace

TEST_F(LeftoverFinderTest, FindsItemsNamedAfterBundleID) {
    std::vector<std::string> expected;
    for (const std::string place : {
             "Application Support: home/Library/Application Support/com.example.acme",
             "Cache: home/Library/Caches/com.example.acme",
             "Sandbox container: home/Library/Containers/com.example.acme",
             "App scripts: home/Library/Application Scripts/com.example.acme",
             "Web storage: home/Library/HTTPStorages/com.example.acme",
             "Web storage: home/Library/HTTPStorages/com.example.acme.binarycookies",
             "WebKit data: home/Library/WebKit/com.example.acme",
             "Logs: home/Library/Logs/com.example.acme",
             "Preferences: home/Library/Preferences/com.example.acme.plist",
             "Saved state: home/Library/Saved Application State/com.example.acme.savedState",
             "Cookies: home/Library/Cookies/com.example.acme.binarycookies",
             "*Application Support (system): machine/Library/Application Support/com.example.acme",
             "*Cache (system): machine/Library/Caches/com.example.acme",
             "*Preferences (system): machine/Library/Preferences/com.example.acme.plist",
             "*Logs (system): machine/Library/Logs/com.example.acme",
         }) {
        make(place.substr(place.find(": ") + 2));
        expected.push_back(place);
    }
    for (const char *other :
         {"home/Library/Application Support/Acme/data", "home/Library/Caches/com.example.acme.pro/data",
          "home/Library/Preferences/com.example.acme", "machine/Library/com.example.acme/data",
          "home/Library/Preferences/com.example.acme.plist.lockfile", "home/Library/com.example.acme",
          "home/Library/Saved Application State/com.example.acme"})
        make(other);
    EXPECT_THAT(find(app("Acme", "com.example.acme")), ::testing::UnorderedElementsAreArray(expected));
}

TEST_F(LeftoverFinderTest, MatchesByBundleIDAndName) {
    struct Case {
        const char *entry;
        const char *found; ///< "" exact, "?" likely, null not at all
    };
    const std::vector<Case> cases = {
        {"com.example.acme", ""},
        {"com.example.acme.plist", ""},
        {"com.example.acme.helper.plist", ""},
        {"com.example.acme.", ""},
        {"com.example.acmeplus.plist", nullptr},
        {"com.example", nullptr},
        {"com.example.ACME.plist", nullptr},
        {"org.com.example.acme.plist", nullptr},
        {"group.com.example.acme", ""},
        {"group.com.example.acme.shared", ""},
        {"group.com.example.acmeplus", nullptr},
        {"Group.com.example.acme", nullptr},
        {"Acme.plist", "?"},
        {"aCME", "?"},
        {"Acme.helper.plist", nullptr},
        {"Acme ", nullptr},
        {"Old acme.plist", nullptr},
        {".Acme", nullptr},
        {"Acme file name.plist", "?"},
    };
    for (const ScanRule &rule : rules.scanRules) {
        const std::string inside = rule.directory.substr(folder.path().size() + 1) + "/";
        std::vector<std::string> expected;
        for (const Case &one : cases) {
            make(inside + one.entry);
            if (one.found != nullptr)
                expected.push_back(std::string(one.found) + (rule.requiresAdmin ? "*" : "") + rule.category +
                                   ": " + inside + one.entry);
        }
        LeftoverRules alone{{}, {rule}};
        std::swap(rules, alone);
        EXPECT_THAT(find(app("Acme", "com.example.acme", "Acme file name")),
                    ::testing::UnorderedElementsAreArray(expected));
        std::swap(rules, alone);
    }
}

TEST_F(LeftoverFinderTest, FindsGroupContainersOfATeam) {
    const std::string groups = "home/Library/Group Containers/";
    for (const char *entry :
         {"ABCDE12345.com.example.acme", "ABCDE12345.com.example.acme.shared",
          "ABCDE12345.group.com.example.acme", "ABCDE1234.com.example.acme", "abcde12345.com.example.acme",
          "ABCDE12345.com.example.acmeplus", "ABCDE12345com.example.acme", "ABCDE12345.", "ABCDE12345.Acme"})
        make(groups + entry);
    make("home/Library/LaunchAgents/ABCDE12345.com.example.acme.plist");
    EXPECT_THAT(find(app("Acme", "com.example.acme")),
                UnorderedElementsAre("Group container: " + groups + "ABCDE12345.com.example.acme",
                                     "Group container: " + groups + "ABCDE12345.com.example.acme.shared",
                                     "Group container: " + groups + "ABCDE12345.group.com.example.acme"));
}

TEST_F(LeftoverFinderTest, MatchesNamesOfFourCharactersOrMore) {
    const std::string agents = "home/Library/LaunchAgents/";
    for (const char *entry : {"Foo.plist", "Mail.plist", "Foe\u0301.plist", "CAFE\u0301.plist", "ab.plist"})
        make(agents + entry);
    EXPECT_THAT(find(app("Foo")), IsEmpty());
    EXPECT_THAT(find(app("Mail")), ElementsAre("?Login item: " + agents + "Mail.plist"));
    EXPECT_THAT(find(app("Foe\u0301")), IsEmpty()) << "three characters of four code points";
    EXPECT_THAT(find(app("caf\u00E9")), ElementsAre("?Login item: " + agents + "CAFE\u0301.plist"))
        << "however the accent is encoded";
    EXPECT_THAT(find(app("ab", {}, "Mail")), ElementsAre("?Login item: " + agents + "Mail.plist"));
}

TEST_F(LeftoverFinderTest, IgnoresBundleIDsThatArePaths) {
    make("home/Documents/precious");
    make("home/Library/Caches/other/data");
    make("home/Library/LaunchAgents/..plist");
    for (const char *identifier : {"", ".", "..", "../../Documents", "/", "other/data", "./other"})
        EXPECT_THAT(find(app("Evil", identifier)), IsEmpty()) << identifier;
}

TEST_F(LeftoverFinderTest, ReportsEachPathOnceAndOnlyIfPresent) {
    // Rules that reach the same path: the first one names it.
    const std::string support = "home/Library/Application Support/com.example.acme";
    make(support + "/data");
    rules.scanRules.push_back({folder.path("home/Library/Application Support"), "Second", true});
    folder.makeLink("home/Library/LaunchAgents/com.example.acme.plist", "nowhere");
    EXPECT_THAT(find(app("Acme", "com.example.acme")), ElementsAre("Application Support: " + support));
}

TEST_F(LeftoverFinderTest, SortsByConfidenceThenSize) {
    folder.makeFile("home/Library/LaunchAgents/Acme.plist", 900'000);
    folder.makeFile("home/Library/Caches/com.example.acme/a/b", 100'000);
    folder.makeFile("home/Library/Caches/com.example.acme/c", 100'000);
    folder.makeFile("home/Library/Logs/com.example.acme", 150'000);
    folder.makeFile("machine/Library/LaunchDaemons/com.example.acme.plist", 500'000);
    const std::vector<LeftoverItem> items =
        LeftoverFinder(rules, host).leftovers(app("Acme", "com.example.acme"));
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0].category, "Background daemon");
    EXPECT_EQ(items[1].category, "Cache");
    EXPECT_GE(items[1].size, 200'000);
    EXPECT_EQ(items[2].category, "Logs");
    EXPECT_EQ(items[3].confidence, MatchConfidence::likely);
    EXPECT_GT(items[3].size, items[0].size);
}

TEST_F(LeftoverFinderTest, SkipsCloudProviderFolders) {
    folder.makeFile("home/Library/Mobile Documents/com.example.acme/data", 100'000);
    folder.makeFile("home/Library/Mobile Documents/file", 100'000);
    rules.exactRules = {{folder.path("home/Library"), "Library", {""}}};
    const std::vector<LeftoverItem> items =
        LeftoverFinder(rules, host).leftovers(app("x", "Mobile Documents"));
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].size, 0);
}

TEST_F(LeftoverFinderTest, MarksWhatAnIdentifierWithoutADotClaims) {
    make("home/Library/Caches/com/data");
    make("home/Library/LaunchAgents/com.example.other.plist");
    make("home/Library/LaunchAgents/Widget.plist");
    const auto vague = [&](const char *identifier) {
        std::vector<std::string> marked;
        for (const LeftoverItem &item : LeftoverFinder(rules, host).leftovers(app("Widget", identifier)))
            marked.push_back(std::string(item.url.fileName()) + (item.isVague ? " vague" : ""));
        return marked;
    };
    EXPECT_THAT(vague("com"),
                UnorderedElementsAre("com vague", "com.example.other.plist vague", "Widget.plist"));
    EXPECT_THAT(vague("com.example.other"), UnorderedElementsAre("com.example.other.plist", "Widget.plist"));
}

} // namespace brimvale
