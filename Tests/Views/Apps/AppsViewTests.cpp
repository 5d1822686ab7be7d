#include "Views/Apps/AppsView.h"

#include "Core/Model/Apps.h"
#include "Core/Model/Removals.h"
#include "Core/Text/Formatting.h"
#include "Support/OpenedAddresses.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleApps.h"
#include "Views/Apps/AppDetail.h"
#include "Views/Apps/AppListModel.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/EntryListModel.h"
#include "Views/Removing/RemovalModePicker.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QProcess>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <tuple>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::eventually;
using testing::find;
using ::testing::IsEmpty;

/// The leftovers that are shown under a heading.
QListView &leftovers(const QWidget &in, const char *group) {
    return find<QListView>(find<QWidget>(in, group), "leftovers");
}

QString shown(const QListView &list, int row, int role = Qt::DisplayRole) {
    return list.model()->index(row, 0).data(role).toString();
}

int tickedIn(const QListView &list) {
    int count = 0;
    for (int row = 0; row < list.model()->rowCount(); ++row)
        count += list.model()->index(row, 0).data(Qt::CheckStateRole) == Qt::Checked ? 1 : 0;
    return count;
}

struct ShownApps : AppsView {
    explicit ShownApps(CorvelModel &model) : AppsView(model.apps, model.orphans, model.removals) {}
};

/// The page of a user of macOS with a few applications. "Acme" has leftovers of both kinds, of which one is
/// claimed by "Acme Pro" too; "Bare" has none.
class AppsPage : public testing::PageTest<ShownApps> {
protected:
    AppsPage() {
        makeApp("Acme", "com.example.acme");
        makeApp("Acme Pro", "com.example.acme.pro");
        makeApp("Bare", "com.example.bare");
        home.makeFile("Library/Caches/com.example.acme/data", 50'000);
        home.makeFile("Library/LaunchAgents/com.example.acme.pro.plist", 100);
        home.makeFile("Library/LaunchAgents/Acme.plist", 100);
    }

    void makeApp(const std::string &name, const std::string &identifier) {
        testing::makeBundle(home, "Applications/" + name + ".app", {identifier, name, {}, {}, {}});
    }

    void open() {
        testing::activate(page);
        ASSERT_TRUE(eventually([&] { return !model.apps->isLoadingApps; }));
    }

    void choose(const std::string &name) {
        const QModelIndex row = rowOf(name);
        list.scrollTo(row);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(row).center());
        EXPECT_EQ(chosen(), name);
    }

    QModelIndex rowOf(const std::string &name) {
        for (int row = 0; row < list.model()->rowCount(); ++row)
            if (list.model()->index(row, 0).data(Qt::ToolTipRole).toString().toStdString() ==
                home.path("Applications/" + name + ".app"))
                return list.model()->index(row, 0);
        return {};
    }

    bool isSelected(const std::string &name) { return list.selectionModel()->isSelected(rowOf(name)); }

    std::string chosen() { return text("appName"); }
    void tickAll(const char *group) { click(testing::find<TickBox>(find<QWidget>(group), "tickAll")); }
    QPushButton &remove() { return find<QPushButton>("remove"); }
    QDialog *sheet() { return page.findChild<QDialog *>("removalSheet"); }

    void confirm() {
        testing::click(*sheet(), "confirm");
        ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && sheet() == nullptr; }));
    }

    QListView &list = find<QListView>("apps");
};

} // namespace

TEST_F(AppsPage, ListsTheAppsBeforeTheyAreAnalysed) {
    bool wasListed = false;
    QObject::connect(&model.apps, &Apps::changed, &page, [&] {
        if (model.apps->apps.empty() || std::exchange(wasListed, true))
            return;
        EXPECT_EQ(list.model()->rowCount(), static_cast<int>(model.apps->apps.size()));
        EXPECT_EQ(rowOf("Acme").data(AppListModel::sizeRole).toString(), QString());
        EXPECT_TRUE(isVisible("appProgress"));
        list.setCurrentIndex(rowOf("Acme"));
        EXPECT_EQ(text("appFacts"), "Not analyzed yet");
        EXPECT_FALSE(find<QCheckBox>("includeBundle").isEnabled()) << "nobody knows what that frees";
    });
    open();
    EXPECT_TRUE(wasListed);
    EXPECT_FALSE(isVisible("appProgress"));
    EXPECT_NE(rowOf("Acme").data(AppListModel::sizeRole).toString(), QString());
    EXPECT_NE(text("appFacts"), "Not analyzed yet");
    EXPECT_TRUE(find<QCheckBox>("includeBundle").isEnabled());
}

