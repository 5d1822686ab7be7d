#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Text/Formatting.h"
#include "Support/PageTest.h"
#include "Support/SampleMessages.h"
#include "Support/WholeWindow.h"
#include "Views/Category/BackupReviewView.h"
#include "Views/Category/CategoryDetailView.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/RemovalModePicker.h"

#include <QPointer>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::shown;
using ::testing::StartsWith;

/// The window, on the Messages page of a Mac with a database and an attachment.
class MessagesPage : public testing::PageTest<testing::WholeWindow> {
protected:
    MessagesPage() {
        home.makeFile("Library/Messages/Attachments/photo", 3'000'000);
        EXPECT_TRUE(testing::makeDatabase(database(), {{.id = 1, .displayName = "Ada", .identifier = "1"}},
                                          {{.text = "Hello"}}));
        page.goTo({Section::Kind::category, "messages"});
    }

    [[nodiscard]] std::string database() const { return home.path("Library/Messages/chat.db"); }
    [[nodiscard]] std::string attachments() const { return home.path("Library/Messages/Attachments"); }
    [[nodiscard]] QWidget &category() const { return *page.findChild<CategoryDetailView *>(); }

    /// Measures, and ticks the attachments and the database with the keyboard.
    void tickAll() {
        testing::activate(page);
        testing::click(category(), "measure");
        ASSERT_TRUE(eventually([&] { return model.storage.category("messages")->measured; }));
        auto *list = category().findChild<EntryList *>();
        ASSERT_EQ(list->entries().size(), 2U);
        for (int row = 0; row < 2; ++row) {
            list->setCurrentIndex(list->model()->index(row, 0));
            QTest::keyClick(list, Qt::Key_Space);
        }
    }

    /// Calls `act` once, as soon as a backup is under way.
    void onceArchiving(std::function<void()> act) {
        auto *once = new QObject(&model.backups);
        QObject::connect(&model.backups, &Backups::changed, once, [this, once, act = std::move(act)] {
            if (!model.backups->isArchiving || !model.backups->archiveStatus)
                return;
            const auto call = act; // goes with the connection
            QObject::disconnect(&model.backups, nullptr, once, nullptr);
            call();
        });
    }

    [[nodiscard]] QDialog *sheet(const char *name) const {
        QDialog *found = nullptr;
        EXPECT_TRUE(eventually([&] {
            found = page.findChild<QDialog *>(name);
            return found != nullptr && found->isVisible();
        })) << name;
        return found;
    }

    void closeWith(QPointer<QDialog> dialog, const char *button) {
        testing::click(*dialog, button);
        ASSERT_TRUE(eventually([&] { return dialog.isNull(); }));
    }
};

FileURL item(const char *name) {
    return FileURL(std::string("/items/") + name);
}

/// A review that has nothing to remark.
PendingDeletion plainBackup() {
    return {.destination = FileURL("/backups/Items 2024-05-01 1015"),
            .items = {{item("a"), FileURL("/b/a"), 1'000'000, 1'000'000}},
            .entries = {},
            .bytes = 1'000'000,
            .readableExport = {}};
}

/// Reviews of backups over a window.
class BackupReview : public ::testing::Test {
protected:
    BackupReviewView &open(const PendingDeletion &pending) {
        if (opened != nullptr)
            opened->close();
        window.show();
        opened = new BackupReviewView(pending, &window);
        opened->open();
        opened->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(opened));
        return *opened;
    }

    QWidget window;
    QPointer<BackupReviewView> opened;
};

} // namespace

