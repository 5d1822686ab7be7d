#include "Views/Window/ResultSheet.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/OpenedAddresses.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleTree.h"
#include "Support/WholeWindow.h"

#include <QAction>
#include <QCoreApplication>
#include <QLabel>
#include <QListWidget>
#include <QPointer>

namespace brimvale {

namespace {

using testing::descendant;
using testing::eventually;
using testing::HeldRemoval;
using testing::labels;
using testing::shown;

/// The whole window.
class ResultInWindow : public testing::PageTest<testing::WholeWindow> {
protected:
    [[nodiscard]] QPointer<ResultSheet> alert() const { return page.findChild<ResultSheet *>(); }
};

/// The items that need the administrator, as listed.
std::vector<std::string> itemsIn(const ResultSheet &alert) {
    const auto *list = alert.findChild<QListWidget *>("adminItems");
    std::vector<std::string> items;
    for (int row = 0; list != nullptr && row < list->count(); ++row)
        items.push_back(list->item(row)->text().toStdString());
    return items;
}

} // namespace

TEST(ResultSheet, TellsWhatBecameOfEveryItem) {
    QWidget window;
    window.show();
    for (const bool needsAdmin : {false, true}) {
        RemovalResult result{{FileURL("/gone")}, {}, 3'000'000, {}};
        for (int i = 1; i <= 5; ++i)
            result.failed.push_back({FileURL("/a/<i>" + std::to_string(i)), "It is in use."});
        if (needsAdmin)
            result.needsAdmin = {FileURL("/b/locked")};
        auto *alert = new ResultSheet(result, &window);
        alert->open();
        EXPECT_EQ(shown(*alert, "resultTitle"), "Finished with problems");
        EXPECT_EQ(shown(*alert, "resultSummary"), "Removed 1 item, reclaiming 3 MB");
        EXPECT_EQ(labels(*alert, "failure"), RemovalReport::failureLines(result));
        for (const QLabel *line : alert->findChildren<QLabel *>("failure"))
            EXPECT_EQ(line->textFormat(), Qt::PlainText);
        EXPECT_EQ(shown(*alert, "adminTitle"), needsAdmin ? "Some items need admin rights" : "");
        for (const char *button : {"authenticate", "skip"})
            EXPECT_EQ(alert->findChild<QPushButton *>(button) != nullptr, needsAdmin) << button;
        EXPECT_EQ(alert->findChild<QPushButton *>("ok") != nullptr, !needsAdmin);
    }
}

TEST(ResultSheet, ShowsAllThatTheAdministratorWouldRemoveAndNoNameRaw) {
    RemovalResult result;
    const std::string hostile = "/a/line\nbreak \u202Etxt";
    const std::string harmless = "/a/line␊break \\u{202E}txt";
    result.failed = {{FileURL(hostile), "“line\nbreak” is in use."}};
    result.remarks = {{FileURL(hostile), "It is now “/v/line\nbreak”."}};
    result.partlyRemoved = {{FileURL(hostile), 2, 3, 5'000'000}};
    for (int i = 0; i < 500; ++i)
        result.needsAdmin.emplace_back(hostile + std::to_string(i));
    result.adminRemarks = {{result.needsAdmin[1], "It is locked."}};
    QWidget window;
    window.show();
    auto *alert = new ResultSheet(result, &window);
    alert->open();
    EXPECT_EQ(labels(*alert, "failure"), std::vector{harmless + ": “line␊break” is in use."});
    EXPECT_EQ(labels(*alert, "remark"), std::vector{harmless + ": It is now “/v/line␊break”."});
    EXPECT_EQ(labels(*alert, "part"),
              std::vector<std::string>{
                  "“line␊break \\u{202E}txt” was partly deleted: 2 of 3 items are gone, 5 MB freed"});
    const std::vector<std::string> items = itemsIn(*alert);
    ASSERT_EQ(items.size(), result.needsAdmin.size());
    EXPECT_EQ(items[0], harmless + "0");
    EXPECT_EQ(items[1], harmless + "1\nIt is locked.") << "beside its item";
    EXPECT_EQ(items[499], harmless + "499");
    EXPECT_LT(alert->height(), 600) << "the list scrolls";
}

TEST(ResultSheet, OpensTheSettingsThatLetItRemoveAnApplication) {
    const testing::OpenedAddresses opened("x-apple.systempreferences");
    RemovalResult result;
    result.needsAdmin = {FileURL("/Applications/Other.app")};
    QWidget window;
    window.show();
    auto *plain = new ResultSheet(result, &window);
    EXPECT_EQ(plain->findChild<QPushButton *>("appManagement"), nullptr);
    result.needsAppManagement = true;
    auto *alert = new ResultSheet(result, &window);
    alert->open();
    testing::click(*alert, "appManagement");
    EXPECT_EQ(opened.all,
              QStringList("x-apple.systempreferences:com.apple.preference.security?Privacy_AppBundles"));
    EXPECT_TRUE(alert->isVisible()) << "to try again afterwards";
}

TEST(ResultSheet, TriesAgainOnlyWhenAskedTo) {
    RemovalResult result;
    result.needsAdmin = {FileURL("/b/one"), FileURL("/b/two")};
    std::vector<FileURL> escalated;
    QWidget window;
    window.show();
    const auto open = [&] {
        auto *alert = new ResultSheet(result, &window);
        QObject::connect(alert, &ResultSheet::escalated,
                         [&](const std::vector<FileURL> &items) { escalated = items; });
        alert->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(alert));
        return QPointer<ResultSheet>(alert);
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const QPointer<ResultSheet> alert = open();
        QTest::keyClick(alert->windowHandle(), key);
        EXPECT_TRUE(eventually([&] { return alert == nullptr; }));
        EXPECT_TRUE(escalated.empty()) << key;
    }
    const QPointer<ResultSheet> alert = open();
    testing::click(*alert, "authenticate");
    EXPECT_EQ(escalated, result.needsAdmin);
    EXPECT_TRUE(eventually([&] { return alert == nullptr; }));
}

