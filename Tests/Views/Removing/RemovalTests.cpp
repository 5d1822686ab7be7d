#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Core/Removal/RemovalGate.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleTree.h"
#include "Views/Browse/Breadcrumb.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/StateMessage.h"
#include "Views/Removing/RemovalSheet.h"

#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::descendant;
using testing::eventually;
using testing::HeldRemoval;
using Nodes = std::vector<FSNode *>;

/// Whether the treemap draws nothing that has left the tree.
bool isSound(const TreemapView &treemap, const FSNode &root) {
    const auto isInside = [&](const FSNode *node) {
        while (node != nullptr && node != &root)
            node = node->parent();
        return node == &root;
    };
    return std::all_of(treemap.tiles().begin(), treemap.tiles().end(),
                       [&](const TreemapTile &tile) { return isInside(tile.node); });
}

struct ShownBrowse : BrowseView {
    explicit ShownBrowse(CorvelModel &model)
        : BrowseView(model.scan, model.removals, model.duplicates, model.volumes) {}
};

/// The page with a scanned folder whose removals the test only records.
class RemovalInBrowse : public testing::PageTest<ShownBrowse> {
protected:
    RemovalInBrowse() {
        folder.makeFile("big/inner/file", 4'000'000);
        folder.makeFile("big/other", 2'000'000);
        folder.makeFile("big/little", 5'000); // too small for a row of its own
        folder.makeFile("middle/file", 3'000'000);
        folder.makeFile("small", 1'500'000);
        page.show();
    }

    void scan() {
        model.scan.startScan(folder.path());
        ASSERT_TRUE(testing::waitUntilScanned(model));
        testing::activate(page);
        outline.setFocus();
    }

    [[nodiscard]] FSNode &root() const { return *model.scan->tree; }
    [[nodiscard]] FSNode *node(std::initializer_list<std::string_view> names) const {
        return descendant(root(), names);
    }

    void choose(const Nodes &nodes) {
        testing::activate(page); // also after a sheet has been in front
        outline.clearSelection();
        for (const FSNode *one : nodes) {
            for (const FSNode *around = one->parent(); around != &root(); around = around->parent())
                outline.expand(rows().indexOf(*around));
            outline.selectionModel()->select(rows().indexOf(*one),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    void ask(const Nodes &nodes) {
        choose(nodes);
        QTest::keyClick(&outline, Qt::Key_Delete);
        ASSERT_TRUE(eventually([&] { return sheet() != nullptr; }));
    }

    [[nodiscard]] RemovalSheet *sheet() const { return page.findChild<RemovalSheet *>(); }
    void press(const char *button) { testing::click(*sheet(), button); }
    void confirm() {
        ASSERT_TRUE(eventually([&] { return sheet() != nullptr; }));
        press("confirm");
        ASSERT_TRUE(testing::waitUntilRemoved(model));
        // What many removals have changed is drawn once, afterwards.
        ASSERT_TRUE(eventually([&] {
            return model.scan->tree == nullptr || treemap.node() != nullptr || !isVisible("results");
        }));
    }
    [[nodiscard]] OutlineModel &rows() const { return static_cast<OutlineModel &>(*outline.model()); }

    const testing::TemporaryFolder &folder = home;
    OutlineView &outline = find<OutlineView>("outline");
    TreemapView &treemap = find<TreemapView>("treemap");
    QPushButton &remove = find<QPushButton>("remove");
};

} // namespace

TEST_F(RemovalInBrowse, AsksForASelectionAndForNothingElse) {
    scan();
    EXPECT_FALSE(remove.isEnabled()) << "the folder that is shown is no selection";
    EXPECT_EQ(remove.text(), "Remove…");
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);

    choose({node({"big", "1 smaller item"})});
    EXPECT_FALSE(remove.isEnabled()) << "it stands for many files";
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);

    // What lies in another folder that is selected goes with it, and counts once.
    choose({node({"big"}), node({"big", "inner"}), node({"big", "1 smaller item"}), node({"small"})});
    EXPECT_TRUE(remove.text().startsWith("Remove 2 Items, ")) << qPrintable(remove.text());
    QTest::keyClick(&outline, Qt::Key_Delete);
    ASSERT_TRUE(eventually([&] { return sheet() != nullptr; }));
    press("cancel");
    EXPECT_FALSE(model.removals.isRemoving());
    EXPECT_EQ(outline.selectedNodes().size(), 4U);
    EXPECT_TRUE(eventually([&] { return sheet() == nullptr; }));

    // The key belongs to the filter while that is being written.
    auto &filter = find<QLineEdit>("filter");
    filter.setFocus();
    QTest::keyClick(&filter, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(RemovalInBrowse, TakesWhatIsGoneFromEverythingItShows) {
    scan();
    const std::int64_t before = root().size;
    FSNode *big = node({"big"});
    const std::int64_t gone = node({"big", "inner"})->size + node({"middle"})->size;
    choose({node({"middle"}), node({"big", "inner"}), node({"big", "inner", "file"}), node({"small"})});
    actions.refuse(folder.path("small"));
    QTest::keyClick(&outline, Qt::Key_Delete);
    const QSignalSpy selections(&outline, &OutlineView::selectionChangedTo);
    confirm();
    EXPECT_LE(selections.size(), 1) << "not once for each that goes";

    std::sort(actions.calls.begin(), actions.calls.end());
    EXPECT_EQ(actions.calls,
              (std::vector<std::string>{"trash " + folder.path("big/inner"), "trash " + folder.path("middle"),
                                        "trash " + folder.path("small")}));
    EXPECT_EQ(node({"middle"}), nullptr);
    EXPECT_EQ(node({"big", "inner"}), nullptr);
    EXPECT_EQ(root().size, before - gone);
    EXPECT_EQ(rows().rowCount(), 2);
    EXPECT_EQ(rows().nodeAt(rows().index(0, 0)), big) << "still the larger one";
    EXPECT_TRUE(outline.isExpanded(rows().indexOf(*big)));
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"small"})}) << "what could not be removed stays selected";
    EXPECT_EQ(text("detailName"), "small");
    EXPECT_EQ(treemap.tiles().size(), 2U);
    EXPECT_TRUE(isSound(treemap, root()));
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, node({"small"}));
}