TEST_F(AppsPage, ShowsTheLeftoversOfOneAppAndTicksNone) {
    open();
    EXPECT_TRUE(isVisible("noApp"));
    EXPECT_FALSE(isVisible("orphans")) << "they cannot be found among bundles";
    choose("Acme");
    QListView &exact = leftovers(page, "exactLeftovers");
    QListView &likely = leftovers(page, "likelyLeftovers");
    ASSERT_EQ(exact.model()->rowCount(), 2);
    EXPECT_EQ(shown(exact, 0), "com.example.acme");
    EXPECT_EQ(shown(exact, 0, EntryListModel::noteRole), QString());
    std::filesystem::rename(home.path("Library"), home.path("elsewhere")); // a row is no look at the disk
    EXPECT_EQ(shown(exact, 0, EntryListModel::iconRole), "folder");
    EXPECT_EQ(shown(likely, 0, EntryListModel::iconRole), "file");
    std::filesystem::rename(home.path("elsewhere"), home.path("Library"));
    EXPECT_EQ(shown(exact, 1), "com.example.acme.pro.plist");
    EXPECT_EQ(shown(exact, 1, EntryListModel::noteRole), "Also claimed by Acme Pro");
    ASSERT_EQ(likely.model()->rowCount(), 1);
    EXPECT_FALSE(isVisible("leftoverState"));
    EXPECT_EQ(tickedIn(exact) + tickedIn(likely), 0);
    EXPECT_FALSE(find<QCheckBox>("includeBundle").isChecked());
    EXPECT_FALSE(remove().isEnabled());

    // What is ticked is ticked for the app that is shown.
    tickAll("exactLeftovers");
    EXPECT_EQ(tickedIn(exact), 2);
    EXPECT_EQ(tickedIn(likely), 0);
    choose("Acme Pro");
    EXPECT_EQ(exact.model()->rowCount(), 1);
    EXPECT_EQ(tickedIn(exact), 0);
    EXPECT_FALSE(remove().isEnabled());
    EXPECT_FALSE(isVisible("likelyLeftovers"));
    choose("Bare");
    EXPECT_FALSE(isVisible("exactLeftovers"));
    EXPECT_EQ(text("leftoverState"), "No files found outside the bundle.");
}

TEST_F(AppsPage, IsWorkedByKeys) {
    open();
    find<QCheckBox>("includeSystemApps").setFocus();
    QTest::keyClick(page.focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(list.hasFocus());
    EXPECT_EQ(list.selectionModel()->selectedIndexes().size(), 1) << "what is shown can be seen in the list";
    QTest::keyClicks(&list, "acme p");
    EXPECT_EQ(chosen(), "Acme Pro");
    EXPECT_TRUE(isSelected("Acme Pro"));
    QTest::keyClick(&list, Qt::Key_Up);
    EXPECT_EQ(chosen(), "Acme");
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr) << "nothing is ticked";

    QListView &exact = leftovers(page, "exactLeftovers");
    tickAll("exactLeftovers");
    QTest::keyClick(&exact, Qt::Key_Delete);
    ASSERT_NE(sheet(), nullptr);
    const QPointer<QDialog> asked = sheet();
    QTest::keyClick(asked, Qt::Key_Escape);
    ASSERT_TRUE(eventually([&] { return asked.isNull(); }));
    EXPECT_EQ(tickedIn(exact), 2);
    EXPECT_THAT(actions.calls, IsEmpty());
}

TEST_F(AppsPage, ForgetsTheTicksButNeitherFocusNorAppWhenTheyAreLoadedAgain) {
    open();
    choose("Acme");
    tickAll("exactLeftovers");
    find<QCheckBox>("includeBundle").click();
    EXPECT_TRUE(remove().isEnabled());
    auto &toggle = find<QCheckBox>("includeSystemApps");
    toggle.setFocus();
    for (const bool isOn : {true, false}) {
        QTest::keyClick(&toggle, Qt::Key_Space);
        EXPECT_EQ(model.apps->includeSystemApps, isOn);
        EXPECT_TRUE(model.apps->isLoadingApps);
    }
    ASSERT_TRUE(eventually([&] { return !model.apps->isLoadingApps; }));
    EXPECT_FALSE(toggle.isChecked());
    EXPECT_TRUE(toggle.hasFocus());
    EXPECT_EQ(chosen(), "Acme");
    EXPECT_TRUE(isSelected("Acme"));
    EXPECT_FALSE(find<QCheckBox>("includeBundle").isChecked());
    EXPECT_FALSE(remove().isEnabled());
}

