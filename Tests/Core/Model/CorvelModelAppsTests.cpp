#include "Core/Model/Apps.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"

#include "Support/Model.h"
#include "Support/RecordingActions.h"
#include "Support/SampleApps.h"
#include "Support/SampleDesktop.h"
#include "Support/SampleHome.h"

#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using testing::waitUntilRemoved;

/// A user of macOS with two applications that have leftovers, and a few more that have none.
class CorvelModelApps : public ::testing::Test {
protected:
    CorvelModelApps() {
        for (const char *name : {"Acme", "Beta", "Tool 2", "Tool 10"})
            testing::makeBundle(home, bundle(name), {std::string("com.example.") + name, name, {}, {}, {}});
        home.makeFile("Library/Caches/com.example.Acme/data", 50'000);
        home.makeFile("Library/Preferences/com.example.Acme.plist", 100);
        home.makeFile("Library/Logs/com.example.Beta", 100);
    }

    static std::string bundle(const std::string &name) { return "Applications/" + name + ".app"; }

    void load() {
        model.apps.loadApps();
        ASSERT_TRUE(waitUntilLoaded());
    }
    bool waitUntilLoaded() const {
        return QTest::qWaitFor([&] { return !model.apps->isLoadingApps; }, 20'000);
    }

    /// The row of an application, null where it is not listed.
    const AppRow *find(const std::string &name) const {
        const FileURL url(home.path(bundle(name)));
        const auto row = std::find_if(model.apps->apps.begin(), model.apps->apps.end(),
                                      [&](const AppRow &one) { return one.app.url == url; });
        return row == model.apps->apps.end() ? nullptr : &*row;
    }

    std::vector<std::string> leftoversOf(const std::string &name) const {
        std::vector<std::string> names;
        for (const LeftoverItem &item : find(name)->leftovers)
            names.emplace_back(item.url.fileName());
        return names;
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
};

} // namespace

TEST_F(CorvelModelApps, AreListedAtOnceAndAnalysedOneByOne) {
    std::vector<FileURL> order;
    double progress = 0;
    QObject::connect(&model.apps, &Apps::changed, [&] {
        EXPECT_GE(model.apps->appProgress, progress) << "never goes back";
        progress = model.apps->appProgress;
        if (order.empty())
            for (const AppRow &row : model.apps->apps) {
                EXPECT_FALSE(row.analyzed);
                EXPECT_TRUE(model.apps->isLoadingApps);
                EXPECT_EQ(row.bundleSize, 0);
                EXPECT_THAT(row.leftovers, IsEmpty());
                order.push_back(row.app.url);
            }
    });
    const QSignalSpy announcements(&model.apps, &Apps::changed);
    load();
    EXPECT_EQ(announcements.count(), static_cast<int>(model.apps->apps.size()) + 3)
        << "one an application, and the begin, the list and the end";
    EXPECT_EQ(progress, 1);
    std::vector<FileURL> mine;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const AppRow &row = model.apps->apps[i];
        EXPECT_EQ(row.app.url, order[i]) << "the analysis changes no order";
        EXPECT_TRUE(row.analyzed);
        if (row.app.url.path().starts_with(home.path()))
            mine.push_back(row.app.url);
    }
    EXPECT_THAT(mine,
                ElementsAre(FileURL(home.path(bundle("Acme"))), FileURL(home.path(bundle("Beta"))),
                            FileURL(home.path(bundle("Tool 2"))), FileURL(home.path(bundle("Tool 10")))));
    EXPECT_GE(find("Acme")->bundleSize, 10'000);
    EXPECT_THAT(leftoversOf("Acme"), ElementsAre("com.example.Acme", "com.example.Acme.plist"));
    EXPECT_THAT(leftoversOf("Beta"), ElementsAre("com.example.Beta"));
}

TEST_F(CorvelModelApps, AreLoadedOnceAtATime) {
    // How often a list is published that nothing in has been analysed yet.
    int lists = 0;
    bool wasFresh = false;
    QObject::connect(&model.apps, &Apps::changed, [&] {
        const bool isFresh =
            !model.apps->apps.empty() && std::none_of(model.apps->apps.begin(), model.apps->apps.end(),
                                                      [](const AppRow &row) { return row.analyzed; });
        lists += isFresh && !wasFresh ? 1 : 0;
        wasFresh = isFresh;
    });
    model.apps.loadApps();
    model.apps.loadApps();
    EXPECT_EQ(model.apps->appProgress, 0);
    ASSERT_TRUE(waitUntilLoaded());
    EXPECT_EQ(lists, 1);

    // Apple's are listed as soon as they may be, if they still are wanted then.
    model.apps.loadApps();
    model.apps.setIncludeSystemApps(true);
    ASSERT_TRUE(waitUntilLoaded());
    EXPECT_EQ(lists, 3);
    model.apps.setIncludeSystemApps(false);
    model.apps.setIncludeSystemApps(true);
    model.apps.setIncludeSystemApps(false);
    ASSERT_TRUE(waitUntilLoaded());
    EXPECT_EQ(lists, 4);
}

TEST_F(CorvelModelApps, ThatVanishAreFollowed) {
    load();
    const InstalledApp beta = find("Beta")->app;
    std::filesystem::remove_all(home.path(bundle("Beta")));
    load();
    EXPECT_EQ(find("Beta"), nullptr);
    model.apps.uninstall(beta, {}, true, RemovalMode::trash);
    EXPECT_FALSE(model.removals.isRemoving()) << "what is not listed is not removed";
    EXPECT_THAT(actions.calls, IsEmpty());
}

TEST_F(CorvelModelApps, KeepTheirRowWithoutTheLeftoversThatAreGone) {
    load();
    const AppRow acme = *find("Acme");
    model.apps.uninstall(acme.app, {acme.leftovers[0]}, false, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_THAT(actions.calls, ElementsAre("delete " + home.path("Library/Caches/com.example.Acme")));
    EXPECT_THAT(leftoversOf("Acme"), ElementsAre("com.example.Acme.plist"));
    EXPECT_EQ(find("Acme")->bundleSize, acme.bundleSize);
    EXPECT_EQ(model.removals->lastResult->bytesFreed, acme.leftovers[0].size);
    EXPECT_EQ(model.removals->totalFreedThisSession, acme.leftovers[0].size);
}

TEST_F(CorvelModelApps, LoseTheLeftoversThatTheAdministratorRemoves) {
    load();
    const AppRow acme = *find("Acme");
    actions.refuse(acme.app.url.path());
    actions.refuse(acme.leftovers[0].url.path());
    model.apps.uninstall(acme.app, acme.leftovers, true, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_THAT(model.removals->lastResult->needsAdmin,
                UnorderedElementsAre(acme.app.url, acme.leftovers[0].url));
    EXPECT_THAT(actions.calls, ::testing::SizeIs(3)) << "nobody is asked for a password unbidden";
    ASSERT_NE(find("Acme"), nullptr);
    EXPECT_THAT(leftoversOf("Acme"), ElementsAre("com.example.Acme"));

    actions.onCommand = [&](const std::string &) {
        std::filesystem::remove_all(acme.leftovers[0].url.path());
    };
    model.removals.escalate(model.removals->lastResult->needsAdmin);
    ASSERT_TRUE(waitUntilRemoved(model));
    ASSERT_NE(find("Acme"), nullptr) << "its bundle is still there";
    EXPECT_THAT(leftoversOf("Acme"), IsEmpty());
    EXPECT_NE(find("Beta"), nullptr);
}

TEST(CorvelModelLinuxApps, AreListedAgainWhenAPackageManagerHasRemovedOne) {
    const testing::SampleHome home;
    const testing::SampleDesktop desktop;
    Host::useSystem(System::linux);
    Host::useRoot(desktop.path());
    desktop.makeProgram("usr/bin/flatpak");
    desktop.installFlatpak("var/lib/flatpak", "org.example.Maps", "Maps");
    home.makeFile(".var/app/org.example.Maps/data", 50'000);
    testing::RecordingActions actions;
    CorvelModel model{actions};
    const auto isLoaded = [&] { return !model.apps->isLoadingApps; };
    model.apps.loadApps();
    ASSERT_TRUE(QTest::qWaitFor(isLoaded, 20'000));
    ASSERT_EQ(model.apps->apps.size(), 1U);
    const AppRow maps = model.apps->apps.front();

    const auto uninstall = [&] {
        model.apps.uninstall(maps.app, maps.leftovers, true, RemovalMode::trash);
        ASSERT_TRUE(waitUntilRemoved(model));
        EXPECT_TRUE(model.apps->isLoadingApps);
        ASSERT_TRUE(QTest::qWaitFor(isLoaded, 20'000));
    };
    const std::string command =
        "run " + desktop.path("usr/bin/flatpak") + " uninstall --system -y org.example.Maps";
    uninstall();
    EXPECT_THAT(actions.calls, ElementsAre(command)) << "what has not gone keeps its files";
    EXPECT_EQ(model.removals->lastResult->failed.size(), 2U);
    EXPECT_EQ(model.apps->apps.size(), 1U);

    actions.onCommand = [&](const std::string &) {
        std::filesystem::remove_all(desktop.path("var/lib/flatpak"));
    };
    uninstall();
    EXPECT_THAT(actions.calls,
                ElementsAre(command, command, "trash " + home.path(".var/app/org.example.Maps")));
    EXPECT_THAT(model.removals->lastResult->failed, IsEmpty());
    EXPECT_EQ(model.removals->lastResult->bytesDeleted, 345'678'901);
    EXPECT_THAT(model.apps->apps, IsEmpty());
}

} // namespace brimvale