TEST_F(MessagesPage, BacksUpAndKeepsBothOrDeletesTheOriginals) {
    EXPECT_FALSE(testing::find(category(), "backUp").isEnabled());
    tickAll();
    EXPECT_EQ(shown(category(), "backupRoot"), home.path("Documents/Brimvale Backups"));
    EXPECT_TRUE(testing::find(category(), "backUp").isEnabled());
    bool wasArchiving = false;
    onceArchiving([&] {
        wasArchiving = true;
        EXPECT_FALSE(testing::find(category(), "backUp").isVisible());
        EXPECT_EQ(shown(testing::find(category(), "archiveProgress"), "progressWork"), "Copying 2 items…");
        EXPECT_TRUE(testing::find(category(), "cancelBackup").isVisible());
        EXPECT_FALSE(testing::find(category(), "changeFolder").isEnabled());
    });
    QTest::keyClick(&category(), Qt::Key_Delete);

    QDialog *review = sheet("backupReview");
    ASSERT_NE(review, nullptr);
    EXPECT_TRUE(wasArchiving);
    const FileURL backup = model.backups->pendingDeletion->destination;
    EXPECT_EQ(shown(*review, "backupFolder"), backup.path());
    EXPECT_THAT(shown(*review, "reviewSummary"), StartsWith("2 items copied, 3"));
    EXPECT_EQ(shown(*review, "transcriptNote"), "A readable transcript was written alongside the database.");
    EXPECT_NE(shown(*review, "sameVolumeWarning"), "");
    EXPECT_EQ(shown(*review, "modeLine"), "Originals will go to the Trash.");
    closeWith(review, "keepBoth");
    EXPECT_EQ(shown(category(), "archiveStatus"),
              "Backup kept at " + std::string(backup.fileName()) + ". Nothing was deleted.");
    EXPECT_THAT(actions.calls, IsEmpty());
    EXPECT_TRUE(fs::exists(backup.appending("chat.db").path()));

    auto *picker = category().findChild<RemovalModePicker *>();
    picker->setMode(RemovalMode::deleteNow);
    model.backups.chooseBackupRoot(FileURL(home.path("second"))); // within a minute both have the same name
    testing::click(category(), "backUp");
    review = sheet("backupReview");
    ASSERT_NE(review, nullptr);
    EXPECT_EQ(shown(*review, "modeLine"),
              "Originals will be deleted immediately, with no Trash to fall back on.");
    EXPECT_EQ(picker->mode(), RemovalMode::trash) << "for the next time";
    closeWith(review, "deleteOriginals");
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving(); }));
    EXPECT_THAT(actions.calls, ElementsAre("delete " + attachments(), "delete " + database()));
    EXPECT_THAT(shown(category(), "archiveStatus"), HasSubstr(", then removed the originals."));
    EXPECT_TRUE(model.storage.category("messages")->entries.empty());
    EXPECT_FALSE(testing::find(category(), "backUp").isEnabled());
}

TEST_F(MessagesPage, LeavesTheOriginalsWhenItIsCancelled) {
    tickAll();
    onceArchiving([this] { testing::click(category(), "cancelBackup"); });
    testing::click(category(), "backUp");
    ASSERT_TRUE(eventually([&] { return model.backups->archiveError.has_value(); }));
    EXPECT_EQ(shown(category(), "archiveStatus"), "Nothing was deleted. The backup was cancelled.");
    EXPECT_EQ(page.findChild<QDialog *>("backupReview"), nullptr);
    EXPECT_THAT(actions.calls, IsEmpty());
    EXPECT_TRUE(testing::find(category(), "backUp").isVisible());
}

TEST_F(MessagesPage, TellsThatTheBackupFailed) {
    tickAll();
    const std::string root = home.writeFile("no folder", "");
    model.backups.chooseBackupRoot(FileURL(root));
    testing::click(category(), "backUp");
    ASSERT_TRUE(eventually([&] { return isVisible("resultBanner"); }));
    EXPECT_EQ(text("resultTitle"), "The backup failed");
    EXPECT_EQ(text("resultSummary"), "Nothing was deleted.");
    EXPECT_EQ(testing::labels(find("resultBanner"), "failure").size(), 2U);
    EXPECT_THAT(actions.calls, IsEmpty());
}

TEST_F(MessagesPage, RefusesABackupIntoTheSelection) {
    tickAll();
    fs::create_directory_symlink(attachments(), home.path("elsewhere"));
    model.backups.chooseBackupRoot(FileURL(home.path("elsewhere/backups")));
    testing::click(category(), "backUp");
    QDialog *notice = sheet("noticeSheet");
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(shown(*notice, "explanation"), "“Attachments” can’t be backed up into a folder inside itself.");
    EXPECT_FALSE(model.backups->isArchiving);
    closeWith(notice, "ok");
    EXPECT_FALSE(fs::exists(attachments() + "/backups"));
    EXPECT_THAT(actions.calls, IsEmpty());
}

