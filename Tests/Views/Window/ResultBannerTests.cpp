#include "Views/Window/ResultBanner.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Core/Trash/PuttingBack.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/OpenedAddresses.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleTree.h"
#include "Support/WholeWindow.h"
#include "Views/Window/ResultView.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
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
    /// What the banner shows; null while it is hidden.
    [[nodiscard]] QPointer<ResultView> alert() const {
        for (auto *view : page.findChildren<ResultView *>())
            if (view->isVisible())
                return view;
        return nullptr;
    }
};

/// The items that need the administrator, as listed.
std::vector<std::string> itemsIn(const ResultView &alert) {
    const auto *list = alert.findChild<QListWidget *>("adminItems");
    std::vector<std::string> items;
    for (int row = 0; list != nullptr && row < list->count(); ++row)
        items.push_back(list->item(row)->text().toStdString());
    return items;
}

} // namespace

TEST(ResultView, TellsWhatBecameOfEveryItem) {
    for (const bool needsAdmin : {false, true}) {
        RemovalResult result{{FileURL("/gone")}, {}, 3'000'000, {}};
        for (int i = 1; i <= 5; ++i)
            result.failed.push_back({FileURL("/a/<i>" + std::to_string(i)), "It is in use."});
        if (needsAdmin)
            result.needsAdmin = {FileURL("/b/locked")};
        ResultView view(result);
        view.show();
        EXPECT_EQ(shown(view, "resultTitle"), "Finished with problems");
        EXPECT_EQ(shown(view, "resultSummary"), "Removed 1 item, reclaiming 3 MB");
        EXPECT_EQ(labels(view, "failure"), RemovalReport::failureLines(result));
        for (const QLabel *line : view.findChildren<QLabel *>("failure"))
            EXPECT_EQ(line->textFormat(), Qt::PlainText);
        EXPECT_EQ(shown(view, "adminTitle"), needsAdmin ? "Some items need admin rights" : "");
        for (const char *button : {"authenticate", "skip"})
            EXPECT_EQ(view.findChild<QPushButton *>(button) != nullptr, needsAdmin) << button;
        EXPECT_EQ(view.findChild<QPushButton *>("ok") != nullptr, !needsAdmin);
    }
}

TEST(ResultView, ShowsAllThatTheAdministratorWouldRemoveAndNoNameRaw) {
    RemovalResult result;
    const std::string hostile = "/a/line\nbreak \u202Etxt";
    const std::string harmless = "/a/line␊break \\u{202E}txt";
    result.failed = {{FileURL(hostile), "“line\nbreak” is in use."}};
    result.remarks = {{FileURL(hostile), "It is now “/v/line\nbreak”."}};
    result.partlyRemoved = {{FileURL(hostile), 2, 3, 5'000'000}};
    for (int i = 0; i < 500; ++i)
        result.needsAdmin.emplace_back(hostile + std::to_string(i));
    result.adminRemarks = {{result.needsAdmin[1], "It is locked."}};
    ResultView view(result);
    view.show();
    EXPECT_EQ(labels(view, "failure"), std::vector{harmless + ": “line␊break” is in use."});
    EXPECT_EQ(labels(view, "remark"), std::vector{harmless + ": It is now “/v/line␊break”."});
    EXPECT_EQ(labels(view, "part"),
              std::vector<std::string>{
                  "“line␊break \\u{202E}txt” was partly deleted: 2 of 3 items are gone, 5 MB freed"});
    const std::vector<std::string> items = itemsIn(view);
    ASSERT_EQ(items.size(), result.needsAdmin.size());
    EXPECT_EQ(items[0], harmless + "0");
    EXPECT_EQ(items[1], harmless + "1\nIt is locked.") << "beside its item";
    EXPECT_EQ(items[499], harmless + "499");
    EXPECT_LT(view.height(), 600) << "the list scrolls";
}

