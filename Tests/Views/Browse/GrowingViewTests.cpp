#include "Views/Browse/GrowingView.h"

#include "Core/Model/CorvelModel.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/ScanStats.h"
#include "Support/HeldScan.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/Window.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"

#include <QTreeView>
#include <cerrno>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::eventually;

/// The page with a session of its own, whose scans do not end before they are let go.
class GrowingPage : public ::testing::Test {
protected:
    GrowingPage() {
        home.makeFile("scanned/big/inner/file", 90'000);
        home.makeFile("scanned/small/file", 5'000);
        page.resize(1000, 700);
        page.show();
        held.hold(true);
    }

    void startGrowing() {
        session.startScan(home.path("scanned"));
        ASSERT_TRUE(eventually([&] { return growing().isVisible(); }));
    }

    [[nodiscard]] GrowingView &growing() const { return testing::find<GrowingView>(page, "growing"); }
    [[nodiscard]] OutlineView &rows() const { return testing::find<OutlineView>(page, "growingOutline"); }
    [[nodiscard]] QModelIndex row(const QString &name) const {
        const QAbstractItemModel &list = *rows().model();
        for (int i = 0; i < list.rowCount(); ++i)
            if (list.index(i, 0).data().toString() == name)
                return list.index(i, 0);
        return {};
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
    testing::HeldScan held;
    Workers workers;
    ScanSession session{workers, model.volumes, held.scan([](FSNode &root, ScanStats &stats) {
                            root.children().front()->unreadable = true;
                            stats.addUnreadable(root.children().front()->path(), EACCES);
                        })};
    BrowseView page{session, model.removals, model.duplicates, model.volumes};
};

} // namespace

TEST_F(GrowingPage, ShowsWhatIsCountedAndHandsTheSelectionToTheTree) {
    startGrowing();
    EXPECT_EQ(rows().model()->rowCount(), 2);
    EXPECT_EQ(row("big").row(), 0) << "the largest comes first";
    EXPECT_EQ(testing::find<TreemapView>(page, "growingTreemap").tiles().size(), 2U);
    EXPECT_FALSE(testing::find(page, "results").isVisible()) << "nothing can be removed yet";

    rows().setFocus();
    rows().setCurrentIndex(row("small"));
    EXPECT_TRUE(testing::shown(page, "growingSelection").starts_with("small: "));
    session.scanStats()->addUnreadable("/", EACCES); // anything that is announced
    QTest::qWait(500);
    EXPECT_EQ(growing().selection(), "small") << "it stays while figures change";

    held.hold(false);
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_FALSE(growing().isVisible());
    const std::vector<FSNode *> selected = testing::find<OutlineView>(page, "outline").selectedNodes();
    ASSERT_EQ(selected.size(), 1U);
    EXPECT_EQ(selected.front()->name, "small");
    EXPECT_EQ(testing::shown(page, "detailName"), "small");
}

TEST_F(GrowingPage, StaysWhenTheScanIsStopped) {
    held.hold(false);
    session.startScan(home.path("scanned"));
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    held.hold(true);
    startGrowing();
    testing::click(page, "scan");
    ASSERT_TRUE(eventually([&] { return !session->isScanning; }));
    EXPECT_TRUE(growing().isVisible());
    const std::string words = testing::shown(page, "growingWords");
    EXPECT_TRUE(words.starts_with("Stopped early")) << words;
    EXPECT_NE(words.find("The last complete scan found"), std::string::npos) << words;
    rows().setCurrentIndex(row("big"));
    EXPECT_NE(testing::shown(page, "growingSelection").find("in the last complete scan"), std::string::npos);

    held.hold(false);
    session.startScan(home.path("scanned/big"));
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_FALSE(growing().isVisible());
    EXPECT_TRUE(testing::find<OutlineView>(page, "outline").selectedNodes().empty()) << "another folder";
}

TEST_F(GrowingPage, ListsWhatCouldNotBeRead) {
    held.hold(false);
    session.startScan(home.path("scanned"));
    ASSERT_TRUE(eventually([&] { return session->tree != nullptr; }));
    EXPECT_EQ(testing::shown(page, "scanUnreadable"), "1 unreadable");
    testing::click(page, "scanUnreadable");
    const auto *table = page.window()->findChild<QTreeView *>("unreadableItems");
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->model()->rowCount(), 1);
    EXPECT_TRUE(table->model()->index(0, 0).data().toString().startsWith(
        QString::fromStdString(home.path("scanned"))));
    EXPECT_FALSE(table->model()->index(0, 1).data().toString().isEmpty());
}

} // namespace brimvale
