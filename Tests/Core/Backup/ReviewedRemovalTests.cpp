#include "Core/Backup/ReviewedRemoval.h"

#include "Core/Backup/Archiver.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

/// A backup of three items that is being reviewed.
class Reviewed : public ::testing::Test {
protected:
    Reviewed() {
        folder.writeFile("from/chat.db", "messages");
        folder.writeFile("from/Attachments/a/photo", "photo");
        folder.makeLink("from/link", "..");
        std::vector<FileURL> sources;
        for (const char *name : {"Attachments", "chat.db", "link"}) {
            sources.emplace_back(folder.path(std::string("from/") + name));
            pending.entries.push_back({.url = sources.back(), .size = 1000});
        }
        const ArchiveResult result = Archiver::archive(sources, "x", FileURL(folder.path("to")));
        EXPECT_TRUE(result.failed.empty());
        pending.destination = result.destination;
        pending.verified = result.verified;
    }

    ReviewedRemoval remove() {
        RemovalProgress progress;
        return removeReviewed(pending, progress, actions);
    }

    TemporaryFolder folder;
    testing::RecordingActions actions;
    PendingDeletion pending{.destination = FileURL("/")};
};

} // namespace

TEST_F(Reviewed, GoesWhereNothingChanged) {
    fs::remove(folder.path("from/Attachments/a/photo")); // what is gone is nobody's loss
    const ReviewedRemoval removal = remove();
    EXPECT_EQ(removal.keptCount, 0U);
    EXPECT_EQ(removal.result.bytesFreed, 3000);
    EXPECT_THAT(actions.calls,
                ElementsAre("trash " + folder.path("from/Attachments"),
                            "trash " + folder.path("from/chat.db"), "trash " + folder.path("from/link")));
    EXPECT_EQ(statusOf(removal, pending), "Backed up to " + std::string(pending.destination.fileName()) +
                                              ", then removed the originals.");
}

TEST_F(Reviewed, IsKeptWhereAnOriginalChanged) {
    folder.writeFile("from/Attachments/a/later", "came after the backup");
    const auto written = fs::last_write_time(folder.path("from/chat.db"));
    folder.writeFile("from/chat.db", "MESSAGES"); // as long as before
    fs::last_write_time(folder.path("from/chat.db"), written + std::chrono::milliseconds(1));
    const ReviewedRemoval removal = remove();
    EXPECT_EQ(removal.keptCount, 2U);
    EXPECT_THAT(removal.result.failed,
                ElementsAre(RemovalResult::Failure{pending.entries[0].url,
                                                   "Kept. “Attachments/a/later” was added after the backup."},
                            RemovalResult::Failure{pending.entries[1].url,
                                                   "Kept. “chat.db” changed after the backup."}));
    EXPECT_THAT(actions.calls, ElementsAre("trash " + folder.path("from/link")));
    EXPECT_EQ(statusOf(removal, pending),
              "Backed up to " + std::string(pending.destination.fileName()) + ". 2 originals were kept.");
}

TEST_F(Reviewed, IsKeptWhereSomethingElseHasItsName) {
    const std::string database = folder.path("from/chat.db");
    const auto written = fs::last_write_time(database);
    fs::rename(database, folder.path("from/moved"));
    folder.writeFile("from/chat.db", "messages");
    fs::last_write_time(database, written);
    fs::rename(folder.path("from/Attachments"), folder.path("from/other"));
    folder.makeLink("from/Attachments", "other");
    EXPECT_EQ(remove().keptCount, 2U);
    EXPECT_THAT(actions.calls, ElementsAre("trash " + folder.path("from/link")));
}

TEST_F(Reviewed, IsKeptWhereTheBackupIsNotWhatItWas) {
    const std::string backup = pending.destination.path();
    const std::function<void()> changes[] = {
        [&] { fs::rename(backup, backup + " moved"); },
        [&] { fs::rename(backup + " moved", backup), fs::remove(backup + "/Attachments/a/photo"); },
        [&] { pending.verified = nullptr; },
    };
    for (const auto &change : changes) {
        change();
        const ReviewedRemoval removal = remove();
        EXPECT_EQ(removal.keptCount, 3U);
        EXPECT_EQ(removal.result.failed.size(), 3U);
        EXPECT_THAT(actions.calls, IsEmpty());
    }
}

TEST_F(Reviewed, EndsWhenItIsStopped) {
    RemovalProgress progress;
    progress.cancelled.set();
    const ReviewedRemoval removal = removeReviewed(pending, progress, actions);
    EXPECT_EQ(removal.result.failed.size(), 3U);
    EXPECT_EQ(removal.keptCount, 0U);
    EXPECT_THAT(actions.calls, IsEmpty());
}

} // namespace brimvale