TEST_F(AppsPage, NarrowsTheListByNameAndIdentifier) {
    open();
    choose("Acme");
    find<QCheckBox>("includeBundle").click();
    auto &search = find<QLineEdit>("search");
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(search.hasFocus());
    QTest::keyClicks(&search, "ACME.PRO");
    EXPECT_EQ(list.model()->rowCount(), 1);
    EXPECT_TRUE(rowOf("Acme Pro").isValid());
    QTest::keyClicks(&search, "zz");
    EXPECT_TRUE(isVisible("noMatch"));
    EXPECT_EQ(chosen(), "Acme");
    EXPECT_TRUE(find<QCheckBox>("includeBundle").isChecked()) << "a search chooses nothing";
    QTest::keyClick(&search, Qt::Key_Home);
    QTest::keyClick(&search, Qt::Key_Delete);
    EXPECT_EQ(search.text(), "CME.PROzz");
    EXPECT_EQ(sheet(), nullptr) << "the key belongs to the text";
    QTest::keyClick(&search, Qt::Key_Escape);
    EXPECT_EQ(search.text(), QString());
    EXPECT_FALSE(isVisible("noMatch"));
    EXPECT_TRUE(list.hasFocus());
    EXPECT_TRUE(isSelected("Acme"));
}

TEST_F(AppsPage, RemovesWhatWasConfirmed) {
    open();
    choose("Acme");
    tickAll("likelyLeftovers");
    find<QCheckBox>("includeBundle").click();
    const AppRow row = *std::find_if(model.apps->apps.begin(), model.apps->apps.end(),
                                     [](const AppRow &one) { return one.app.name == "Acme"; });
    const std::string size = Fmt::byteFormatter(row.bundleSize + row.leftovers.back().size);
    EXPECT_EQ(remove().text().toStdString(), "Remove 2 Items, " + size + "…");
    click(remove());
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(testing::shown(*sheet(), "remark"),
              "This removes the app bundle and 1 supporting item, freeing about " + size);
    auto &picker = *sheet()->findChild<RemovalModePicker *>();
    picker.setMode(RemovalMode::deleteNow);
    EXPECT_THAT(testing::shown(*sheet(), "remark"), EndsWith(size + ". This can’t be undone."));
    picker.setMode(RemovalMode::trash);
    confirm();
    EXPECT_THAT(actions.calls, ElementsAre("trash " + home.path("Library/LaunchAgents/Acme.plist"),
                                           "trash " + home.path("Applications/Acme.app")));
    EXPECT_FALSE(rowOf("Acme").isValid());
    EXPECT_TRUE(isVisible("noApp"));
    EXPECT_FALSE(isVisible("appDetail"));
    EXPECT_FALSE(remove().isEnabled());
}

TEST_F(AppsPage, WarnsOfAnAppThatRuns) {
    if (platformSystem() != System::linux)
        GTEST_SKIP() << "the system only knows programs that it has started as applications";
    const std::string identifier = "com.example.running." + home.path().substr(home.path().rfind('/') + 1);
    makeApp("Running", identifier);
    const std::string program = home.path("Applications/Running.app/Contents/MacOS/cat");
    std::filesystem::copy_file("/bin/cat", program);
    QProcess process;
    process.start(QString::fromStdString(program), QStringList());
    ASSERT_TRUE(process.waitForStarted());
    open();
    auto &note = find<QLabel>("note");
    choose("Running");
    EXPECT_TRUE(eventually([&] { return note.isVisible(); }));
    EXPECT_EQ(note.text(), "The app is running. Quit it first so it does not rewrite its files.");
    choose("Bare");
    EXPECT_FALSE(note.isVisible());
    choose("Running");
    EXPECT_TRUE(eventually([&] { return note.isVisible(); }));
    process.closeWriteChannel();
    process.waitForFinished();
    EXPECT_TRUE(eventually([&] { return !note.isVisible(); })) << "it has been quit";
}

