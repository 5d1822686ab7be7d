#include "Views/Cleanup/CleanupView.h"

#include "Core/Model/Cleanup.h"
#include "Core/Model/Removals.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Text/Formatting.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Support/WithId.h"
#include "Views/Cleanup/TargetCard.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/ActionBar.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/RemovalSheet.h"

#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace brimvale {

namespace {

using testing::eventually;
using testing::withId;

constexpr auto sizeText = Fmt::byteFormatter;

struct ShownCleanup : CleanupView {
    explicit ShownCleanup(CorvelModel &model) : CleanupView(model.cleanup, model.removals) {}
};

class CleanupPage : public testing::PageTest<ShownCleanup> {
protected:
    CleanupPage() { testing::activate(page); }

    void measure() {
        click("measure");
        ASSERT_TRUE(eventually([&] { return !model.cleanup->isMeasuringCleanup; }));
    }

    TargetCard &card(const char *id) {
        return *page.findChild<TargetCard *>(QStringLiteral("target:") + QLatin1String(id));
    }
    EntryList &entries(const char *id) { return *card(id).findChild<EntryList *>(); }
    TickBox &all(const char *id) { return *card(id).findChild<TickBox *>(); }
    std::string label(const char *id, const char *name) { return testing::labels(card(id), name).at(0); }
    /// The list's row for an entry of that name.
    QModelIndex row(const char *id, const char *name) {
        EntryList &list = entries(id);
        for (int i = 0; i < list.model()->rowCount(); ++i)
            if (list.model()->index(i, 0).data().toString() == QLatin1String(name))
                return list.model()->index(i, 0);
        return {};
    }
    /// A click on the entry's box.
    void tick(const char *id, const char *name) {
        card(id).setOpen(true);
        EntryList &list = entries(id);
        const QRect place = list.visualRect(row(id, name));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {place.left() + 22, place.center().y()});
    }
    Qt::CheckState state(const char *id, const char *name) {
        return row(id, name).data(Qt::CheckStateRole).value<Qt::CheckState>();
    }
    std::string selection() { return text("selection"); }
    RemovalSheet *sheet() { return page.findChild<RemovalSheet *>(); }
    void confirm() {
        testing::click(*sheet(), "confirm");
        ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving(); }));
    }
};

} // namespace

