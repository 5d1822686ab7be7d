#include "Core/Backup/ReviewedRemoval.h"

#include "Core/Backup/Archiver.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <optional>
#include <thread>

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

TEST_F(Reviewed, IsKeptWhereOnlyTheContentOfTheBackupChanged) {
    const std::string copy = pending.destination.appending("Attachments/a/photo").path();
    const auto written = fs::last_write_time(copy);
    const auto bytes = static_cast<std::int64_t>(std::string("photo"
                                                             "messages")
                                                     .size());
    EXPECT_EQ(bytesOf(*pending.verified), bytes);
    std::ofstream(copy) << "PHOTO";
    fs::last_write_time(copy, written);
    RemovalProgress progress;
    const ReviewedRemoval removal = removeReviewed(pending, progress, actions);
    EXPECT_EQ(removal.keptCount, 3U);
    ASSERT_EQ(removal.result.failed.size(), 3U);
    EXPECT_EQ(removal.result.failed[0].reason, "Kept. “" + std::string(pending.destination.fileName()) +
                                                   "/Attachments/a/photo” has changed in the backup.");
    EXPECT_THAT(actions.calls, IsEmpty());
    EXPECT_EQ(progress.bytesToVerify, bytes);
    EXPECT_EQ(progress.bytesVerified, bytes);
}

TEST_F(Reviewed, ComparesContentsWhereTheDatesOfAnOriginalTellNothing) {
    const std::string database = folder.path("from/chat.db"), photo = folder.path("from/Attachments/a/photo");
    const auto written = fs::last_write_time(database);
    folder.writeFile("from/chat.db", "MESSAGES");
    fs::last_write_time(database, written);  // as programs do that keep dates
    fs::permissions(photo, fs::perms(0640)); // which changes no content
    const ReviewedRemoval removal = remove();
    EXPECT_THAT(removal.result.failed,
                ElementsAre(RemovalResult::Failure{pending.entries[1].url,
                                                   "Kept. “chat.db” changed after the backup."}));
    EXPECT_THAT(actions.calls,
                ElementsAre("trash " + folder.path("from/Attachments"), "trash " + folder.path("from/link")));
}

TEST_F(Reviewed, AllowsOtherNumbersWhereTheFileSystemDoesNotKeepThem) {
    // As after the stick with the backup, or with the originals, has forgotten them.
    const auto replaceByItsLike = [&](const std::string &path) {
        fs::copy_file(path, path + " 2");
        fs::last_write_time(path + " 2", fs::last_write_time(path));
        fs::rename(path + " 2", path);
    };
    const auto replaceBoth = [&] {
        replaceByItsLike(pending.destination.appending("chat.db").path());
        replaceByItsLike(folder.path("from/chat.db"));
    };
    replaceBoth();
    EXPECT_EQ(remove().keptCount, 3U) << "an ordinary disk keeps them";
    EXPECT_THAT(actions.calls, IsEmpty());

    VerifiedBackup state = *pending.verified;
    state.keepsFileNumbers = false;
    for (VerifiedBackup::Original &original : state.originals)
        original.keepsFileNumbers = false;
    pending.verified = std::make_shared<const VerifiedBackup>(state);
    EXPECT_EQ(remove().keptCount, 0U);
    EXPECT_EQ(actions.calls.size(), 3U);

    actions.calls.clear();
    folder.writeFile("from/chat.db", "MESSAGES and more");
    EXPECT_EQ(remove().keptCount, 1U);
    EXPECT_EQ(actions.calls.size(), 2U);
}

TEST_F(Reviewed, IsLookedAtAgainBeforeEveryOriginal) {
    // The backup goes while the first original does.
    actions.onItem = [&](RemovalProgress *) { fs::remove_all(pending.destination.path()); };
    const ReviewedRemoval removal = remove();
    EXPECT_EQ(removal.keptCount, 2U);
    EXPECT_THAT(actions.calls, ElementsAre("trash " + folder.path("from/Attachments")));
}

TEST_F(Reviewed, EndsWhenItIsStopped) {
    RemovalProgress progress;
    progress.cancelled.set();
    const ReviewedRemoval removal = removeReviewed(pending, progress, actions);
    EXPECT_EQ(removal.result.failed.size(), 3U);
    EXPECT_EQ(removal.keptCount, 0U);
    EXPECT_THAT(actions.calls, IsEmpty());
    EXPECT_EQ(statusOf(removal, pending), "Backed up to " + std::string(pending.destination.fileName()) +
                                              ". 3 originals were not removed.");
}

TEST_F(Reviewed, StopsWhileTheBackupIsRead) {
    using Clock = std::chrono::steady_clock;
    // Reading 60 GB of nothing takes long.
    const std::string large = pending.destination.appending("large").path();
    std::ofstream(large).flush();
    fs::resize_file(large, 60'000'000'000);
    VerifiedBackup state = *pending.verified;
    state.entries.push_back({.path = "large", .size = 60'000'000'000});
    pending.verified = std::make_shared<const VerifiedBackup>(std::move(state));
    RemovalProgress progress;
    std::optional<Clock::time_point> stopped;
    std::thread stopper([&] {
        while (progress.bytesVerified < 20'000'000)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        stopped = Clock::now();
        progress.cancelled.set();
    });
    const ReviewedRemoval removal = removeReviewed(pending, progress, actions);
    const Clock::time_point end = Clock::now();
    stopper.join();
    EXPECT_LT(end - stopped.value_or(end), std::chrono::milliseconds(500));
    EXPECT_EQ(removal.result.failed.size(), 3U);
    EXPECT_EQ(removal.keptCount, 0U);
    EXPECT_THAT(actions.calls, IsEmpty());
}

} // namespace brimvale
