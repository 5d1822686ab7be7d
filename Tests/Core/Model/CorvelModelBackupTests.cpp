#include "Core/Model/Backups.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/TemporaryFolder.h"

#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using testing::RecordingActions;
using ::testing::StartsWith;
using testing::TemporaryFolder;
using testing::waitUntilRemoved;

/// A model, two items, and a folder for backups that is not there yet.
class CorvelModelBackup : public ::testing::Test {
protected:
    CorvelModelBackup() {
        folder.makeFile("items/one", 10'000);
        folder.makeFile("items/two/file", 20'000);
    }

    [[nodiscard]] CleanupEntry entry(const char *name) const {
        return {.url = FileURL(folder.path(std::string("items/") + name)), .size = 10'000};
    }

    /// Each into a folder of its own, because within a minute all have the same name.
    void begin(const std::vector<CleanupEntry> &entries, RemovalMode mode = RemovalMode::trash) {
        const FileURL root(folder.path("backups " + std::to_string(++count)));
        model->backups.archiveThenReview("Items", root, entries, mode);
    }

    [[nodiscard]] bool waitUntilArchived() const {
        return QTest::qWaitFor([this] { return !model->backups->isArchiving; }, 20'000);
    }

    TemporaryFolder folder;
    RecordingActions actions;
    int count = 0;
    std::optional<CorvelModel> model{std::in_place, actions};
};

} // namespace

TEST_F(CorvelModelBackup, IsReviewedBeforeAnythingGoes) {
    const std::vector<CleanupEntry> entries{entry("one"), entry("two")};
    begin(entries, RemovalMode::deleteNow);
    EXPECT_EQ(model->backups->archiveStatus, "Copying 2 items…");
    begin({entry("one")}); // one at a time
    ASSERT_TRUE(waitUntilArchived());
    ASSERT_TRUE(model->backups->pendingDeletion);
    const PendingDeletion pending = *model->backups->pendingDeletion;
    EXPECT_EQ(pending.entries, entries);
    EXPECT_EQ(pending.items.size(), 2U);
    EXPECT_EQ(pending.mode, RemovalMode::deleteNow);
    EXPECT_TRUE(pending.sameVolumeAsSource);
    EXPECT_EQ(model->backups->lastArchiveDestination, pending.destination);
    EXPECT_EQ(model->backups->archiveStatus, std::nullopt);
    EXPECT_EQ(model->backups->archiveError, std::nullopt);
    EXPECT_THAT(actions.calls, IsEmpty());

    model->backups.cancelPendingDeletion();
    const std::string name(pending.destination.fileName());
    EXPECT_EQ(model->backups->archiveStatus, "Backup kept at " + name + ". Nothing was deleted.");
    EXPECT_TRUE(fs::exists(pending.destination.appending("two/file").path()));
    model->backups.confirmPendingDeletion();
    EXPECT_FALSE(model->removals.isRemoving()) << "there is nothing to confirm any more";

    begin({entry("two")}, RemovalMode::deleteNow);
    EXPECT_EQ(model->backups->archiveStatus, "Copying 1 item…");
    ASSERT_TRUE(waitUntilArchived());
    const std::string second(model->backups->pendingDeletion->destination.fileName());
    model->backups.confirmPendingDeletion();
    EXPECT_EQ(model->backups->pendingDeletion, std::nullopt);
    ASSERT_TRUE(waitUntilRemoved(*model));
    EXPECT_EQ(model->backups->archiveStatus, "Backed up to " + second + ", then removed the originals.");
    EXPECT_THAT(actions.calls, ElementsAre("delete " + folder.path("items/two")));
}

TEST_F(CorvelModelBackup, IsNotReviewedWhereAnythingFailed) {
    folder.writeFile("backups-file", "");
    struct Case {
        std::string root;
        std::vector<CleanupEntry> entries;
        std::string error; ///< its beginning
        std::size_t failures;
    };
    for (const Case &one : {
             Case{"backups", {entry("one"), entry("missing")}, "Nothing was deleted. ", 1},
             Case{"backups-file",
                  {entry("one"), entry("two")},
                  "Nothing was deleted. Could not create " + folder.path("backups-file/Items "),
                  2},
             Case{"items/two/inside",
                  {entry("two")},
                  "Nothing was deleted. An item can’t be backed up into itself.",
                  1},
             Case{"backups", {}, "Nothing was deleted. The copy could not be verified.", 0},
         }) {
        model->backups.archiveThenReview("Items", FileURL(folder.path(one.root)), one.entries,
                                         RemovalMode::trash);
        EXPECT_EQ(model->backups->archiveError, std::nullopt) << "what is told is about this backup";
        ASSERT_TRUE(waitUntilArchived());
        EXPECT_EQ(model->backups->pendingDeletion, std::nullopt);
        EXPECT_EQ(model->backups->lastArchiveDestination, std::nullopt);
        EXPECT_EQ(model->backups->archiveStatus, std::nullopt);
        ASSERT_TRUE(model->backups->archiveError);
        EXPECT_THAT(*model->backups->archiveError, StartsWith(one.error));
        ASSERT_TRUE(model->removals->lastResult);
        const RemovalResult &result = *model->removals->lastResult;
        EXPECT_THAT(result.succeeded, IsEmpty());
        EXPECT_TRUE(result.isOfBackup);
        ASSERT_EQ(result.failed.size(), one.failures);
        if (one.failures > 0) {
            EXPECT_EQ(*model->backups->archiveError, "Nothing was deleted. " + result.failed.front().reason);
        }
    }
    EXPECT_THAT(actions.calls, IsEmpty());
}

TEST_F(CorvelModelBackup, IsNotReviewedAfterACancellation) {
    model->backups.cancelArchive(); // there is none
    begin({entry("one"), entry("two")});
    model->backups.cancelArchive();
    ASSERT_TRUE(waitUntilArchived());
    EXPECT_EQ(model->backups->pendingDeletion, std::nullopt);
    EXPECT_EQ(*model->backups->archiveError, "Nothing was deleted. The backup was cancelled.");
    EXPECT_EQ(model->removals->lastResult, std::nullopt) << "the user knows";

    // Nor when everything is copied already.
    QObject::connect(&model->backups, &Backups::changed, [this] {
        if (model->backups->archiveDetail == "Writing the manifest")
            model->backups.cancelArchive();
    });
    begin({entry("one"), entry("two")});
    ASSERT_TRUE(waitUntilArchived());
    EXPECT_EQ(model->backups->pendingDeletion, std::nullopt);
    EXPECT_EQ(*model->backups->archiveError, "Nothing was deleted. The backup was cancelled.");
    EXPECT_TRUE(fs::exists(folder.path("items/one")) && fs::exists(folder.path("items/two/file")));
}

TEST_F(CorvelModelBackup, KeepsWhatHasChangedSince) {
    begin({entry("one"), entry("two")});
    ASSERT_TRUE(waitUntilArchived());
    ASSERT_TRUE(model->backups->pendingDeletion);
    const std::string name(model->backups->pendingDeletion->destination.fileName());
    folder.writeFile("items/two/later", "in no backup");
    model->backups.confirmPendingDeletion();
    ASSERT_TRUE(waitUntilRemoved(*model));
    EXPECT_THAT(actions.calls, ElementsAre("trash " + folder.path("items/one")));
    EXPECT_EQ(model->backups->archiveStatus, "Backed up to " + name + ". 1 original was kept.");
    ASSERT_EQ(model->removals->lastResult->failed.size(), 1U);
    EXPECT_EQ(model->removals->lastResult->failed[0].reason, "Kept. “two/later” was added after the backup.");
}

TEST_F(CorvelModelBackup, WaitsWithTheOriginalsForAnotherRemoval) {
    begin({entry("two")});
    ASSERT_TRUE(waitUntilArchived());
    ASSERT_TRUE(model->backups->pendingDeletion);
    testing::HeldRemoval held(actions);
    model->removals.removeCleanupEntries({entry("one")}, RemovalMode::trash);
    held.waitUntilCalled();
    model->backups.confirmPendingDeletion();
    EXPECT_EQ(model->backups->pendingDeletion, std::nullopt);
    EXPECT_EQ(model->backups->archiveStatus, std::nullopt) << "they are not removed yet";
    held.letGoOn(2);
    ASSERT_TRUE(waitUntilRemoved(*model));
    EXPECT_THAT(model->backups->archiveStatus.value_or(""), EndsWith(", then removed the originals."));
    EXPECT_THAT(actions.calls,
                ElementsAre("trash " + folder.path("items/one"), "trash " + folder.path("items/two")));
}

TEST_F(CorvelModelBackup, EndsWithItsModel) {
    for (int round = 0; round < 3; ++round) {
        begin({entry("one"), entry("two")});
        model.emplace(actions);
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(model->backups->isArchiving);
    EXPECT_TRUE(fs::exists(folder.path("items/one")) && fs::exists(folder.path("items/two/file")));
}

} // namespace brimvale