TEST_F(CleanupPage, SaysWhyThereIsNothing) {
    home.makeFile("Library/Logs/system.log", 5'000);
    home.makeFile("go/pkg/mod/cache/download/empty");
    home.makeFile(".android/avd"); // where a folder should be that can be listed
    EXPECT_EQ(label("logs", "total"), "—");
    EXPECT_TRUE(label("logs", "targetState").starts_with("Not measured yet"));
    EXPECT_FALSE(all("logs").isEnabled());
    EXPECT_FALSE(find("remove").isEnabled());
    EXPECT_FALSE(isVisible("cleanupProgress"));

    click("measure");
    EXPECT_TRUE(isVisible("cleanupProgress"));
    EXPECT_FALSE(find("measure").isEnabled());
    ASSERT_TRUE(eventually([&] { return !model.cleanup->isMeasuringCleanup; }));
    EXPECT_FALSE(isVisible("cleanupProgress"));
    EXPECT_TRUE(find("measure").isEnabled());

    EXPECT_EQ(label("logs", "total"),
              sizeText(withId(model.cleanup->cleanupTargets, "logs").entries.at(0).size));
    EXPECT_TRUE(label("package-caches", "targetState").starts_with("There is nothing to remove"));
    EXPECT_TRUE(label("android-avd", "targetState").starts_with("This folder could not"));
    EXPECT_EQ(selection(), "Nothing selected");
    EXPECT_EQ(state("logs", "system.log"), Qt::Unchecked);
}

TEST_F(CleanupPage, ItsRowsAreDrawnWithoutALookAtTheDisk) {
    home.makeFile("Library/Logs/folder/log", 30'000);
    home.makeFile("Library/Logs/file", 10'000);
    measure();
    std::filesystem::rename(home.path("Library/Logs"), home.path("elsewhere"));
    EXPECT_EQ(row("logs", "folder").data(EntryListModel::iconRole), "folder");
    EXPECT_EQ(row("logs", "file").data(EntryListModel::iconRole), "file");
}

TEST_F(CleanupPage, ABoxStandsForAllOfItsEntries) {
    home.makeFile("Library/Logs/a", 30'000);
    home.makeFile("Library/Logs/b", 20'000);
    home.makeFile("Library/Logs/c", 10'000);
    measure();
    TickBox &box = all("logs");
    QAccessibleInterface &reader = *QAccessible::queryAccessibleInterface(&box);
    const auto boxState = [&] {
        const QAccessible::State now = reader.state();
        return now.checkStateMixed ? Qt::PartiallyChecked : now.checked ? Qt::Checked : Qt::Unchecked;
    };
    EXPECT_EQ(reader.role(), QAccessible::CheckBox);
    EXPECT_EQ(boxState(), Qt::Unchecked);
    click(box);
    EXPECT_EQ(boxState(), Qt::Checked);
    EXPECT_TRUE(selection().starts_with("3 items selected"));
    tick("logs", "b");
    EXPECT_EQ(state("logs", "b"), Qt::Unchecked);
    EXPECT_EQ(boxState(), Qt::PartiallyChecked);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(boxState(), Qt::Checked);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(boxState(), Qt::Unchecked);
    EXPECT_EQ(selection(), "Nothing selected");
}

TEST_F(CleanupPage, TheSameItemUnderTwoCardsIsOne) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    const FileURL shared(home.makeFile("shared", 10));
    CleanupTarget &first = withId(targets, "ios-device-support");
    CleanupTarget &second = withId(targets, "derived-data");
    first.entries = {{shared, 4'000}, {FileURL(home.makeFile("other", 10)), 1'000}};
    second.entries = {{shared, 4'000}};
    first.scanned = second.scanned = true;
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    tick("ios-device-support", "shared");
    EXPECT_EQ(state("derived-data", "shared"), Qt::Checked);
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(4'000));
    tick("ios-device-support", "other");
    tick("derived-data", "shared");
    EXPECT_EQ(state("ios-device-support", "shared"), Qt::Unchecked);
    tick("derived-data", "shared");

    click("remove");
    confirm();
    EXPECT_EQ(actions.calls.size(), 2U);
    EXPECT_TRUE(row("ios-device-support", "shared") == QModelIndex());
    EXPECT_TRUE(row("derived-data", "shared") == QModelIndex());
    EXPECT_EQ(model.removals->totalFreedThisSession, 5'000);
}

TEST_F(CleanupPage, WhatLiesInATickedFolderIsCountedWithIt) {
    home.makeFile("Library/Caches/Homebrew/downloads/bottle", 40'000);
    measure();
    tick("package-caches", "downloads");
    tick("user-caches", "Homebrew");
    const std::int64_t size = withId(model.cleanup->cleanupTargets, "user-caches").entries.at(0).size;
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(size));
    click("remove");
    confirm();
    EXPECT_EQ(actions.calls, std::vector<std::string>{"trash " + home.path("Library/Caches/Homebrew")});
    EXPECT_EQ(entries("package-caches").model()->rowCount(), 0);
    EXPECT_EQ(selection(), "Nothing selected");
}

TEST_F(CleanupPage, IsWorkedByKeysAlone) {
    home.makeFile("Library/Logs/alpha", 30'000);
    home.makeFile("Library/Logs/beta", 20'000);
    home.makeFile("Library/Logs/gamma", 10'000);
    QTest::keyClick(&page, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr) << "nothing is ticked";
    find("measure").setFocus();
    QTest::keyClick(&find("measure"), Qt::Key_Return);
    EXPECT_TRUE(page.hasFocus()) << "another Return is to do nothing";
    ASSERT_TRUE(eventually([&] { return !model.cleanup->isMeasuringCleanup; }));
    EXPECT_TRUE(find("measure").hasFocus());

    auto &disclosure = *card("logs").findChild<QToolButton *>("disclosure");
    disclosure.setFocus();
    QTest::keyClick(&disclosure, Qt::Key_Return);
    EXPECT_TRUE(card("logs").isOpen());
    EntryList &list = entries("logs");
    list.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list.currentIndex().data().toString(), "alpha");
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(state("logs", "beta"), Qt::Checked);
    QTest::keyClick(&list, Qt::Key_G);
    EXPECT_EQ(list.currentIndex().data().toString(), "gamma");
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_TRUE(selection().starts_with("2 items selected"));

    QTest::keyClick(&list, Qt::Key_Delete);
    ASSERT_NE(sheet(), nullptr);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_TRUE(eventually([&] { return sheet() == nullptr; }));
    EXPECT_FALSE(model.removals.isRemoving());
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_TRUE(selection().starts_with("2 items selected"));
}

TEST_F(CleanupPage, TheConfirmationSpeaksOfTheTrashOrOfDeletingForGood) {
    home.makeFile("Library/Developer/Xcode/Archives/app", 30'000);
    measure();
    tick("xcode-archives", "app");
    find<RemovalModePicker>("modePicker").setMode(RemovalMode::deleteNow);
    click("remove");
    auto &picker = *sheet()->findChild<RemovalModePicker *>();
    EXPECT_EQ(testing::shown(*sheet(), "remark"), "This can’t be undone.");
    picker.setMode(RemovalMode::trash);
    EXPECT_TRUE(testing::shown(*sheet(), "remark").starts_with("This frees about "));
    picker.setMode(RemovalMode::deleteNow);
    confirm();
    EXPECT_EQ(actions.calls, std::vector{"delete " + home.path("Library/Developer/Xcode/Archives/app")});
    EXPECT_EQ(find<RemovalModePicker>("modePicker").mode(), RemovalMode::trash) << "for the next time";
}

TEST_F(CleanupPage, NamesOfAnyKindAreShownAndRemoved) {
    const std::string odd = home.possibleName("two\nlines \xff<b>&amp; \u202e.txt");
    home.makeFile("Library/Logs/" + odd, 5'000);
    measure();
    click(all("logs"));
    card("logs").setOpen(true);
    page.grab();
    click("remove");
    EXPECT_FALSE(sheet()->findChild<QLabel *>("question")->text().contains('\n'));
    confirm();
    EXPECT_EQ(actions.calls, std::vector<std::string>{"trash " + home.path("Library/Logs/" + odd)});
}

TEST_F(CleanupPage, ABoxForAllSkipsWhatIsLocked) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    const CleanupEntry guarded{.url = FileURL("/usr/lib"), .size = 4'000, .isFolder = true};
    const FileURL file(home.makeFile("file", 10));
    CleanupTarget &mixed = withId(targets, "logs");
    CleanupTarget &onlyLocked = withId(targets, "derived-data");
    mixed.entries = {guarded, {.url = file, .size = 1'000}};
    onlyLocked.entries = {guarded};
    mixed.scanned = onlyLocked.scanned = true;
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    click(all("logs")); // perhaps before anything is known to be locked
    ASSERT_TRUE(eventually([&] { return !all("derived-data").isEnabled(); }));
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(1'000));
    EXPECT_EQ(all("logs").state(), Qt::Checked);
    click(all("logs"));
    EXPECT_EQ(selection(), "Nothing selected");
    click(all("logs"));
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(1'000));
    tick("logs", "lib");
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(1'000));
}

TEST_F(CleanupPage, FindsOutWhatIsLockedWithEveryMeasuring) {
    const FileURL documents(home.makeFolder("Documents"));
    if (!RemovalGate::guards().check(documents))
        GTEST_SKIP() << "the guards were made for the home of another test";
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    CleanupTarget &logs = withId(targets, "logs");
    logs.entries = {{.url = documents, .size = 1'000}};
    logs.scanned = true;
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    ASSERT_TRUE(eventually([&] { return !all("logs").isEnabled(); }));
    std::filesystem::remove(documents.path());
    PublishedWriter::set(model.cleanup, &CleanupState::isMeasuringCleanup, true);
    EXPECT_FALSE(all("logs").isEnabled());
    PublishedWriter::set(model.cleanup, &CleanupState::isMeasuringCleanup, false);
    EXPECT_TRUE(eventually([&] { return all("logs").isEnabled(); }));
}

TEST_F(CleanupPage, CanBeStopped) {
    for (int i = 0; i < 200; ++i)
        home.makeFile("Library/Logs/folder " + std::to_string(i) + "/log", 10);
    click("measure");
    click("stopMeasuring");
    ASSERT_TRUE(eventually([&] { return !model.cleanup->isMeasuringCleanup; }));
    EXPECT_FALSE(isVisible("stopMeasuring"));
    EXPECT_TRUE(find("measure").isEnabled());
    const CleanupTarget &logs = withId(model.cleanup->cleanupTargets, "logs");
    EXPECT_EQ(logs.entries.size(), logs.scanned ? 200U : 0U) << "incomplete figures are no figures";
    EXPECT_EQ(label("logs", "total") == "—", !logs.scanned);
    measure();
    EXPECT_EQ(withId(model.cleanup->cleanupTargets, "logs").entries.size(), 200U);
}

TEST_F(CleanupPage, SelectsAllThatIsSafeAndNothingElse) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    const auto entry = [&](const char *name, const CleanupNotes &notes) {
        return CleanupEntry{.url = FileURL(home.makeFile(name, 10)),
                            .size = 1'000,
                            .notes = std::make_shared<const CleanupNotes>(notes)};
    };
    const auto program = std::make_shared<const ProgramSigns>(ProgramSigns{.name = "Player"});
    withId(targets, "logs").entries = {entry("free", {}), entry("kept", {.keptBecause = "It stays."}),
                                       entry("used", {.program = program, .isInUse = true})};
    withId(targets, "user-caches").entries = {entry("reviewed", {})};
    withId(targets, "trash").entries = {entry("trashed", {})};
    for (CleanupTarget &target : targets)
        target.scanned = true;
    EXPECT_EQ(text("cleanupTotal"), "Not measured yet");
    EXPECT_FALSE(find("selectAllSafe").isEnabled());
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    EXPECT_EQ(text("cleanupTotal"), sizeText(5'000) + " found");
    click("selectAllSafe");
    EXPECT_EQ(selection(), "1 item selected, " + sizeText(1'000));
    EXPECT_EQ(state("logs", "free"), Qt::Checked);
    click(all("logs"));
    EXPECT_EQ(state("logs", "used"), Qt::Checked) << "the user may choose it";
    tick("logs", "kept");
    EXPECT_EQ(text("refusal"), "It stays.");
    EXPECT_FALSE(row("logs", "kept").data(Qt::CheckStateRole).isValid());
    EXPECT_EQ(row("logs", "used").data(EntryListModel::noteRole).toString(),
              "Player is running. Quit it before you remove this.");
}

TEST_F(CleanupPage, ShowsOnlyPlacesThatThereAreAndTheLargestFirst) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    withId(targets, "derived-data").hasPlace = false;
    withId(targets, "logs").entries = {{FileURL(home.makeFile("a", 10)), 2'000}};
    withId(targets, "trash").entries = {{FileURL(home.makeFile("b", 10)), 9'000}};
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    EXPECT_FALSE(card("derived-data").isVisible());
    EXPECT_TRUE(card("ios-device-support").isVisible());
    const auto isAbove = [&](const char *one, const char *other) {
        QCoreApplication::processEvents();
        page.grab();
        return card(one).y() < card(other).y();
    };
    EXPECT_TRUE(isAbove("ios-device-support", "logs") && isAbove("logs", "trash"));
    find<QComboBox>("cardOrder").setCurrentIndex(1);
    EXPECT_TRUE(isAbove("trash", "logs") && isAbove("logs", "ios-device-support"));
    find<QComboBox>("cardOrder").setCurrentIndex(0);
    EXPECT_TRUE(isAbove("ios-device-support", "logs") && isAbove("logs", "trash"));
}

TEST_F(CleanupPage, OffersTheCommandsOfOtherTools) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    const auto notes = std::make_shared<const CleanupNotes>(
        CleanupNotes{.name = "Kernel 1", .keptBecause = "It stays.", .command = "tool remove"});
    CleanupTarget &logs = withId(targets, "logs");
    logs.commands = {"tool tidy"};
    logs.entries = {{.url = FileURL(home.makeFile("a", 10)), .size = 2'000, .notes = notes},
                    {.url = FileURL(home.makeFile("b", 10)), .size = 1'000, .notes = notes}};
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    card("logs").setOpen(true);
    EXPECT_EQ(testing::labels(card("logs"), "command"),
              (std::vector<std::string>{"tool tidy", "tool remove"}));
    EXPECT_EQ(row("logs", "Kernel 1").data(EntryListModel::lockRole), "It stays.");
    EXPECT_FALSE(all("logs").isEnabled());
    card("logs").findChildren<QPushButton *>("copyCommand").at(1)->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "tool remove");
    EXPECT_TRUE(testing::labels(card("trash"), "command").empty());
}

TEST_F(CleanupPage, HasAnIconForEveryTarget) {
    for (const CleanupTarget &target :
         CleanupCatalog::definitions({System::linux, FileURL(home.path()), platformTools()}))
        EXPECT_TRUE(
            QFile::exists(QStringLiteral(":/icons/%1.svg").arg(QString::fromStdString(target.symbol))))
            << target.id;
}

TEST_F(CleanupPage, AsksBeforeItTakesTheFilesOfARunningProgram) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    const auto program =
        std::make_shared<const ProgramSigns>(ProgramSigns{.name = "Player", .processes = {"player"}});
    withId(targets, "logs").entries = {
        {.url = FileURL(home.makeFile("a", 10)),
         .size = 1'000,
         .notes = std::make_shared<const CleanupNotes>(CleanupNotes{.freesLess = true, .program = program})}};
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    Host::useSystem(System::linux);
    Host::useRoot(home.path("disk"));
    home.writeFile("disk/proc/12/comm", "player\n");
    click(all("logs"));
    find<RemovalModePicker>("modePicker").setMode(RemovalMode::deleteNow);
    click("remove");
    ASSERT_TRUE(eventually([&] { return sheet() != nullptr; }));
    EXPECT_EQ(testing::shown(*sheet(), "remark"),
              "Player is running. Quit it first, or there may be errors until the next start. Other files "
              "share some of this space, so this may free less.\n\nThis can’t be undone.");
}

TEST_F(CleanupPage, OnlyDeletesWhatIsInTheTrashOfLinux) {
    std::vector<CleanupTarget> targets = model.cleanup->cleanupTargets;
    for (const char *id : {"logs", "trash"})
        withId(targets, id).entries = {{.url = FileURL(home.makeFile(id, 10)), .size = 1'000}};
    PublishedWriter::set(model.cleanup, &CleanupState::cleanupTargets, targets);
    Host::useSystem(System::linux);
    click(all("trash"));
    click(all("logs"));
    click("remove");
    EXPECT_TRUE(testing::shown(*sheet(), "remark").ends_with("Items already in the Trash stay there."));
    EXPECT_FALSE(sheet()->findChild<RemovalModePicker *>()->isHidden());
    testing::click(*sheet(), "cancel");
    ASSERT_TRUE(eventually([&] { return sheet() == nullptr; }));
    click(all("logs"));
    click("remove");
    EXPECT_TRUE(sheet()->findChild<RemovalModePicker *>()->isHidden());
    confirm();
    EXPECT_EQ(actions.calls, std::vector{"delete " + home.path("trash")});
}

} // namespace brimvale