TEST(AppDetail, RemovesNoSystemAppAndMarksWhatTheSystemOwns) {
    AppDetail detail;
    const LeftoverItem owned{FileURL("/Library/LaunchDaemons/com.example.acme.plist"), "Background daemon",
                             MatchConfidence::exact, 5000, true};
    AppRow row{{FileURL("/Applications/Acme.app"), "Acme", {}, {}, false, false, {}}, 1000, {owned}, true};
    AppRow other = row;
    other.app.url = FileURL("/Applications/Other.app");
    other.app.name = "Other";
    detail.show(row, {row, other}, false);
    detail.setVisible(true);
    auto &bundle = find<QCheckBox>(detail, "includeBundle");
    EXPECT_EQ(bundle.text(), "Remove the app itself");
    EXPECT_EQ(testing::shown(detail, "systemApp"), "");
    EXPECT_EQ(shown(leftovers(detail, "exactLeftovers"), 0, EntryListModel::noteRole),
              "Owned by the system. Removing it asks for your password.\n"
              "Also claimed by Other");
    bundle.click();
    EXPECT_TRUE(detail.includesBundle());

    AppRow system = row;
    system.app.isSystemApp = true;
    detail.show(system, {system}, false);
    EXPECT_FALSE(bundle.isVisible());
    EXPECT_EQ(testing::shown(detail, "systemApp"), "This is a system app. Brimvale will not remove it.");
    EXPECT_FALSE(detail.includesBundle()) << "though the box was ticked";
    EXPECT_THAT(detail.leftovers(), IsEmpty());
}

TEST(AppDetail, ShowsHowAnotherProgramRemovesAnApp) {
    AppDetail detail;
    LeftoverItem mail{FileURL("/home/user/.mail"), "Data", MatchConfidence::exact, 5000, false};
    mail.reason = "known folder of this app";
    mail.isCareful = true;
    LeftoverItem cache{FileURL("/home/user/.cache/acme"), "Cache", MatchConfidence::exact, 500, false};
    cache.reason = "same name";
    AppRow row{{FileURL("/usr/share/applications/acme.desktop"), "Acme", "acme", "1.0", false, false, {}},
               1000,
               {mail, cache},
               true};
    row.app.kind = AppKind::package;
    row.app.origin = "acme-mail";
    row.app.removal = RemovedInTerminal{"sudo apt remove acme-mail"};
    detail.show(row, {row}, false);
    detail.setVisible(true);
    EXPECT_FALSE(find<QCheckBox>(detail, "includeBundle").isVisible());
    EXPECT_FALSE(detail.includesBundle());
    EXPECT_EQ(testing::shown(detail, "systemApp"),
              "It belongs to the package acme-mail. Remove it with this command:");
    testing::click(detail, "copyCommand");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "sudo apt remove acme-mail");
    EXPECT_EQ(testing::shown(detail, "openSoftwareCenter"), "");
    row.app.removal = RemovedInTerminal{"sudo apt remove acme-mail", "appstream:org.example.Acme"};
    detail.show(row, {row}, false);
    EXPECT_EQ(testing::shown(detail, "systemApp"),
              "It belongs to the package acme-mail. Remove it in the software center, or with this command:");
    const testing::OpenedAddresses addresses(QStringLiteral("appstream"));
    testing::click(detail, "openSoftwareCenter");
    EXPECT_EQ(addresses.all, QStringList("appstream:org.example.Acme"));

    QListView &exact = leftovers(detail, "exactLeftovers");
    EXPECT_EQ(shown(exact, 0, EntryListModel::noteRole),
              "Your own data may be inside. Look before you remove it.");
    EXPECT_EQ(shown(exact, 1, EntryListModel::folderRole), "same name · /home/user/.cache");
    testing::click(find<TickBox>(find<QWidget>(detail, "exactLeftovers"), "tickAll"));
    ASSERT_EQ(detail.leftovers().size(), 1U) << "what people make is ticked one by one";
    EXPECT_EQ(detail.leftovers().front().url, cache.url);

    row.app.removal = RemovedAsItem{};
    row.app.kind = AppKind::appImage;
    detail.show(row, {row}, false);
    EXPECT_TRUE(find<QCheckBox>(detail, "includeBundle").isVisible());
    EXPECT_FALSE(find<QPushButton>(detail, "copyCommand").isVisible());
    EXPECT_FALSE(find<QPushButton>(detail, "showUninstaller").isVisible());
    row.app.removal = RemovedAsItem{"/home/user/acme/uninstall.sh"};
    row.leftovers.back().goesWithApp = true;
    detail.show(row, {row}, false);
    detail.clearTicks();
    EXPECT_TRUE(find<QPushButton>(detail, "showUninstaller").isVisible());
    find<QCheckBox>(detail, "includeBundle").click();
    ASSERT_EQ(detail.leftovers().size(), 1U) << "what is a part of the app";
    EXPECT_EQ(detail.leftovers().front().url, cache.url);
    find<QCheckBox>(detail, "includeBundle").click();
    EXPECT_THAT(detail.leftovers(), IsEmpty());

    row.app.url = FileURL("/var/lib/flatpak/app/org.example.Acme"); // what is there is never removed as files
    row.app.removal = RemovedByCommand{"flatpak", {"uninstall", "--system", "-y", "org.example.Acme"}};
    row.app.kind = AppKind::flatpak;
    detail.show(row, {row}, false);
    EXPECT_FALSE(find<QPushButton>(detail, "copyCommand").isVisible());
    find<QCheckBox>(detail, "includeBundle").click();
    EXPECT_TRUE(detail.includesBundle());
}

