#include "Core/Model/ScanSession.h"

#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Scan/DiskScanner.h"
#include "Support/TemporaryFolder.h"

#include <QTest>
#include <atomic>
#include <chrono>
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

} // namespace brimvale
