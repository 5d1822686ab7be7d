#include "Core/Model/ScanSession.h"

#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Scan/DiskScanner.h"
#include "Support/HeldScan.h"
#include "Support/SampleTree.h"
#include "Support/TemporaryFolder.h"

#include <QTest>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <optional>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

/// Scans like the scanner, but waits in the folder "silent" of a scan as a thread waits in the system for a
/// server that does not answer, deaf to its cancellation.
struct SilentServer {
    const std::string path;
    std::atomic<int> asked = 0;
    std::atomic<int> left = 0;
    std::promise<void> answer = {};
    std::shared_future<void> answered = answer.get_future().share();

    ScanSession::Scan scan() {
        return [this](const std::string &root, const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
            if (root != path)
                return DiskScanner::scan(root, options, stats, pool);
            const std::shared_future<void> wait = answered;
            ++asked;
            wait.wait();
            auto found = DiskScanner::scan(root, options, stats, pool);
            ++left;
            return found;
        };
    }
};

bool eventually(const std::function<bool()> &condition) {
    return QTest::qWaitFor(condition, 20'000);
}

} // namespace

TEST(ScanSession, StopsAndGoesWhileAScanWaitsInTheSystem) {
    const TemporaryFolder folder;
    folder.makeFile("silent/file", 1);
    folder.makeFile("lively/file", 1);
    SilentServer server{folder.path("silent")};
    {
        Workers workers;
        Volumes volumes(workers, RemovalActions::platform(), VolumeInfo::current);
        ScanSession session(workers, volumes, server.scan());
        session.startScan(server.path);
        ASSERT_TRUE(eventually([&] { return server.asked == 1; }));
        session.scanStats()->cancel();
        ASSERT_TRUE(eventually([&] { return !session->isScanning; }));
        EXPECT_EQ(session->tree, nullptr);

        session.startScan(folder.path("lively"));
        ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));

        // The answer to a session that has ended changes nothing, not even a running scan.
        session.startScan(folder.path("silent"));
        ASSERT_TRUE(eventually([&] { return server.asked == 2; }));
        session.scanStats()->cancel();
        ASSERT_TRUE(eventually([&] { return !session->isScanning; }));
        session.startScan(folder.path("silent"));
        ASSERT_TRUE(eventually([&] { return server.asked == 3; }));
    }
    EXPECT_EQ(server.left, 0) << "nothing has waited for the scans";
    server.answer.set_value();
    ASSERT_TRUE(eventually([&] { return server.left == 3; }));
    QCoreApplication::processEvents();
}

TEST(ScanSession, LateResultsEndNoOtherScan) {
    const TemporaryFolder folder;
    folder.makeFile("silent/file", 1);
    SilentServer server{folder.path("silent")};
    Workers workers;
    Volumes volumes(workers, RemovalActions::platform(), VolumeInfo::current);
    std::promise<void> second;
    const auto end = second.get_future().share();
    ScanSession session(workers, volumes,
                        [&, scan = server.scan()](const std::string &root, const ScanOptions &options,
                                                  ScanStats &stats, WalkPool &pool) {
                            if (root != server.path)
                                end.wait();
                            return scan(root, options, stats, pool);
                        });
    session.startScan(server.path);
    session.scanStats()->cancel();
    ASSERT_TRUE(eventually([&] { return !session->isScanning; }));
    session.startScan(folder.path());
    server.answer.set_value();
    ASSERT_TRUE(eventually([&] { return server.left == 1; }));
    QTest::qWait(50); // for its result
    EXPECT_TRUE(session->isScanning);
    second.set_value();
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_EQ(session->tree->path(), folder.path());
}