TEST_F(MessagesPage, AsksWhereThereIsTooLittleRoom) {
    const char *full = "/proc"; // where nothing is ever free
    if (!fs::exists(full))
        GTEST_SKIP() << "no file system here without any room";
    tickAll();
    model.backups.chooseBackupRoot(FileURL(std::string(full) + "/backups"));
    testing::click(category(), "backUp");
    QDialog *question = sheet("confirmationSheet");
    ASSERT_NE(question, nullptr);
    EXPECT_THAT(shown(*question, "explanation"), StartsWith("The backup needs 3"));
    EXPECT_THAT(shown(*question, "explanation"),
                HasSubstr(", but only " + Fmt::byteFormatter(0) + " are free there."));
    closeWith(question, "cancel");
    EXPECT_FALSE(model.backups->isArchiving);
    EXPECT_EQ(model.backups->archiveError, std::nullopt);

    testing::click(category(), "backUp");
    question = sheet("confirmationSheet");
    ASSERT_NE(question, nullptr);
    testing::click(*question, "confirm");
    ASSERT_TRUE(eventually([&] { return model.backups->archiveError.has_value(); }));
}

TEST_F(BackupReview, SaysNoMoreThanThereIs) {
    const BackupReviewView &review = open(plainBackup());
    EXPECT_EQ(shown(review, "reviewHeading"), "Backup complete. Nothing has been deleted yet.");
    EXPECT_EQ(shown(review, "reviewSummary"), "1 item copied, 1 MB");
    for (const char *name : {"transcriptNote", "mismatchWarning", "remark", "sameVolumeWarning"})
        EXPECT_EQ(shown(review, name), "") << name;
    EXPECT_EQ(review.findChild<QPushButton *>("openTranscript"), nullptr);
}

TEST_F(BackupReview, NamesWhatDidNotCopyAtFullSize) {
    const std::string end = " not copy at full size. Check those before deleting anything.";
    PendingDeletion pending = plainBackup();
    for (const auto &[copy, warning] :
         {std::pair(98, ""), std::pair(97, "1 item did"), std::pair(0, "2 items did")}) {
        pending.items.push_back({item("b"), FileURL("/b/b"), 100, copy});
        const BackupReviewView &review = open(pending);
        EXPECT_EQ(shown(review, "mismatchWarning"), *warning == '\0' ? "" : warning + end);
        EXPECT_TRUE(testing::find(review, "deleteOriginals").isEnabled());
    }
}

TEST_F(BackupReview, SaysWhatWasLost) {
    PendingDeletion pending = plainBackup();
    pending.remarks = {"There is no readable transcript of “<b>”.",
                       "Extended attributes of “a\nb” were lost."};
    EXPECT_THAT(
        testing::labels(open(pending), "remark"),
        ElementsAre("There is no readable transcript of “<b>”.", "Extended attributes of “a␊b” were lost."));
}

TEST_F(BackupReview, KeepsBothUnlessDeletionIsChosen) {
    const std::function<void(BackupReviewView &)> waysToKeep[] = {
        [](auto &review) { QTest::keyClick(&review, Qt::Key_Escape); },
        [](auto &review) { QTest::keyClick(&review, Qt::Key_Return); },
        [](auto &review) { review.close(); },
        [](auto &review) { testing::click(review, "keepBoth"); },
    };
    for (const auto &keep : waysToKeep) {
        BackupReviewView &review = open(plainBackup());
        keep(review);
        EXPECT_FALSE(review.isVisible());
        EXPECT_EQ(review.result(), QDialog::Rejected);
    }
    BackupReviewView &review = open(plainBackup());
    testing::click(review, "deleteOriginals");
    EXPECT_EQ(review.result(), QDialog::Accepted);
}

} // namespace brimvale