TEST(ResultView, OpensTheSettingsThatLetItRemoveAnApplication) {
    const testing::OpenedAddresses opened("x-apple.systempreferences");
    RemovalResult result;
    result.needsAdmin = {FileURL("/Applications/Other.app")};
    EXPECT_EQ(ResultView(result).findChild<QPushButton *>("appManagement"), nullptr);
    result.needsAppManagement = true;
    ResultView view(result);
    view.show();
    testing::click(view, "appManagement");
    EXPECT_EQ(opened.all,
              QStringList("x-apple.systempreferences:com.apple.preference.security?Privacy_AppBundles"));
    EXPECT_TRUE(view.isVisible()) << "to try again afterwards";
}

TEST(ResultView, TellsWhatIsBack) {
    PutBackResult result;
    result.succeeded = {{FileURL("/trash/a"), FileURL("/a")}, {FileURL("/trash/b"), FileURL("/b")}};
    ResultView done(result);
    done.show();
    EXPECT_EQ(shown(done, "resultTitle"), "Done");
    EXPECT_EQ(shown(done, "resultSummary"), "2 items are back in their old places.");
    EXPECT_FALSE(done.needsAttention());
    result.failed = {{FileURL("/c"), "“/c” already exists, and is not replaced."}};
    ResultView problem(result);
    problem.show();
    EXPECT_EQ(shown(problem, "resultTitle"), "Some items are still in the Trash");
    EXPECT_EQ(labels(problem, "failure"),
              std::vector<std::string>{"/c: “/c” already exists, and is not replaced."});
    EXPECT_TRUE(problem.needsAttention());
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
                              " moved to the Trash. Empty the Trash to free the space.";
    EXPECT_EQ(text("movedToTrash"), moved);
    EXPECT_EQ(labels(*alert(), "space"), std::vector{moved});
    EXPECT_FALSE(isVisible("freedThisSession")) << "nothing is free yet";
    EXPECT_EQ(shown(*alert(), "resultSummary"), RemovalReport::summary(*model.removals->lastResult));
    EXPECT_EQ(itemsIn(*alert()), std::vector{locked});

    const QPointer<ResultView> first = alert();
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

TEST_F(ResultInWindow, KeepsWhatTheUserShouldRead) {
    page.show();
    const auto remove = [&](const char *name) {
        model.removals.removeCategoryEntries({{.url = FileURL(home.path(name)), .size = 1}},
                                             RemovalMode::trash);
        ASSERT_TRUE(testing::waitUntilRemoved(model));
    };
    for (const char *name : {"one", "two", "locked"})
        home.makeFile(name);
    actions.refuse(home.path("locked"));
    remove("one");
    ASSERT_TRUE(alert() != nullptr);
    const QPointer<ResultView> first = alert();
    remove("locked");
    EXPECT_TRUE(eventually([&] { return first == nullptr; })) << "a success makes room";
    EXPECT_EQ(itemsIn(*alert()), std::vector{home.path("locked")});
    remove("two");
    EXPECT_EQ(itemsIn(*alert()), std::vector{home.path("locked")}) << "it waits for an answer";
    testing::click(*alert(), "skip");
    EXPECT_TRUE(itemsIn(*alert()).empty());
    find("ok").setFocus();
    QTest::keyClick(page.focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(alert() == nullptr && !isVisible("resultBanner"));
}

TEST_F(ResultInWindow, ShowsABackupToReviewOnceTheSheetInFrontHasEnded) {
    page.show();
    find<QAction>("about").trigger();
    PublishedWriter::set(model.backups, &BackupState::pendingDeletion,
                         PendingDeletion{FileURL("/b"), {}, {}, 0, {}, {}, false, {}});
    const auto review = [&] { return page.findChild<QDialog *>("backupReview"); };
    EXPECT_EQ(review(), nullptr);
    QTest::keyClick(&find("aboutSheet"), Qt::Key_Escape);
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
    const ResultView both(result);
    EXPECT_EQ(labels(both, "space"),
              (std::vector<std::string>{Fmt::byteFormatter(5'000) +
                                            " moved to the Trash. Empty the Trash to free the space.",
                                        Fmt::byteFormatter(4'000) + " freed.", "A snapshot keeps it."}));
}

} // namespace brimvale