TEST_F(ResultInWindow, TellsTheOutcomeAndOffersTheAdministrator) {
    const std::string locked = home.makeFile("locked", 2'000'000);
    home.makeFile("large", 3'000'000);
    actions.refuse(locked);
    actions.privilegedRunError = PrivilegedRunError{"Not today."};
    page.goTo({Section::Kind::browse});
    page.show();
    EXPECT_FALSE(isVisible("movedToTrash"));
    model.scan.startScan(home.path());
    ASSERT_TRUE(testing::waitUntilScanned(model));
    FSNode &root = *model.scan->tree;
    model.removals.removeNodes({descendant(root, {"large"}), descendant(root, {"locked"})},
                               RemovalMode::trash);
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && alert() != nullptr; }));
    const std::string moved = Fmt::byteFormatter(model.removals->movedToTrashThisSession) +
                              " moved to the Trash. The space is free once the Trash is emptied.";
    EXPECT_EQ(text("movedToTrash"), moved);
    EXPECT_EQ(labels(*alert(), "space"), std::vector{moved});
    EXPECT_FALSE(isVisible("freedThisSession")) << "nothing is free yet";
    EXPECT_EQ(shown(*alert(), "resultSummary"), RemovalReport::summary(*model.removals->lastResult));
    EXPECT_EQ(itemsIn(*alert()), std::vector{locked});

    const QPointer<ResultSheet> first = alert();
    testing::click(*first, "authenticate");
    ASSERT_TRUE(eventually([&] { return first == nullptr && alert() != nullptr; }));
    EXPECT_EQ(actions.calls.back(), "admin /bin/rm -rf -- '" + locked + "'");
    EXPECT_EQ(labels(*alert(), "failure"), std::vector{locked + ": Not today."});
    EXPECT_EQ(alert()->findChild<QPushButton *>("authenticate"), nullptr) << "nothing is tried a third time";
    EXPECT_NE(descendant(root, {"locked"}), nullptr);
}

TEST_F(ResultInWindow, OffersTheAdministratorOnlyWhileNothingIsRemoved) {
    const std::vector<CleanupEntry> locked = {{.url = FileURL(home.makeFile("locked")), .size = 1}};
    actions.refuse(home.path("locked"));
    page.show();
    model.removals.removeCategoryEntries(locked, RemovalMode::trash);
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && alert() != nullptr; }));
    EXPECT_TRUE(find("authenticate").isEnabled());

    // Another page's removal begins behind the alert: what is asked for then would be lost.
    HeldRemoval held(actions);
    model.removals.removeCategoryEntries(locked, RemovalMode::trash);
    held.waitUntilCalled();
    EXPECT_FALSE(find("authenticate").isEnabled());
    held.letGoOn();
    ASSERT_TRUE(testing::waitUntilRemoved(model));
}

TEST_F(ResultInWindow, TellsWhatCameMeanwhileOnceTheSheetInFrontHasEnded) {
    page.show();
    find<QAction>("about").trigger();
    for (const char *name : {"first", "second"}) {
        model.removals.removeCategoryEntries({{.url = FileURL(home.makeFile(name)), .size = 1}},
                                             RemovalMode::trash);
        ASSERT_TRUE(testing::waitUntilRemoved(model));
    }
    PublishedWriter::set(model.backups, &BackupState::pendingDeletion,
                         PendingDeletion{FileURL("/b"), {}, {}, 0, {}, {}, false, {}});
    const auto review = [&] { return page.findChild<QDialog *>("backupReview"); };
    EXPECT_TRUE(alert() == nullptr && review() == nullptr);

    QTest::keyClick(&find("aboutSheet"), Qt::Key_Escape);
    for (const char *result : {"first", "second"}) {
        ASSERT_TRUE(eventually([&] { return alert() != nullptr; })) << result;
        EXPECT_EQ(review(), nullptr);
        QTest::keyClick(alert(), Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_TRUE(eventually([&] { return review() != nullptr; }));
}

TEST_F(ResultInWindow, TellsWhatDeletingHasFreed) {
    page.show();
    model.removals.removeCategoryEntries({{.url = FileURL(home.makeFile("file")), .size = 5'000}},
                                         RemovalMode::deleteNow);
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && alert() != nullptr; }));
    EXPECT_EQ(labels(*alert(), "space"), std::vector<std::string>()) << "the summary says it";
    EXPECT_EQ(text("freedThisSession"),
              Fmt::byteFormatter(model.removals->deletedThisSession) + " freed this session");
    EXPECT_FALSE(isVisible("movedToTrash"));

    RemovalResult result{.succeeded = {FileURL("/a"), FileURL("/b")},
                         .bytesFreed = 9'000,
                         .bytesMovedToTrash = 5'000,
                         .bytesDeleted = 4'000,
                         .freeSpaceRemark = "A snapshot keeps it."};
    const ResultSheet both(result, nullptr);
    EXPECT_EQ(
        labels(both, "space"),
        (std::vector<std::string>{Fmt::byteFormatter(5'000) +
                                      " moved to the Trash. The space is free once the Trash is emptied.",
                                  Fmt::byteFormatter(4'000) + " freed.", "A snapshot keeps it."}));
}

} // namespace brimvale