TEST(AppListModel, SortsAndKeepsWhatIsSelected) {
    AppListModel model;
    std::vector<AppRow> rows;
    for (const auto &[name, size, day] :
         {std::tuple("A", 10, 3), std::tuple("B", 30, 0), std::tuple("C", 20, 5)}) {
        AppRow row{.app = {.url = FileURL(std::string("/") + name),
                           .name = name,
                           .bundleID = {},
                           .version = {},
                           .lastUsed = {}},
                   .bundleSize = size,
                   .leftovers = {},
                   .analyzed = true};
        if (day > 0)
            row.app.lastUsed = Date(std::chrono::hours(24 * day));
        rows.push_back(row);
    }
    model.setApps(rows);
    const auto names = [&] {
        std::string all;
        for (int row = 0; row < model.rowCount(); ++row)
            all += model.index(row).data().toString().toStdString();
        return all;
    };
    const QPersistentModelIndex selected = model.index(0);
    EXPECT_EQ(names(), "ABC");
    model.setOrder(AppListModel::Order::size);
    EXPECT_EQ(names(), "BCA");
    EXPECT_EQ(selected.row(), 2);
    rows[0].bundleSize = 25;
    model.setApps(rows);
    EXPECT_EQ(names(), "BAC");
    model.setOrder(AppListModel::Order::lastUsed);
    EXPECT_EQ(names(), "CAB");
    EXPECT_EQ(selected.data().toString(), "A");
}

TEST_F(AppsPage, TheBoxOfAGroupLeavesVagueClaimsAlone) {
    makeApp("Vague", "com");
    home.makeFile("Library/Caches/com/data", 5'000);
    open();
    choose("Vague");
    QListView &exact = leftovers(page, "exactLeftovers");
    ASSERT_GE(exact.model()->rowCount(), 2) << "and what others own";
    EXPECT_NE(shown(exact, 0, EntryListModel::noteRole).indexOf("no dot"), -1);
    auto &box = testing::find<TickBox>(find<QWidget>("exactLeftovers"), "tickAll");
    EXPECT_FALSE(box.isEnabled()) << "all of them are vague";
    exact.setFocus();
    exact.setCurrentIndex(exact.model()->index(0, 0));
    QTest::keyClick(&exact, Qt::Key_Space);
    EXPECT_EQ(tickedIn(exact), 1) << "one by one they can be ticked";
    EXPECT_TRUE(remove().isEnabled());
}

TEST_F(AppsPage, CanBeStoppedAndReadAgain) {
    open();
    click("reload");
    click("stopMeasuring");
    ASSERT_TRUE(eventually([&] { return !model.apps->isLoadingApps; }));
    EXPECT_FALSE(isVisible("stopMeasuring"));
    ASSERT_EQ(model.apps->apps.size(), 3U) << "the list is there all the same";
    for (const AppRow &row : model.apps->apps)
        EXPECT_TRUE(row.analyzed || (row.bundleSize == 0 && row.leftovers.empty())) << row.app.name;
    choose("Acme");
    PublishedWriter::update(model.apps, [](AppState &state) {
        for (AppRow &row : state.apps)
            row = {row.app, 0, {}, false};
    });
    EXPECT_EQ(text("appFacts"), "Not analyzed yet");
    EXPECT_TRUE(text("leftoverState").starts_with("Stopped before this app"));

    // Something outside the program has removed one application and installed another.
    std::filesystem::remove_all(home.path("Applications/Bare.app"));
    makeApp("New", "com.example.new");
    click("reload");
    ASSERT_TRUE(eventually([&] { return !model.apps->isLoadingApps; }));
    EXPECT_FALSE(rowOf("Bare").isValid());
    EXPECT_TRUE(rowOf("New").isValid());
    EXPECT_EQ(chosen(), "Acme");
    EXPECT_TRUE(isSelected("Acme"));
    EXPECT_NE(text("appFacts"), "Not analyzed yet");
    EXPECT_EQ(leftovers(page, "exactLeftovers").model()->rowCount(), 2);
}

} // namespace brimvale