TEST_F(RemovalInBrowse, ComesOutOfAFolderThatGoesAway) {
    scan();
    FSNode *big = node({"big"});
    // The nodes are detached from the last to the first.
    HeldRemoval held(actions);
    ask({big, node({"middle"}), node({"small"})});
    press("confirm");
    held.waitUntilCalled();
    EXPECT_FALSE(remove.isEnabled());
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_TRUE(eventually([&] { return sheet() == nullptr; })) << "one at a time";

    // The user goes on meanwhile, into what is about to go.
    emit page.findChild<Breadcrumb *>("breadcrumb")->chosen(descendant(*big, {"inner"}));
    ASSERT_EQ(treemap.node(), descendant(*big, {"inner"}));
    int detached = 0;
    QObject::connect(&model.scan, &ScanSession::nodeDetached, &page, [&] {
        ++detached;
        EXPECT_TRUE(isSound(treemap, root())) << "after " << detached;
        EXPECT_TRUE(treemap.node() == nullptr || treemap.node() == &root());
    });
    held.letGoOn(3);
    ASSERT_TRUE(testing::waitUntilRemoved(model));
    EXPECT_EQ(detached, 3);
    EXPECT_EQ(outline.focusFolder(), &root());
    EXPECT_TRUE(eventually([&] { return page.findChild<StateMessage *>()->isVisible(); }))
        << "nothing is left";
    EXPECT_FALSE(remove.isEnabled());
}

TEST_F(RemovalInBrowse, KeepsWhatIsSelectedMeanwhile) {
    scan();
    HeldRemoval held(actions);
    ask({node({"middle"})});
    press("confirm");
    held.waitUntilCalled();
    choose({node({"big", "other"})});
    held.letGoOn();
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && treemap.node() != nullptr; }));
    ASSERT_EQ(node({"middle"}), nullptr);
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"big", "other"})});
    EXPECT_EQ(text("detailName"), "other");
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, node({"big"}));
    EXPECT_TRUE(remove.isEnabled());
}

