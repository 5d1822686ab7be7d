#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"

#include "Core/Removal/Remover.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/SampleHome.h"
#include "Support/SampleTree.h"

#include <QSignalSpy>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::descendant;
using ::testing::ElementsAre;
using testing::HeldRemoval;
using testing::namesIn;
using ::testing::UnorderedElementsAre;
using testing::waitUntilRemoved;
using testing::waitUntilScanned;

/// A model whose removals the test only records, and a folder that is the user's home on a Mac.
class CorvelModelRemoval : public ::testing::Test {
protected:
    void scan() {
        model.scan.startScan(folder.path());
        ASSERT_TRUE(waitUntilScanned(model));
    }
    [[nodiscard]] FSNode &root() const { return *model.scan->tree; }
    [[nodiscard]] FSNode *node(std::initializer_list<std::string_view> names) const {
        return descendant(root(), names);
    }

    testing::SampleHome folder;
    testing::RecordingActions actions;
    CorvelModel model{actions};
};

} // namespace

TEST_F(CorvelModelRemoval, TakesWhatIsGoneOutOfTheTree) {
    folder.makeFile("a/b/large", 3'000'000);
    folder.makeFile("a/b/c/inner", 2'000'000);
    folder.makeFile("a/b/small", 5'000);
    folder.makeFile("a/other", 1'500'000);
    folder.makeFile("a/stays", 1'200'000);
    scan();
    FSNode &a = *node({"a"});
    FSNode &b = *node({"a", "b"});
    FSNode *stays = node({"a", "stays"}), *other = node({"a", "other"}),
           *inner = node({"a", "b", "c", "inner"});
    FSNode *aggregate = node({"a", "b", "1 smaller item"});
    ASSERT_TRUE(aggregate != nullptr && inner != nullptr && other != nullptr && stays != nullptr);
    const std::int64_t size = root().size, logicalSize = root().logicalSize;
    const std::int64_t removedSize = b.size + other->size;
    const FileURL removedFolder(b.path()), removedFile(other->path()), kept(stays->path());
    actions.refuse(kept.path());

    std::vector<std::string> announced;
    QObject::connect(&model.scan, &ScanSession::nodeAboutToBeDetached, [&](FSNode *node) {
        announced.push_back("before " + std::string(node->name));
        EXPECT_EQ(descendant(*node->parent(), {node->name}), node);
    });
    QObject::connect(&model.scan, &ScanSession::nodeDetached, [&](FSNode *node) {
        announced.push_back("after " + std::string(node->name));
        EXPECT_EQ(node->parent(), nullptr);
        EXPECT_EQ(node->path(), folder.path("a/" + std::string(node->name)));
        EXPECT_EQ(descendant(a, {node->name}), nullptr);
    });
    QSignalSpy results(&model.removals, &Removals::lastResultChanged);
    QSignalSpy trees(&model.scan, &ScanSession::treeChanged);

    // An aggregate stands for many files, `inner` goes with `b`, and nothing is removed twice.
    model.removals.removeNodes({aggregate, inner, &b, other, stays, other}, RemovalMode::deleteNow);
    EXPECT_TRUE(model.removals.isRemoving());
    EXPECT_TRUE(announced.empty());
    ASSERT_TRUE(waitUntilRemoved(model));

    EXPECT_THAT(actions.calls, ElementsAre("delete " + removedFolder.path(), "delete " + removedFile.path(),
                                           "delete " + kept.path()));
    EXPECT_EQ(results.count(), 1);
    RemovalResult result = *model.removals->lastResult;
    EXPECT_TRUE(result.pins.contains(kept)) << "for the administrator";
    result.pins.clear();
    EXPECT_EQ(result, (RemovalResult{.succeeded = {removedFolder, removedFile},
                                     .bytesFreed = removedSize,
                                     .needsAdmin = {kept},
                                     .bytesDeleted = removedSize}));
    EXPECT_EQ(model.removals->totalFreedThisSession, removedSize);
    EXPECT_EQ(model.removals->deletedThisSession, removedSize);
    EXPECT_EQ(model.removals->movedToTrashThisSession, 0);
    EXPECT_THAT(announced, UnorderedElementsAre("after b", "after other", "before b", "before other"));
    EXPECT_EQ(trees.count(), 0);
    EXPECT_THAT(namesIn(a), ElementsAre("stays"));
    for (const FSNode *around : {&a, &root()}) {
        EXPECT_EQ(around->size, size - removedSize);
        EXPECT_EQ(around->fileCount, 1);
    }
    EXPECT_EQ(root().logicalSize, logicalSize);
    EXPECT_EQ(root().dirCount(), 3) << "only sizes and files are subtracted";
    EXPECT_EQ(root().logicalSizeLeft(), 1'200'000);
    EXPECT_EQ(root().dirCountLeft(), 1);
    EXPECT_EQ(model.scan->scanFiles, 1);
    EXPECT_EQ(model.scan->scanBytes, root().size);
}

TEST_F(CorvelModelRemoval, KeepsTheOrderOfWhatIsLeft) {
    const std::string file = folder.makeFile("file", 1);
    for (int i = 0; i < 3'000; ++i) // more than are taken out of a tree at once
        std::filesystem::create_hard_link(file, folder.path(std::to_string(i)));
    scan();
    std::vector<std::string> left;
    std::vector<FSNode *> removed;
    for (const std::unique_ptr<FSNode> &child : root().children()) {
        if (removed.size() <= 2 * left.size())
            removed.push_back(child.get());
        else
            left.push_back(child->name);
    }
    model.removals.removeNodes(removed, RemovalMode::trash);
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(namesIn(root()), left);
    EXPECT_THAT(actions.calls, ::testing::SizeIs(removed.size()));
    EXPECT_THAT(actions.calls, ::testing::Each(::testing::StartsWith("trash ")));
}

TEST_F(CorvelModelRemoval, PrunesATreeThatWasScannedBeforeItEnded) {
    folder.makeFile("item/file", 2'000'000);
    HeldRemoval held(actions);
    scan();
    QSignalSpy detached(&model.scan, &ScanSession::nodeAboutToBeDetached);
    model.removals.removeNodes({node({"item"})}, RemovalMode::deleteNow);
    held.waitUntilCalled();
    scan();
    held.letGoOn();
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_THAT(model.removals->lastResult->succeeded, ElementsAre(FileURL(folder.path("item"))));
    EXPECT_EQ(detached.count(), 1);
    EXPECT_THAT(namesIn(root()), ElementsAre());
    EXPECT_EQ(root().fileCount, 0);
}

TEST_F(CorvelModelRemoval, RunsOneRemovalAtATimeAndStopsIt) {
    folder.makeFile("a", 1);
    folder.makeFile("b", 1);
    HeldRemoval held(actions);
    model.removals.stopRemoval(); // there is none
    scan();
    const auto wait = actions.onItem;
    actions.onItem = [&](RemovalProgress *progress) {
        progress->entriesRemoved = 41;
        wait(progress);
        progress->entriesRemoved = 42;
    };
    model.removals.removeNodes({node({"a"}), node({"b"})}, RemovalMode::deleteNow);
    EXPECT_EQ(model.removals->removalActivity, RemovalActivity::removing);
    held.waitUntilCalled();
    EXPECT_TRUE(QTest::qWaitFor([&] { return model.removals->removedEntries == 41; }, 60'000))
        << "how far it is";
    model.removals.removeNodes({node({"b"})}, RemovalMode::deleteNow);
    model.removals.escalate({FileURL(folder.path("b"))});
    model.removals.stopRemoval();
    EXPECT_EQ(model.removals->removalActivity, RemovalActivity::stopping);
    held.letGoOn();
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(model.removals->removedEntries, 42);
    EXPECT_THAT(actions.calls, ElementsAre("delete " + folder.path("a")));
    EXPECT_EQ(model.removals->lastResult->succeeded.size(), 1U);
    EXPECT_EQ(model.removals->lastResult->failed.size(), 1U);
    EXPECT_THAT(namesIn(root()), ElementsAre("b"));
}

TEST_F(CorvelModelRemoval, AnnouncesEveryResult) {
    const FileURL file(folder.makeFile("a", 1));
    actions.privilegedRunError = PrivilegedRunError{};
    QSignalSpy results(&model.removals, &Removals::lastResultChanged);
    for (int i = 1; i <= 2; ++i) {
        model.removals.escalate({file});
        EXPECT_EQ(model.removals->removalActivity, RemovalActivity::asAdministrator);
        model.removals.stopRemoval();
        EXPECT_EQ(model.removals->removalActivity, RemovalActivity::asAdministrator) << "cannot be stopped";
        ASSERT_TRUE(waitUntilRemoved(model));
        EXPECT_EQ(results.count(), i) << "also one that went like the one before";
    }
    EXPECT_EQ(model.removals->lastResult->failed.front().reason, "Authorization failed.");
}

TEST_F(CorvelModelRemoval, AddsUpWhatTheAdministratorFrees) {
    const FileURL a(folder.makeFile("a", 10'000)), b(folder.makeFile("b", 20'000));
    actions.onCommand = [&](const std::string &) {
        std::filesystem::remove(a.path());
        std::filesystem::remove(b.path());
    };
    model.removals.escalate({a});
    ASSERT_TRUE(waitUntilRemoved(model));
    const std::int64_t first = model.removals->totalFreedThisSession;
    EXPECT_GE(first, 10'000);
    folder.makeFile("b", 20'000);
    model.removals.escalate({b});
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_THAT(model.removals->lastResult->succeeded, ElementsAre(b));
    EXPECT_EQ(model.removals->totalFreedThisSession, first + model.removals->lastResult->bytesFreed);
    EXPECT_GE(model.removals->lastResult->bytesFreed, 20'000);
}

TEST_F(CorvelModelRemoval, ScansAFolderAgainThatWentInPart) {
    for (const char *name : {"a/big/one", "a/big/two", "a/big/sub/three", "a/stays"})
        folder.makeFile(name, 2'000'000);
    for (int i = 0; i < 4; ++i)
        folder.makeFile("a/big/small " + std::to_string(i), 5'000);
    scan();
    FSNode *a = node({"a"}), *big = node({"a", "big"}), *sub = node({"a", "big", "sub"});
    const FileURL item(big->path());
    const std::int64_t size = root().size, logicalSize = root().logicalSize;
    std::vector<FSNode *> announced;
    QObject::connect(&model.scan, &ScanSession::contentsAboutToBeReplaced, [&](FSNode *changed) {
        announced.push_back(changed);
        EXPECT_EQ(descendant(*changed, {"sub"}), sub);
    });
    QSignalSpy replaced(&model.scan, &ScanSession::contentsReplaced);
    actions.errors.emplace(item.path(), FileError{FileError::Domain::cocoa, 3072, "Stopped.", nullptr});
    actions.onItem = [&](RemovalProgress *progress) {
        for (const char *name : {"/one", "/small 2", "/sub/three", "/sub"})
            progress->entriesRemoved += std::filesystem::remove(item.path() + name) ? 1 : 0;
    };
    model.removals.removeNodes({big}, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(model));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !replaced.isEmpty(); }, 60'000));

    const std::int64_t freed = model.removals->lastResult->bytesFreed;
    EXPECT_GE(freed, 4'005'000);
    EXPECT_EQ(model.removals->lastResult->partlyRemoved, (std::vector<PartialRemoval>{{item, 4, 9, freed}}));
    EXPECT_EQ(model.removals->totalFreedThisSession, freed);
    EXPECT_THAT(announced, ElementsAre(big));
    EXPECT_EQ(node({"a", "big"}), big) << "in place";
    EXPECT_THAT(namesIn(*big), ElementsAre("two", "3 smaller items"));
    for (const FSNode *around : {a, &root()})
        EXPECT_EQ(around->fileCount, 5);
    EXPECT_EQ(root().size, size - freed);
    EXPECT_EQ(root().logicalSize, logicalSize - 4'005'000);
    EXPECT_EQ(root().dirCount(), 2);
}

// The user sees what is there now, and can remove that.
TEST_F(CorvelModelRemoval, ReadsAgainWhatHasReplacedAnItem) {
    for (const char *item : {"a/folder", "a/file", "file"}) {
        folder.makeFile("a/folder/old", 2'000'000);
        for (const char *file : {"a/file", "file"})
            folder.makeFile(file, 2'000'000);
        scan();
        std::filesystem::rename(folder.path(item), folder.path("moved"));
        if (std::filesystem::is_directory(folder.path("moved")))
            folder.makeFile("a/folder/new", 3'000'000);
        else
            folder.makeFile(item, 3'000'000);
        const auto replacedNode = [&] {
            const std::string name = std::filesystem::path(item).filename();
            return item == std::string("file") ? node({"file"}) : node({"a", name});
        };
        QSignalSpy replaced(&model.scan, &ScanSession::contentsReplaced);
        model.removals.removeNodes({replacedNode()}, RemovalMode::trash);
        ASSERT_TRUE(waitUntilRemoved(model));
        ASSERT_EQ(model.removals->lastResult->changed, std::vector{FileURL(folder.path(item))});
        EXPECT_TRUE(actions.calls.empty());
        ASSERT_TRUE(QTest::qWaitFor([&] { return !replaced.isEmpty(); }, 60'000));

        EXPECT_GE(replacedNode()->size, 3'000'000);
        EXPECT_GE(root().size, 5'000'000);
        model.removals.removeNodes({replacedNode()}, RemovalMode::trash);
        ASSERT_TRUE(waitUntilRemoved(model));
        EXPECT_THAT(actions.calls, ElementsAre(std::string("trash ") + folder.path(item)));
        actions.calls.clear();
        std::filesystem::remove_all(folder.path("moved"));
        std::filesystem::remove_all(folder.path("a"));
    }
}

TEST_F(CorvelModelRemoval, ScansTheWholeAgainWhereTheRootWentInPart) {
    folder.makeFile("a/file", 2'000'000);
    folder.makeFile("b", 5'000);
    scan();
    std::filesystem::remove_all(folder.path("a"));
    QSignalSpy replaced(&model.scan, &ScanSession::contentsReplaced);
    emit model.removals.partlyGone(GonePaths({FileURL(folder.path())}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !replaced.isEmpty(); }, 60'000));
    EXPECT_THAT(namesIn(root()), ElementsAre("b"));
    EXPECT_EQ(root().fileCount, 1);

    // An item that has gone altogether since leaves the tree.
    folder.makeFile("c/file", 2'000'000);
    scan();
    std::filesystem::remove_all(folder.path("c"));
    emit model.removals.partlyGone(GonePaths({FileURL(folder.path("c"))}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return node({"c"}) == nullptr; }, 60'000));
    EXPECT_THAT(namesIn(root()), ElementsAre("b"));
}

TEST_F(CorvelModelRemoval, MayLoseItsModel) {
    for (int i = 0; i < 50; ++i)
        folder.makeFile(std::to_string(i), 1);
    for (int round = 0; round < 10; ++round) {
        CorvelModel lost(actions);
        lost.scan.startScan(folder.path());
        ASSERT_TRUE(waitUntilScanned(lost));
        lost.removals.removeNodes(testing::everythingBeneath(*lost.scan->tree), RemovalMode::deleteNow);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 50);
}

} // namespace brimvale
