#include "Core/Removal/RemovalPlan.h"
#include "Support/TemporaryFolder.h"
#include "Support/Window.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/RemovalSheet.h"

#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::eventually;
using testing::find;
using testing::labels;
using testing::shown;

std::vector<CleanupEntry> entries(int count, std::int64_t size) {
    std::vector<CleanupEntry> made;
    for (int i = 1; i <= count; ++i)
        made.push_back({.url = FileURL("/home/user/item" + std::to_string(i)), .size = size});
    return made;
}

/// A sheet over a window.
class RemovalSheetTest : public ::testing::Test {
protected:
    void ask(RemovalRequest request) {
        window.show();
        sheet = new RemovalSheet(std::move(request), &window);
        QObject::connect(sheet, &RemovalSheet::confirmed,
                         [this](RemovalMode mode) { answers.push_back(mode); });
        sheet->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet));
    }

    QWidget window;
    QPointer<RemovalSheet> sheet;
    std::vector<RemovalMode> answers;
};

} // namespace

TEST_F(RemovalSheetTest, KeepsEverythingUnlessTheUserSaysSo) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
        ask({.items = entries(2, 1000)});
        EXPECT_TRUE(find(*sheet, "cancel").hasFocus());
        EXPECT_TRUE(find<QPushButton>(*sheet, "cancel").isDefault());
        QTest::keyClick(sheet->windowHandle(), key);
        EXPECT_TRUE(eventually([&] { return sheet == nullptr; })) << key;
    }
    // Return goes to the way out also from where the mode is chosen.
    ask({.items = entries(1, 1000)});
    find(*sheet, "modePicker").setFocus();
    QTest::keyClick(sheet->windowHandle(), Qt::Key_Return);
    EXPECT_TRUE(eventually([&] { return sheet == nullptr; }));
    EXPECT_TRUE(answers.empty());
}