TEST(ScanSession, ShowsAGrowingPictureAndKeepsItWhenStopped) {
    const TemporaryFolder folder;
    folder.makeFile("big/file", 90'000);
    folder.makeFile("small/file", 5'000);
    testing::HeldScan held;
    Workers workers;
    Volumes volumes(workers, RemovalActions::platform(), VolumeInfo::current);
    ScanSession session(workers, volumes, held.scan());
    const ScanGrowth &growth = session.growth();
    const auto sizeOf = [&](std::string_view name) {
        for (const GrowingRow &row : growth.rows())
            if (row.name == name)
                return row.size;
        return std::int64_t{-1};
    };

    held.hold(true);
    session.startScan(folder.path());
    EXPECT_TRUE(growth.rows().empty());
    ASSERT_TRUE(eventually([&] { return growth.rows().size() == 2; }));
    EXPECT_EQ(session->tree, nullptr) << "it is not the tree";
    EXPECT_FALSE(growth.earlier());
    const std::int64_t big = sizeOf("big");
    held.hold(false);
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_EQ(testing::descendant(*session->tree, {"big"})->size, big);
    EXPECT_TRUE(growth.rows().empty()) << "the tree takes its place";

    // Stopped twice: the figures of the tree before both stay beside what was counted.
    const std::int64_t whole = session->tree->size;
    std::filesystem::remove_all(folder.path("big"));
    for (int time = 0; time < 2; ++time) {
        held.hold(true);
        session.startScan();
        ASSERT_TRUE(eventually([&] { return growth.rows().size() == 1; }));
        EXPECT_FALSE(growth.isStopped());
        session.scanStats()->cancel();
        ASSERT_TRUE(eventually([&] { return !session->isScanning; }));
        EXPECT_EQ(session->tree, nullptr);
        EXPECT_TRUE(growth.isStopped());
        EXPECT_EQ(growth.rows().size(), 1U);
        ASSERT_TRUE(growth.earlier());
        EXPECT_EQ(growth.earlier()->bytes, whole);
        EXPECT_EQ(growth.earlier()->sizes.at("big"), big);
        held.hold(false);
    }
    session.startScan(folder.path("small"));
    EXPECT_FALSE(growth.earlier()) << "another folder";
    EXPECT_FALSE(growth.isStopped());
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
}

TEST(ScanSession, ScansAFolderAgainWithWhatCouldNotBeRead) {
    const TemporaryFolder folder;
    folder.makeFile("big/inner/file", 90'000);
    folder.makeFile("small/file", 5'000);
    testing::HeldScan held;
    Workers workers;
    Volumes volumes(workers, RemovalActions::platform(), VolumeInfo::current);
    const auto change = [&](FSNode &root, ScanStats &stats) {
        for (const auto &[outer, inner] : {std::pair("big", "inner"), std::pair("small", "file")}) {
            stats.addUnreadable(folder.path(std::string(outer) + "/" + inner), EACCES);
            testing::descendant(root, {outer})->holdsUnreadable = true;
        }
        testing::descendant(root, {"big"})->unreadable = true; // as the top of a walk
        root.holdsUnreadable = true;
    };
    ScanSession session(workers, volumes, held.scan(change));
    session.startScan(folder.path());
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_EQ(session->scanUnreadable, 2);
    EXPECT_EQ(session.unreadableItems().size(), 2U);

    FSNode &root = *session->tree;
    FSNode &big = *testing::descendant(root, {"big"});
    const FileURL inner(folder.path("big/inner"));
    session.rescan(inner);
    session.stopRescan();
    EXPECT_TRUE(session->rescannedPath.empty());
    folder.makeFile("big/inner/new", 70'000);
    session.rescan(FileURL(folder.path("missing")));
    ASSERT_TRUE(eventually([&] { return session->rescannedPath.empty(); }));
    EXPECT_EQ(big.fileCount, 1) << "the stopped one changes nothing";
    EXPECT_TRUE(big.isAtLeast());
    session.rescan(inner);
    ASSERT_TRUE(eventually([&] { return session->rescannedPath.empty(); }));
    EXPECT_EQ(big.fileCount, 2);
    EXPECT_FALSE(big.isAtLeast()) << "all of it could be read now";
    std::filesystem::remove(folder.path("big/inner/new"));

    folder.makeFile("big/more", 70'000);
    session.rescan(FileURL(big.path()));
    session.rescan(FileURL(folder.path("missing")));
    session.rescan(FileURL(big.path()));
    EXPECT_EQ(session->rescannedPath, big.path());
    ASSERT_TRUE(eventually([&] { return session->rescannedPath.empty(); }));
    EXPECT_EQ(big.fileCount, 2);
    EXPECT_EQ(root.fileCount, 3);
    EXPECT_EQ(session->scanFiles, 3);
    EXPECT_FALSE(big.isAtLeast());
    EXPECT_TRUE(root.isAtLeast()) << "for what is elsewhere";
    EXPECT_EQ(session->scanUnreadable, 1);
    ASSERT_EQ(session.unreadableItems().size(), 1U);
    EXPECT_EQ(session.unreadableItems().front().path, folder.path("small/file"));

    session.drop(GonePaths({FileURL(folder.path("small"))}));
    EXPECT_TRUE(eventually([&] { return !session.isDropping(); }));
    EXPECT_FALSE(root.isAtLeast());
    EXPECT_EQ(session->scanUnreadable, 0);
}

} // namespace brimvale