TEST_F(RemovalInBrowse, LeavesATreeAloneThatCameWhileItAsked) {
    scan();
    ask({node({"middle"})});
    const QPointer<RemovalSheet> asking = sheet();
    ASSERT_NE(asking, nullptr);
    model.scan.startScan();
    EXPECT_TRUE(asking == nullptr || !asking->isVisible()) << "it asked about a tree that is gone";
    EXPECT_FALSE(remove.isEnabled());
    QTest::keyClick(&page, Qt::Key_Delete);
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr && asking == nullptr; }));
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(RemovalInBrowse, FollowsWhatOtherPagesRemove) {
    scan();
    emit outline.opened(node({"big", "inner"}));
    ASSERT_EQ(treemap.node(), node({"big", "inner"}));
    ask({node({"big", "inner", "file"})});
    const QPointer<RemovalSheet> asking = sheet();
    ASSERT_NE(asking, nullptr);
    model.removals.removeCleanupEntries({{.url = FileURL(folder.path("big"))}}, RemovalMode::trash);
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && treemap.node() == &root(); }));
    EXPECT_TRUE(asking == nullptr || !asking->isVisible()) << "it asked about a node that is gone";
    EXPECT_EQ(node({"big"}), nullptr);
    EXPECT_TRUE(isSound(treemap, root()));

    // The scanned folder itself.
    model.scan.startScan(folder.path("middle"));
    ASSERT_TRUE(testing::waitUntilScanned(model));
    actions.onItem = [&](RemovalProgress *) { std::filesystem::remove_all(folder.path("middle")); };
    model.removals.removeCategoryEntries({{.url = FileURL(folder.path("middle"))}}, RemovalMode::trash);
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving() && !isVisible("results"); }));
    EXPECT_EQ(page.findChild<StateMessage *>()->title(), "Nothing to scan");
}

TEST_F(RemovalInBrowse, IsAskedForByButtonAndMenuWhateverTheOrder) {
    scan();
    find<QLineEdit>("filter").setText("file"); // big/inner/file and middle/file
    ASSERT_TRUE(eventually([&] { return rows().rowCount() == 2; }));
    outline.sortByColumn(OutlineModel::nameColumn, Qt::DescendingOrder);
    choose({node({"big", "inner", "file"})});
    QTest::mouseClick(&remove, Qt::LeftButton);
    confirm();
    ASSERT_TRUE(eventually([&] { return rows().rowCount() == 1; })) << "nothing in it matches";
    EXPECT_EQ(page.focusWidget(), &outline) << "the button cannot keep it";
    EXPECT_EQ(node({"big", "inner"})->size, 0);

    // From a tile, through its menu.
    treemap.setFocus();
    emit treemap.selected(node({"middle"}));
    emit treemap.contextMenuRequested(node({"middle"}), page.mapToGlobal(QPoint(5, 5)));
    find<QMenu>("nodeMenu").actions().back()->trigger();
    confirm();
    EXPECT_EQ(actions.calls.back(), "trash " + folder.path("middle"));
    EXPECT_EQ(node({"middle"}), nullptr);
}

TEST_F(RemovalInBrowse, AsksTheGuardsWhenTheSelectionChanges) {
    const std::string documents = folder.path("Documents");
    folder.makeFile("Documents/file", 2'500'000);
    if (!RemovalGate::guards().check(FileURL(documents)))
        GTEST_SKIP() << "the guards were made for the home of another test";
    scan();
    choose({node({"Documents"})});
    ASSERT_TRUE(eventually([&] { return !text("objection").empty(); }));
    EXPECT_EQ(text("objection"), documents + " is a structural directory and is never removed. Open it to "
                                             "choose what is inside.");
    EXPECT_FALSE(remove.isEnabled());
    EXPECT_FALSE(isVisible("route"));
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);

    // The key comes before the answer.
    choose({node({"middle"}), node({"Documents"})});
    QTest::keyClick(&outline, Qt::Key_Delete);
    ASSERT_TRUE(eventually([&] { return !text("objection").empty(); }));
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_FALSE(remove.isEnabled());

    ask({node({"Documents", "file"})});
    EXPECT_EQ(text("objection"), "");
    EXPECT_TRUE(remove.isEnabled());
    press("cancel");
}