TEST_F(RemovalSheetTest, OffersTheTrashFirstAndTellsWhatEachModeDoes) {
    ask({.items = entries(3, 1'400'000'000)});
    auto &picker = find<RemovalModePicker>(*sheet, "modePicker");
    ASSERT_EQ(picker.count(), 2);
    EXPECT_EQ(picker.currentText(), "Move to Trash");
    EXPECT_EQ(picker.itemText(1), "Delete immediately");
    EXPECT_EQ(shown(*sheet, "question"), "Remove 3 items, 4.2 GB?");
    EXPECT_EQ(shown(*sheet, "remark"), "This frees about 4.2 GB. Moving to Trash does not free space until "
                                       "the Trash is emptied.");
    auto &confirm = find<QPushButton>(*sheet, "confirm");
    EXPECT_EQ(confirm.text(), "Move to Trash");

    picker.setFocus();
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_EQ(confirm.text(), "Delete Immediately");
    EXPECT_THAT(shown(*sheet, "remark"), ::testing::Not(::testing::HasSubstr("Trash")));
    confirm.setFocus();
    QTest::keyClick(&confirm, Qt::Key_Space);
    EXPECT_EQ(answers, std::vector<RemovalMode>{RemovalMode::deleteNow});
    EXPECT_TRUE(eventually([&] { return sheet == nullptr; }));

    ask({.items = entries(1, 0)});
    EXPECT_EQ(find<RemovalModePicker>(*sheet, "modePicker").mode(), RemovalMode::trash)
        << "whatever was chosen the time before";
}

TEST_F(RemovalSheetTest, OffersNoTrashForWhatAProgramRemoves) {
    ask({.items = entries(1, 1000), .uninstalls = true});
    EXPECT_FALSE(find(*sheet, "modePicker").isVisible());
    auto &confirm = find<QPushButton>(*sheet, "confirm");
    EXPECT_EQ(confirm.text(), "Uninstall");
    testing::click(confirm);
    EXPECT_EQ(answers.size(), 1U);
    ask({.items = entries(2, 1000), .uninstalls = true});
    EXPECT_TRUE(find(*sheet, "modePicker").isVisible()) << "for its files";
}

TEST_F(RemovalSheetTest, NamesWhatGoesAndCountsTheRest) {
    for (const auto &[count, question] :
         {std::pair(1, "Remove “item1”, 2 KB?"), std::pair(6, "Remove 6 items, 12 KB?"),
          std::pair(1207, "Remove 1,207 items, 2.4 MB?")}) {
        ask({.items = entries(count, 2000)});
        EXPECT_EQ(shown(*sheet, "question"), question);
        const std::vector<std::string> all = labels(*sheet, "");
        EXPECT_EQ(std::count(all.begin(), all.end(), "and 1,201 more"), count == 1207 ? 1 : 0);
        delete sheet;
    }
    // A name is no markup, and no longer than the sheet.
    ask({.items = {{.url = FileURL("/a/<b>" + std::string(240, 'W') + "</b>"), .size = 1}}});
    EXPECT_EQ(find<QLabel>(*sheet, "question").textFormat(), Qt::PlainText);
    EXPECT_LE(find(*sheet, "question").minimumSizeHint().width(), sheet->width());
}

TEST_F(RemovalSheetTest, TellsWhatDeletingFreesAndSavesAPlan) {
    const testing::TemporaryFolder folder;
    const FileURL file(folder.makeFile("file", 50'000)), linked(folder.makeFile("linked", 30'000));
    std::filesystem::create_hard_link(linked.path(), folder.path("elsewhere"));
    ask({.items = {{.url = file, .size = 50'000}, {.url = linked, .size = 30'000}}});
    EXPECT_TRUE(eventually([&] {
        return shown(*sheet, "reclaim").find("1 file that has other names elsewhere") != std::string::npos;
    }));
    EXPECT_THAT(shown(*sheet, "reclaim"), ::testing::StartsWith("Frees when the Trash is emptied: "));
    find<RemovalModePicker>(*sheet, "modePicker").setMode(RemovalMode::deleteNow);
    EXPECT_THAT(shown(*sheet, "reclaim"), ::testing::StartsWith("Deleting frees now: "));
    const QWidget &confirm = find(*sheet, "confirm");
    EXPECT_TRUE(sheet->rect().contains(confirm.mapTo(sheet.data(), confirm.rect().bottomRight())))
        << "the sheet has room for the lines";

    testing::click(*sheet, "savePlan");
    auto *dialog = sheet->findChild<QFileDialog *>("fileChooser");
    ASSERT_NE(dialog, nullptr);
    emit dialog->fileSelected(QString::fromStdString(folder.path("plan")));
    delete dialog;
    EXPECT_FALSE(confirm.isEnabled()) << "while the plan looks at the items";
    EXPECT_TRUE(eventually([&] { return shown(*sheet, "planNote").starts_with("“plan” was written."); }));
    const auto read = planAt(folder.path("plan"));
    ASSERT_TRUE(std::holds_alternative<RemovalPlan>(read));
    EXPECT_EQ(std::get<RemovalPlan>(read).items.size(), 2U);
    EXPECT_TRUE(confirm.isEnabled());
    EXPECT_TRUE(testing::isThere(file.path()));
    EXPECT_TRUE(answers.empty());
}

TEST_F(RemovalSheetTest, TellsWhatAPlanLeavesOut) {
    const testing::TemporaryFolder folder;
    ask({.items = {{.url = FileURL(folder.makeFile("file", 5'000))}, {.url = FileURL("/usr")}}});
    testing::click(*sheet, "savePlan");
    auto *dialog = sheet->findChild<QFileDialog *>("fileChooser");
    ASSERT_NE(dialog, nullptr);
    emit dialog->fileSelected(QString::fromStdString(folder.path("plan")));
    delete dialog;
    EXPECT_TRUE(eventually([&] {
        return shown(*sheet, "planNote")
            .ends_with("\nLeft out:\n/usr is a structural directory and is never removed.");
    })) << shown(*sheet, "planNote");
}

TEST_F(RemovalSheetTest, PromisesWhatItHasShown) {
    const Reclaim known{
        .freesNow = 40'000, .mayFree = 2'000, .inSnapshots = 70'000'000, .snapshots = {{"/s"}}};
    std::optional<FreePromise> promised;
    for (const RemovalMode mode : {RemovalMode::trash, RemovalMode::deleteNow}) {
        ask({.items = entries(1, 1000), .mode = mode, .reclaim = known});
        EXPECT_THAT(shown(*sheet, "reclaim"), ::testing::HasSubstr("Held by snapshots: 70 MB (/s)"));
        EXPECT_GT(find(*sheet, "reclaim").y(), find(*sheet, "remark").y()) << "it puts the remark right";
        QObject::connect(sheet, &RemovalSheet::confirmed,
                         [&](RemovalMode, const auto &promise) { promised = promise; });
        testing::click(*sheet, "confirm");
        EXPECT_TRUE(eventually([&] { return sheet == nullptr; }));
        EXPECT_EQ(promised.has_value(), mode == RemovalMode::deleteNow) << "the Trash frees nothing";
    }
    ASSERT_TRUE(promised);
    EXPECT_EQ(promised->atLeast, 40'000);
    EXPECT_EQ(promised->atMost, 42'000);
    EXPECT_EQ(promised->holders, std::vector<std::string>{"Held by snapshots: 70 MB (/s)"});
}

} // namespace brimvale
