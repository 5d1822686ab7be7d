#include "Core/CorvelModel.h"

#include "Core/Remover.h"
#include "Platform/Host.h"
#include "Support/RecordingActions.h"
#include "Support/SampleApps.h"
#include "Support/TemporaryFolder.h"

#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <semaphore>

namespace brimvale {

namespace {

using testing::RecordingActions;
using testing::TemporaryFolder;
using Urls = std::vector<FileURL>;

bool waitUntilScanned(const CorvelModel &model) {
    return QTest::qWaitFor([&] { return !*model.isScanning && *model.tree != nullptr; }, 20'000);
}

bool waitUntilRemoved(const CorvelModel &model) {
    return QTest::qWaitFor([&] { return !model.isRemoving(); }, 20'000);
}

FSNode *childNamed(const FSNode &folder, std::string_view name) {
    for (const std::unique_ptr<FSNode> &child : folder.children())
        if (child->name == name)
            return child.get();
    return nullptr;
}

std::vector<std::string> namesIn(const FSNode &folder) {
    std::vector<std::string> names;
    for (const std::unique_ptr<FSNode> &child : folder.children())
        names.push_back(child->name);
    return names;
}

/// Actions that wait, once they are called, until the test lets them go on.
class HeldActions {
public:
    HeldActions() {
        actions.onItem = [this](RemovalProgress *) {
            begun_.release();
            goOn_.acquire();
        };
    }

    void waitUntilCalled() { begun_.acquire(); }
    void letGoOn() { goOn_.release(); }

    RecordingActions actions;

private:
    std::binary_semaphore begun_{0};
    std::binary_semaphore goOn_{0};
};

} // namespace

TEST(CorvelModelRemoval, TakesWhatIsGoneOutOfTheTree) {
    const TemporaryFolder folder;
    folder.makeFile("a/b/large", 3'000'000);
    folder.makeFile("a/b/c/inner", 2'000'000);
    folder.makeFile("a/b/small", 5'000);
    folder.makeFile("a/other", 1'500'000);
    folder.makeFile("a/stays", 1'200'000);
    RecordingActions actions;
    CorvelModel model(nullptr, actions);
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    FSNode &root = **model.tree;
    FSNode &a = *childNamed(root, "a");
    FSNode &b = *childNamed(a, "b");
    FSNode *stays = childNamed(a, "stays");
    FSNode *other = childNamed(a, "other");
    FSNode *aggregate = childNamed(b, "1 smaller item");
    FSNode *c = childNamed(b, "c");
    ASSERT_TRUE(aggregate != nullptr && c != nullptr && other != nullptr && stays != nullptr);
    const std::int64_t size = root.size;
    const std::int64_t logicalSize = root.logicalSize;
    const std::int64_t removedSize = b.size + other->size;
    const std::string bPath = b.path(), staysPath = stays->path(), otherPath = other->path();
    actions.errors.emplace(staysPath, FileError{FileError::Domain::cocoa, 513, "no", nullptr});

    std::vector<std::string> announced;
    QObject::connect(&model, &CorvelModel::nodeAboutToBeDetached, [&](FSNode *node) {
        announced.push_back("before " + node->name);
        EXPECT_EQ(childNamed(*node->parent(), node->name), node);
    });
    QObject::connect(&model, &CorvelModel::nodeDetached, [&](FSNode *node) {
        announced.push_back("after " + node->name);
        EXPECT_EQ(node->parent(), nullptr);
        EXPECT_EQ(node->path(), folder.path("a/" + node->name));
        EXPECT_EQ(childNamed(a, node->name), nullptr);
    });
    QSignalSpy results(&model, &CorvelModel::lastResultChanged);
    QSignalSpy trees(&model, &CorvelModel::treeChanged);

    // An aggregate stands for many files, `c` goes with `b`, and nothing is removed twice.
    model.removeNodes({aggregate, c, &b, other, stays, other}, RemovalMode::deleteNow);
    EXPECT_TRUE(model.isRemoving());
    EXPECT_TRUE(announced.empty());
    ASSERT_TRUE(waitUntilRemoved(model));

    EXPECT_EQ(actions.calls,
              (std::vector<std::string>{"delete " + bPath, "delete " + otherPath, "delete " + staysPath}));
    EXPECT_EQ(results.count(), 1);
    const Urls removed{FileURL(bPath), FileURL(otherPath)};
    EXPECT_EQ(**model.lastResult, (RemovalResult{removed, {}, removedSize, {FileURL(staysPath)}}));
    EXPECT_EQ(*model.totalFreedThisSession, removedSize);
    std::sort(announced.begin(), announced.end());
    EXPECT_EQ(announced, (std::vector<std::string>{"after b", "after other", "before b", "before other"}));

    EXPECT_EQ(trees.count(), 0);
    EXPECT_EQ(namesIn(a), std::vector<std::string>{"stays"});
    for (const FSNode *around : {&a, &root}) {
        EXPECT_EQ(around->size, size - removedSize);
        EXPECT_EQ(around->fileCount, 1);
    }
    EXPECT_EQ(root.logicalSize, logicalSize);
    EXPECT_EQ(root.dirCount, 3) << "only sizes and files are subtracted";
}

TEST(CorvelModelRemoval, KeepsTheOrderOfWhatIsLeft) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 1);
    for (int i = 0; i < 3'000; ++i) // more than are taken out of a tree at once
        std::filesystem::create_hard_link(file, folder.path(std::to_string(i)));
    RecordingActions actions;
    CorvelModel model(nullptr, actions);
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    const FSNode &root = **model.tree;
    std::vector<std::string> left;
    std::vector<FSNode *> removed;
    for (const std::unique_ptr<FSNode> &child : root.children()) {
        if (removed.size() <= 2 * left.size())
            removed.push_back(child.get());
        else
            left.push_back(child->name);
    }
    model.removeNodes(removed, RemovalMode::trash);
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(namesIn(root), left);
    EXPECT_EQ(actions.calls.size(), removed.size());
    EXPECT_TRUE(std::all_of(actions.calls.begin(), actions.calls.end(),
                            [](const std::string &call) { return call.starts_with("trash "); }));
}

TEST(CorvelModelRemoval, LeavesATreeAloneThatCameMeanwhile) {
    const TemporaryFolder folder;
    folder.makeFile("item/file", 2'000'000);
    HeldActions held;
    CorvelModel model(nullptr, held.actions);
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    QSignalSpy detached(&model, &CorvelModel::nodeAboutToBeDetached);
    model.removeNodes({childNamed(**model.tree, "item")}, RemovalMode::deleteNow);
    held.waitUntilCalled();
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    held.letGoOn();
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ((*model.lastResult)->succeeded, Urls{FileURL(folder.path("item"))});
    EXPECT_EQ(detached.count(), 0);
    EXPECT_EQ(namesIn(**model.tree), std::vector<std::string>{"item"});
    EXPECT_EQ((*model.tree)->fileCount, 1);
}

TEST(CorvelModelRemoval, RunsOneRemovalAtATimeAndStopsIt) {
    const TemporaryFolder folder;
    folder.makeFile("a", 1);
    folder.makeFile("b", 1);
    HeldActions held;
    CorvelModel model(nullptr, held.actions);
    model.stopRemoval(); // there is none
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    FSNode *a = childNamed(**model.tree, "a");
    FSNode *b = childNamed(**model.tree, "b");
    model.removeNodes({a, b}, RemovalMode::deleteNow);
    EXPECT_EQ(*model.removalActivity, RemovalActivity::removing);
    held.waitUntilCalled();
    model.removeNodes({b}, RemovalMode::deleteNow);
    model.escalate({FileURL(folder.path("b"))});
    model.stopRemoval();
    EXPECT_EQ(*model.removalActivity, RemovalActivity::stopping);
    held.letGoOn();
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(held.actions.calls, std::vector<std::string>{"delete " + folder.path("a")});
    EXPECT_EQ((*model.lastResult)->succeeded.size(), 1U);
    EXPECT_EQ((*model.lastResult)->failed.size(), 1U);
    EXPECT_EQ(namesIn(**model.tree), std::vector<std::string>{"b"});
}

TEST(CorvelModelRemoval, ShowsHowFarItIs) {
    const TemporaryFolder folder;
    folder.makeFile("a", 1);
    HeldActions held;
    CorvelModel model(nullptr, held.actions);
    model.startScan(folder.path());
    ASSERT_TRUE(waitUntilScanned(model));
    const auto wait = held.actions.onItem;
    held.actions.onItem = [&](RemovalProgress *progress) {
        progress->entriesRemoved = 41;
        wait(progress);
        progress->entriesRemoved = 42;
    };
    model.removeNodes({childNamed(**model.tree, "a")}, RemovalMode::deleteNow);
    held.waitUntilCalled();
    EXPECT_TRUE(QTest::qWaitFor([&] { return *model.removedEntries == 41; }, 20'000));
    held.letGoOn();
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(*model.removedEntries, 42);
}

TEST(CorvelModelRemoval, AnnouncesEveryResult) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("a", 1);
    RecordingActions actions;
    actions.privilegedRunError = PrivilegedRunError{};
    CorvelModel model(nullptr, actions);
    QSignalSpy results(&model, &CorvelModel::lastResultChanged);
    for (int i = 1; i <= 2; ++i) {
        model.escalate({FileURL(file)});
        EXPECT_EQ(*model.removalActivity, RemovalActivity::asAdministrator);
        model.stopRemoval();
        EXPECT_EQ(*model.removalActivity, RemovalActivity::asAdministrator) << "cannot be stopped";
        ASSERT_TRUE(waitUntilRemoved(model));
        EXPECT_EQ(results.count(), i) << "also one that went like the one before";
    }
    EXPECT_EQ((*model.lastResult)->failed.front().reason, "Authorization failed.");
}

TEST(CorvelModelRemoval, AddsUpWhatTheAdministratorFrees) {
    const TemporaryFolder folder;
    const FileURL a(folder.makeFile("a", 10'000)), b(folder.makeFile("b", 20'000));
    RecordingActions actions;
    actions.onCommand = [&](const std::string &) {
        std::filesystem::remove(a.path());
        std::filesystem::remove(b.path());
    };
    CorvelModel model(nullptr, actions);
    model.escalate({a});
    ASSERT_TRUE(waitUntilRemoved(model));
    const std::int64_t first = *model.totalFreedThisSession;
    EXPECT_GE(first, 10'000);
    folder.makeFile("b", 20'000);
    model.escalate({b});
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ((*model.lastResult)->succeeded, Urls{b});
    EXPECT_EQ(*model.totalFreedThisSession, first + (*model.lastResult)->bytesFreed);
    EXPECT_GE((*model.lastResult)->bytesFreed, 20'000);
}

TEST(CorvelModelRemoval, ForgetsWhatTheAdministratorRemoved) {
    const TemporaryFolder home;
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", home.path().c_str());
    Host::useSystem(System::macOS);
    makeBundle(home, "Applications/Sample.app", {"com.sample.tool", "Sample", {}, {}, {}});
    // Both an entry of a cleanup target and something that the application leaves behind.
    const FileURL cache(home.makeFolder("Library/Caches/com.sample.tool"));
    home.makeFile("Library/Caches/com.sample.tool/data", 50'000);
    const FileURL settings(home.makeFile("Library/Preferences/com.sample.tool.plist", 5'000));
    const FileURL other(home.makeFolder("Library/Caches/com.sample.other"));
    home.makeFile("Library/Caches/com.sample.other/data", 20'000);

    RecordingActions actions;
    actions.onCommand = [&](const std::string &) { std::filesystem::remove_all(cache.path()); };
    {
        CorvelModel model(nullptr, actions);
        model.measureCleanup();
        model.loadApps();
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return !*model.isMeasuringCleanup && !*model.isLoadingApps; }, 20'000));
        const auto entries = [&] {
            std::vector<std::string> paths;
            for (const CleanupTarget &target : *model.cleanupTargets)
                for (const CleanupEntry &entry : target.entries)
                    paths.push_back(entry.url.path());
            std::sort(paths.begin(), paths.end());
            return paths;
        };
        const auto leftovers = [&] {
            std::vector<std::string> paths;
            for (const AppRow &row : *model.apps)
                for (const LeftoverItem &item : row.leftovers)
                    paths.push_back(item.url.path());
            std::sort(paths.begin(), paths.end());
            return paths;
        };
        ASSERT_EQ(entries(), (std::vector<std::string>{other.path(), cache.path()}));
        ASSERT_EQ(leftovers(), (std::vector<std::string>{cache.path(), settings.path()}));

        std::vector<std::string> announced;
        QObject::connect(&model, &CorvelModel::lastResultChanged, [&] { announced.push_back("result"); });
        QObject::connect(&model, &CorvelModel::totalFreedThisSessionChanged,
                         [&] { announced.push_back("freed"); });
        QObject::connect(&model, &CorvelModel::appsChanged, [&] { announced.push_back("apps"); });
        QObject::connect(&model, &CorvelModel::cleanupChanged, [&] { announced.push_back("cleanup"); });
        model.escalate({cache, settings});
        ASSERT_TRUE(waitUntilRemoved(model));
        EXPECT_EQ(announced, (std::vector<std::string>{"result", "freed", "apps", "cleanup"}));
        EXPECT_EQ(entries(), std::vector<std::string>{other.path()});
        EXPECT_EQ(leftovers(), std::vector<std::string>{settings.path()}) << "it is still there";
        EXPECT_EQ((*model.lastResult)->failed,
                  (std::vector<RemovalResult::Failure>{{settings, "Still present after removal."}}));
    }
    Host::useSystem(std::nullopt);
    qputenv("HOME", homeBefore);
}

TEST(CorvelModelRemoval, MayLoseItsModel) {
    const TemporaryFolder folder;
    for (int i = 0; i < 50; ++i)
        folder.makeFile(std::to_string(i), 1);
    for (int round = 0; round < 10; ++round) {
        RecordingActions actions;
        CorvelModel model(nullptr, actions);
        model.startScan(folder.path());
        ASSERT_TRUE(waitUntilScanned(model));
        std::vector<FSNode *> nodes;
        for (const std::unique_ptr<FSNode> &child : (*model.tree)->children())
            nodes.push_back(child.get());
        model.removeNodes(nodes, RemovalMode::deleteNow);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 50);
}

} // namespace brimvale