TEST_F(RemovalInBrowse, LeavesToACategoryWhatItProtects) {
    folder.makeFile("Pictures/Trip.photoslibrary/originals", 2'500'000);
    folder.makeFile("Library/Messages/chat.db", 2'500'000);
    scan();
    const QSignalSpy asked(&page, &BrowseView::categoryAsked);
    struct Case {
        FSNode *node;
        const char *warning, *route, *id;
    };
    for (const Case &one : {Case{node({"Pictures", "Trip.photoslibrary", "originals"}),
                                 "A photo library is a bundle", "Open Photos", "photos"},
                            Case{node({"Library", "Messages", "chat.db"}), "Messages keeps an index",
                                 "Back Up in Messages…", "messages"}}) {
        choose({one.node});
        QTest::keyClick(&outline, Qt::Key_Delete);
        ASSERT_TRUE(eventually([&] { return !text("objection").empty(); }));
        EXPECT_TRUE(text("objection").starts_with(one.warning)) << text("objection");
        EXPECT_EQ(text("route"), one.route);
        EXPECT_FALSE(remove.isEnabled());
        EXPECT_EQ(sheet(), nullptr);
        click("route");
        EXPECT_EQ(asked.back().front().value<std::string>(), one.id);
    }
    choose({node({"middle"})});
    EXPECT_FALSE(isVisible("route"));
    EXPECT_TRUE(eventually([&] { return remove.isEnabled(); }));
}

// What protects an item comes after very many others, whose paths are read in slices.
TEST_F(RemovalInBrowse, ChecksEveryItemOfALargeSelection) {
    const auto showMany = [this] {
        const auto tree = std::make_shared<FSNode>("home", home.path(), true);
        for (int i = 0; i < 30'000; ++i)
            testing::add(*tree, "file " + std::to_string(i), 2'000'000);
        testing::add(testing::addFolder(testing::addFolder(*tree, "Library"), "Messages"), "chat.db", 1'000);
        PublishedWriter::set(model.scan, &SessionState::tree, tree);
        emit model.scan.treeChanged();
        testing::activate(page);
        outline.setFocus();
        Nodes files = testing::everythingBeneath(root());
        std::erase_if(files, [](const FSNode *one) { return one->isDirectory; });
        std::sort(files.begin(), files.end(), [](auto *a, auto *b) { return a->size > b->size; });
        emit outline.selectionChangedTo(files);
    };
    showMany();
    EXPECT_TRUE(remove.isEnabled()) << "not answered yet";
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr) << "it waits for the answer";
    EXPECT_EQ(testing::labels(page, "notice"), std::vector<std::string>{"Checking the selection…"});
    ASSERT_TRUE(eventually([&] { return !text("objection").empty(); }));
    EXPECT_TRUE(text("objection").starts_with("Messages keeps an index")) << text("objection");
    EXPECT_FALSE(remove.isEnabled());
    EXPECT_EQ(sheet(), nullptr);

    // Paths that are not read yet belong to nodes that may go.
    showMany();
    model.scan.drop(GonePaths({FileURL(home.path("file 29999"))}));
    ASSERT_TRUE(eventually([&] { return node({"file 29999"}) == nullptr && treemap.node() != nullptr; }));
    showMany();
    PublishedWriter::set(model.scan, &SessionState::tree, nullptr);
    emit model.scan.treeChanged();
    QCoreApplication::processEvents();
    EXPECT_EQ(sheet(), nullptr);
}

} // namespace brimvale
