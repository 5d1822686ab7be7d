#include "Core/Model/CorvelModel.h"
#include "Core/Model/ScanSession.h"
#include "Core/Scan/ScanStats.h"

#include "Support/ReferenceScan.h"
#include "Support/TemporaryFolder.h"

#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

/// Lets the event loop run until the model has nothing under way.
bool waitUntilIdle(const CorvelModel &model) {
    return QTest::qWaitFor([&] { return !model.scan->isScanning; }, 20'000);
}

} // namespace

TEST(CorvelModel, PublishesAFinishedScan) {
    const TemporaryFolder folder;
    folder.makeFile("small/file", 5000);
    folder.makeFile("large/file", 50'000);
    CorvelModel model;
    model.scan.startScan(folder.path());
    EXPECT_TRUE(model.scan->isScanning);
    EXPECT_EQ(model.scan->scanCurrentPath, folder.path());
    ASSERT_NE(model.scan.scanStats(), nullptr);
    ASSERT_TRUE(waitUntilIdle(model));

    ASSERT_NE(model.scan->tree, nullptr);
    const FSNode &tree = *model.scan->tree;
    EXPECT_EQ(tree.path(), folder.path());
    EXPECT_EQ(tree.children().front()->name, "large") << "sorted by size";
    EXPECT_EQ(model.scan->scanFiles, 2);
    EXPECT_EQ(model.scan->scanBytes, tree.size);
    EXPECT_GT(model.scan->scanElapsed, 0);
    EXPECT_TRUE(model.scan->lastScanDate.has_value());
    EXPECT_EQ(model.scan->scanCurrentPath, "");
    EXPECT_EQ(model.scan.scanStats(), nullptr);

    // The next scan of the same root withdraws the tree at once.
    model.scan.startScan();
    EXPECT_EQ(model.scan->tree, nullptr);
    EXPECT_EQ(model.scan->scanFiles, 0);
    ASSERT_TRUE(waitUntilIdle(model));
    EXPECT_EQ(model.scan->tree->path(), folder.path());
}

TEST(CorvelModel, NeverInstallsAScanThatIsSupersededWhileItsResultWaits) {
    /// Runs something once, just before the next result is delivered on the main thread.
    class BeforeDelivery : public QObject {
    public:
        explicit BeforeDelivery(std::function<void()> action) : action_(std::move(action)) {}
        bool eventFilter(QObject *receiver, QEvent *event) override {
            if (receiver == qApp && event->type() == QEvent::MetaCall && action_ != nullptr)
                std::exchange(action_, nullptr)();
            return false;
        }

    private:
        std::function<void()> action_;
    };

    const TemporaryFolder folder;
    folder.makeFile("first/file", 1);
    folder.makeFile("second/file", 1);
    CorvelModel model;
    std::vector<std::string> shown;
    QObject::connect(&model.scan, &ScanSession::treeChanged, [&] {
        if (model.scan->tree != nullptr)
            shown.push_back(model.scan->tree->path());
    });
    bool areVolumesThere = false;
    BeforeDelivery volumes([&] { areVolumesThere = true; });
    qApp->installEventFilter(&volumes);
    ASSERT_TRUE(QTest::qWaitFor([&] { return areVolumesThere; }, 20'000));
    BeforeDelivery filter([&] { model.scan.startScan(folder.path("second")); });
    qApp->installEventFilter(&filter);
    model.scan.startScan(folder.path("first"));
    const std::shared_ptr<ScanStats> first = model.scan.scanStats();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model.scan->tree != nullptr; }, 20'000));
    EXPECT_TRUE(first->cancelled());
    ASSERT_TRUE(waitUntilIdle(model));
    QCoreApplication::processEvents();
    EXPECT_EQ(shown, std::vector{folder.path("second")});
}

TEST(CorvelModel, CancelsEveryRunningScanWhenItIsDestroyed) {
    const TemporaryFolder folder;
    folder.makeFile("first/file", 1);
    for (int i = 0; i < 3'000; ++i)
        folder.makeFile("second/" + std::to_string(i % 100) + "/" + std::to_string(i), 1);
    // The end of the superseded scan takes the running one's statistics from the model. Now and then the
    // running one ends first, and then it is too late to cancel anything.
    bool isStillRunning = false;
    for (int attempt = 0; attempt < 50 && !isStillRunning; ++attempt) {
        std::optional<CorvelModel> model(std::in_place);
        model->scan.startScan(folder.path("first"));
        model->scan.startScan(folder.path("second"));
        const std::shared_ptr<ScanStats> running = model->scan.scanStats();
        ASSERT_TRUE(QTest::qWaitFor([&] { return model->scan.scanStats() == nullptr; }, 20'000));
        isStillRunning = model->scan->tree == nullptr;
        model.reset();
        EXPECT_EQ(running->cancelled(), isStillRunning);
    }
    EXPECT_TRUE(isStillRunning);
}

TEST(CorvelModel, EndsWithoutATreeWhenStopped) {
    const TemporaryFolder folder;
    folder.makeFile("file", 1);
    CorvelModel model;
    model.scan.startScan(folder.path());
    model.scan.scanStats()->cancel();
    ASSERT_TRUE(waitUntilIdle(model));
    EXPECT_EQ(model.scan->tree, nullptr);
    EXPECT_FALSE(model.scan->lastScanDate.has_value());

    // A page that wants to stop a session without a scan ends it itself.
    model.scan.finishScan(nullptr);
    EXPECT_FALSE(model.scan->isScanning);
}

TEST(CorvelModel, MayGoWhileItScans) {
    const TemporaryFolder folder;
    for (int i = 0; i < 300; ++i)
        folder.makeFile(std::to_string(i) + "/file", 1);
    for (int round = 0; round < 20; ++round) {
        CorvelModel model;
        model.scan.startScan(folder.path());
    }
    QCoreApplication::processEvents();
}

} // namespace brimvale
