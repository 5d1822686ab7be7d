#include "Core/Model/Apps.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Model/Removals.h"
#include "Support/EnvironmentVariable.h"
#include "Support/Model.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleDesktop.h"
#include "Support/Window.h"
#include "Views/Apps/AppsView.h"
#include "Views/Apps/OrphanEntry.h"
#include "Views/Components/StateMessage.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/EntryListModel.h"
#include "Views/Entries/RowList.h"

#include <QAction>
#include <QDialog>
#include <QListView>
#include <QSignalSpy>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::eventually;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

/// The page of a user of Linux with a few applications, and with files of some that are gone.
class OrphansOnThePage : public ::testing::Test {
protected:
    OrphansOnThePage() {
        Host::useSystem(System::linux);
        Host::useRoot(desktop.path());
        makeSampleDesktop(desktop);
        desktop.makeFile("home/user/.config/oldtool/x", 50'000);
        desktop.makeFile("home/user/.cache/oldgame/x", 20'000);
        desktop.makeFile("home/user/.local/share/oldgame/world", 10'000);
        desktop.makeFile("home/user/.config/painter/x", 5'000); // of an installed application
    }
    ~OrphansOnThePage() override {
        page.reset();
        model.reset();
        Host::useSystem(std::nullopt);
        Host::useRoot("/");
    }

    void open() {
        model = std::make_unique<CorvelModel>(actions);
        page = std::make_unique<AppsView>(model->apps, model->orphans, model->removals);
        page->resize(1000, 700);
        testing::activate(*page);
        ASSERT_TRUE(eventually([&] { return !model->apps->isLoadingApps; }));
    }
    void search() {
        testing::click(entry());
        ASSERT_TRUE(eventually([&] { return model->orphans->wasSearched && !model->orphans->isSearching; }));
    }

    [[nodiscard]] OrphanEntry &entry() const { return testing::find<OrphanEntry>(*page, "orphans"); }
    [[nodiscard]] QListView &list() const {
        return testing::find<QListView>(testing::find(*page, "orphanLeftovers"), "leftovers");
    }
    [[nodiscard]] std::vector<std::string> names(bool onlyTicked = false) const {
        std::vector<std::string> names;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            const QModelIndex index = list().model()->index(row, 0);
            if (!onlyTicked || index.data(Qt::CheckStateRole) == Qt::Checked)
                names.push_back(index.data(Qt::ToolTipRole).toString().section('\n', 0, 0).toStdString());
        }
        return names;
    }
    [[nodiscard]] std::string inHome(const std::string &path) const {
        return desktop.path("home/user/" + path);
    }
    [[nodiscard]] std::string text(const char *name) const { return testing::shown(*page, name); }
    void tickAll() const {
        testing::click(testing::find<TickBox>(testing::find(*page, "orphanLeftovers"), "tickAll"));
    }

    testing::SampleDesktop desktop;
    testing::EnvironmentVariable home{"HOME", desktop.path("home/user")};
    testing::EnvironmentVariable data{"XDG_DATA_HOME", std::nullopt};
    testing::EnvironmentVariable config{"XDG_CONFIG_HOME", std::nullopt};
    testing::EnvironmentVariable cache{"XDG_CACHE_HOME", std::nullopt};
    testing::RecordingActions actions;
    std::unique_ptr<CorvelModel> model;
    std::unique_ptr<AppsView> page;
};

} // namespace

TEST_F(OrphansOnThePage, AreSearchedWhenTheyAreOpenedAndRemovedAfterAQuestion) {
    open();
    EXPECT_TRUE(entry().isVisible());
    EXPECT_EQ(entry().detail(), "Not searched yet");
    EXPECT_FALSE(model->orphans->isSearching || model->orphans->wasSearched);
    search();
    const std::string steam = inHome(".local/share/Steam"); // its file for a game
    EXPECT_THAT(names(), UnorderedElementsAre(inHome(".config/oldtool"), inHome(".cache/oldgame"),
                                              inHome(".local/share/oldgame"), steam));
    EXPECT_EQ(names().front(), inHome(".config/oldtool")) << "the largest";
    EXPECT_THAT(names(true), IsEmpty());
    EXPECT_THAT(entry().accessibleName().toStdString(), StartsWith("Leftovers of removed apps, 4 items · "));
    const QModelIndex first = list().model()->index(0, 0);
    EXPECT_EQ(first.data(EntryListModel::folderRole).toString().toStdString(),
              "no app or command has this name · " + inHome(".config"));
    const std::string date = first.data(EntryListModel::dateRole).toString().toStdString();
    EXPECT_THAT(first.data(Qt::ToolTipRole).toString().toStdString(),
                HasSubstr("\nSettings, last change " + date));
    EXPECT_FALSE(testing::find(*page, "remove").isEnabled());

    tickAll();
    EXPECT_THAT(names(true), UnorderedElementsAre(inHome(".config/oldtool"), inHome(".cache/oldgame")))
        << "not what people may have made";
    testing::click(*page, "remove");
    auto &sheet = testing::find<QDialog>(*page, "removalSheet");
    EXPECT_THAT(testing::shown(sheet, "remark"),
                StartsWith("This removes 2 items that no installed app claims, freeing about "));
    testing::click(sheet, "confirm");
    ASSERT_TRUE(testing::waitUntilRemoved(*model));
    EXPECT_THAT(actions.calls, UnorderedElementsAre("trash " + inHome(".config/oldtool"),
                                                    "trash " + inHome(".cache/oldgame")));
    ASSERT_TRUE(eventually([&] { return names().size() == 2; }));
    EXPECT_THAT(entry().detail().toStdString(), StartsWith("2 items · "));
}

TEST_F(OrphansOnThePage, StayWhileAProgramUsesThem) {
    open();
    search();
    desktop.writeFile("proc/77/comm", "oldtool\n");
    desktop.makeLink("proc/78/fd/3", inHome(".cache/oldgame/x"));
    tickAll();
    testing::click(*page, "remove");
    testing::click(testing::find<QDialog>(*page, "removalSheet"), "confirm");
    ASSERT_TRUE(testing::waitUntilRemoved(*model));
    EXPECT_THAT(actions.calls, IsEmpty());
    EXPECT_EQ(names().size(), 4U);
    std::vector<std::string> reasons;
    for (const auto &failed : model->removals->lastResult->failed)
        reasons.push_back(failed.reason);
    EXPECT_THAT(reasons, UnorderedElementsAre("A program that uses “oldtool” is running. Quit it first.",
                                              "A program that uses “oldgame” is running. Quit it first."));
}

TEST_F(OrphansOnThePage, ShareThePageWithTheApplications) {
    open();
    auto &apps = testing::find<QListView>(*page, "apps");
    apps.setCurrentIndex(apps.model()->index(0, 0));
    EXPECT_TRUE(testing::find(*page, "appDetail").isVisible());
    apps.setFocus();
    QTest::keyClick(&apps, Qt::Key_Tab);
    ASSERT_TRUE(entry().hasFocus());
    QTest::keyClick(&entry(), Qt::Key_Space);
    ASSERT_TRUE(eventually([&] { return model->orphans->wasSearched; }));
    EXPECT_TRUE(testing::find(*page, "orphanDetail").isVisible());
    EXPECT_FALSE(testing::find(*page, "appDetail").isVisible());
    EXPECT_THAT(apps.selectionModel()->selectedIndexes(), IsEmpty());
    QTest::keyClick(&entry(), Qt::Key_Space);
    EXPECT_TRUE(entry().isChecked()) << "it is still what is shown";
    tickAll();
    EXPECT_TRUE(testing::find(*page, "remove").isEnabled());

    // The application that was shown before can be chosen again.
    QTest::mouseClick(apps.viewport(), Qt::LeftButton, {},
                      apps.visualRect(apps.model()->index(0, 0)).center());
    EXPECT_FALSE(entry().isChecked());
    EXPECT_TRUE(testing::find(*page, "appDetail").isVisible());
    EXPECT_FALSE(testing::find(*page, "orphanDetail").isVisible());
    EXPECT_FALSE(testing::find(*page, "remove").isEnabled()) << "what was ticked is not seen any more";
}

TEST_F(OrphansOnThePage, FollowTheInstalledApplications) {
    open();
    search();
    EXPECT_EQ(names().size(), 4U);
    std::filesystem::remove(inHome("Applications/Painter-2.1-x86_64.AppImage"));
    std::filesystem::remove(inHome(".local/share/applications/appimagekit_abc-painter.desktop"));
    testing::click(*page, "reload");
    ASSERT_TRUE(eventually([&] { return names().size() == 5; }));
    EXPECT_THAT(names(), ::testing::Contains(inHome(".config/painter")));
}

TEST_F(OrphansOnThePage, SayWhatTheStateIs) {
    open();
    search();
    const auto show = [&](const OrphanState &state) {
        PublishedWriter::update(model->orphans, [&](OrphanState &shown) { shown = state; });
    };
    show({.orphans = {}, .unreadFolders = {}, .isSearching = true});
    EXPECT_EQ(entry().detail(), "Searching…");
    EXPECT_EQ(text("orphanProgress"), "Searching…");
    EXPECT_EQ(text("stopOrphanSearch"), "Stop");
    const auto &message = testing::find<StateMessage>(testing::find(*page, "orphanDetail"), "orphanMessage");
    EXPECT_EQ(message.title(), "Looking for leftovers…");
    show({.orphans = {}, .unreadFolders = {}, .wasSearched = true});
    EXPECT_EQ(entry().detail(), "None found");
    EXPECT_EQ(text("orphanProgress"), "");
    EXPECT_EQ(message.title(), "No leftovers found");
    show({.orphans = {}, .unreadFolders = {"/home/user/.config"}, .wasSearched = true, .wasStopped = true});
    EXPECT_EQ(message.title(), "Nothing found so far");
    EXPECT_EQ(text("orphansIncomplete"),
              "The search was stopped, so there may be more. Reload to search again.\n"
              "/home/user/.config can’t be read, so its contents are not listed.");
}

TEST_F(OrphansOnThePage, GoIntoTheBasket) {
    open();
    search();
    QSignalSpy asked(page.get(), &AppsView::basketAsked);
    auto &rows = dynamic_cast<RowList &>(list());
    emit rows.menuRequested(rows.model()->index(0, 0), {});
    page->findChild<QAction *>("addToBasket")->trigger();
    ASSERT_EQ(asked.size(), 1);
    const auto entries = asked.front().front().value<std::vector<CleanupEntry>>();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries.front().url.path(), inHome(".config/oldtool"));
    EXPECT_TRUE(entries.front().pin);
}

} // namespace brimvale
