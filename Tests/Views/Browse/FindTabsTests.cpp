#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Support/PageTest.h"
#include "Support/TemporaryFolder.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Find/FindView.h"
#include "Views/Browse/Find/TabStrip.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::eventually;

struct TabbedBrowse : BrowseView {
    explicit TabbedBrowse(CorvelModel &model)
        : BrowseView(model.scan, model.removals, model.duplicates, model.volumes) {}
};

/// The page with a scanned folder of a large film, a small one, and documents.
class FindTabs : public testing::PageTest<TabbedBrowse> {
protected:
    FindTabs() {
        folder.makeFile("films/big.mkv", 2'000'000);
        folder.makeFile("films/small.mp4", 90'000);
        folder.makeFile("texts/paper.pdf", 300'000);
        folder.makeFile("texts/old/letter.txt", 9'000);
        page.show();
        testing::activate(page);
        model.scan.startScan(folder.path());
        EXPECT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    }

    /// The rows, those of open groups indented.
    [[nodiscard]] QStringList rows() const {
        QStringList texts;
        for (QModelIndex row = list.model()->index(0, 0); row.isValid(); row = list.indexBelow(row))
            texts << (row.parent().isValid() ? QStringLiteral("  ") : QString()) + row.data().toString();
        return texts;
    }
    void waitForRows(const QStringList &expected) {
        EXPECT_TRUE(eventually([&] { return rows() == expected; })) << rows().join(u", ").toStdString();
    }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(page.window()->focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    [[nodiscard]] QStringList selected() const {
        QStringList names;
        for (const FSNode *node : list.selectedNodes())
            names << QString::fromStdString(node->name);
        names.sort();
        return names;
    }

    testing::TemporaryFolder folder;
    FindView &list = find<FindView>("findList");
    TabStrip &tabs = find<TabStrip>("browseTabs");
    QLineEdit &filter = find<QLineEdit>("filter");
};

} // namespace

TEST_F(FindTabs, AreUsedByKeyboard) {
    tabs.setFocus();
    key(Qt::Key_Right);
    EXPECT_EQ(tabs.tabText(tabs.currentIndex()), "Largest");
    waitForRows({"big.mkv", "paper.pdf", "small.mp4", "letter.txt"});
    list.setFocus();
    key(Qt::Key_Down);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(selected().size(), 2);
    EXPECT_EQ(text("detailName"), "2 items selected");
    key(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(selected(), (QStringList{"letter.txt", "small.mp4"}));
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selected().size(), 4);

    // A small file is shown by the row for the small files of its folder.
    key(Qt::Key_End);
    EXPECT_EQ(text("detailName"), "letter.txt");
    EXPECT_EQ(text("detailPath"), folder.path("texts/old/letter.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_EQ(text("detailName"), "1 smaller item");
    EXPECT_TRUE(find<OutlineView>("outline").hasFocus());
}

TEST_F(FindTabs, KeepTheirSelectionWhenAFolderIsScannedAgain) {
    tabs.setCurrentIndex(1);
    waitForRows({"big.mkv", "paper.pdf", "small.mp4", "letter.txt"});
    list.setFocus();
    key(Qt::Key_End);
    key(Qt::Key_Up, Qt::ShiftModifier);
    folder.makeFile("films/new.mkv", 900'000);
    model.scan.rescan(FileURL(folder.path("films")));
    waitForRows({"big.mkv", "new.mkv", "paper.pdf", "small.mp4", "letter.txt"});
    EXPECT_EQ(selected(), (QStringList{"letter.txt", "small.mp4"}));
    EXPECT_EQ(text("detailName"), "2 items selected");
}

TEST_F(FindTabs, GroupFilesByTypeAndAge) {
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(folder.path("texts/old/letter.txt"), now - std::chrono::hours(24 * 500));
    model.scan.startScan(folder.path());
    EXPECT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    tabs.setCurrentIndex(2);
    waitForRows({"Video", "Documents"});
    list.setFocus();
    key(Qt::Key_Home);
    key(Qt::Key_Right);
    waitForRows({"Video", "  big.mkv", "  small.mp4", "Documents"});
    QAccessibleInterface *row = QAccessible::queryAccessibleInterface(&list)->child(1); // after the title
    EXPECT_TRUE(row->text(QAccessible::Name).startsWith("Video, 2.1 MB, 2 files"))
        << row->text(QAccessible::Name).toStdString();
    key(Qt::Key_Return);
    waitForRows({"Video", "Documents"});

    tabs.setCurrentIndex(3);
    waitForRows({"More than a year", "Up to a month"});
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(0, 0)).center());
    waitForRows({"More than a year", "  letter.txt", "Up to a month"});
    find<OutlineView>("outline").setFocus();
}

TEST_F(FindTabs, GiveSmallFilesToTheBasketPinned) {
    std::vector<CleanupEntry> gathered;
    QObject::connect(&page, &BrowseView::basketAsked, &page,
                     [&](const std::vector<CleanupEntry> &entries) { gathered = entries; });
    tabs.setCurrentIndex(1);
    waitForRows({"big.mkv", "paper.pdf", "small.mp4", "letter.txt"});
    list.setCurrentIndex(list.model()->index(3, 0));
    emit list.menuRequested({});
    auto *menu = page.findChild<QMenu *>("nodeMenu");
    ASSERT_NE(menu, nullptr);
    for (QAction *action : menu->actions())
        if (action->text() == "Add to Basket")
            action->trigger(); // before the guards have answered
    ASSERT_TRUE(eventually([&] { return !gathered.empty(); }));
    EXPECT_EQ(gathered.front().url.path(), folder.path("texts/old/letter.txt"));
    ASSERT_TRUE(gathered.front().pin.has_value());
    EXPECT_EQ(gathered.front().pin->place.path(), folder.path("texts/old/letter.txt"));
    menu->close();
}

TEST_F(FindTabs, FollowTheFilterTheFolderAndRemovals) {
    tabs.setCurrentIndex(1);
    filter.setText(">100K");
    waitForRows({"big.mkv", "paper.pdf"});
    EXPECT_TRUE(eventually([&] { return text("filterNote").starts_with("2 matches, 2.3"); }))
        << text("filterNote");
    filter.setText(">100K type:");
    EXPECT_TRUE(text("filterNote").starts_with("“” is not a type.")) << text("filterNote");
    waitForRows({"big.mkv", "paper.pdf"});
    filter.setText("type:video small");
    waitForRows({"small.mp4"});
    EXPECT_TRUE(eventually([&] { return text("filterNote").starts_with("1 match, "); }));
    filter.clear();
    EXPECT_EQ(text("filterNote"), "");

    // Files that go leave the list, small ones too, and open groups stay open.
    tabs.setCurrentIndex(2);
    waitForRows({"Video", "Documents"});
    list.expandAll();
    waitForRows({"Video", "  big.mkv", "  small.mp4", "Documents", "  paper.pdf", "  letter.txt"});
    std::filesystem::remove(folder.path("films/small.mp4"));
    std::filesystem::remove(folder.path("texts/paper.pdf"));
    model.scan.drop(
        GonePaths({FileURL(folder.path("films/small.mp4")), FileURL(folder.path("texts/paper.pdf"))}));
    waitForRows({"Video", "  big.mkv", "Documents", "  letter.txt"});

    page.open(FileURL(folder.path("texts")));
    waitForRows({"Documents", "  letter.txt"});
    model.scan.startScan(folder.path());
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
}

TEST_F(FindTabs, FilterNarrowsTheMap) {
    for (int i = 0; i < 5; ++i)
        folder.makeFile("few" + std::to_string(i) + ".txt", 30'000);
    model.scan.startScan(folder.path());
    EXPECT_TRUE(eventually([&] { return model.scan->tree != nullptr && !model.scan->isScanning; }));
    auto &map = find<TreemapView>("treemap");
    map.setMaxTiles(2); // the films and the documents
    const auto colorOf = [&](std::size_t tile) {
        return map.grab().toImage().pixelColor(map.tileArea(tile).bottomRight() - QPoint(4, 4));
    };
    ASSERT_EQ(map.tiles().size(), 3U);
    const std::vector<QColor> usual = {colorOf(0), colorOf(1), colorOf(2)};
    const auto waitFor = [&](const QString &words, const std::vector<bool> &isBright) {
        filter.setText(words);
        EXPECT_TRUE(eventually([&] {
            for (std::size_t tile = 0; tile < usual.size(); ++tile)
                if ((colorOf(tile) == usual[tile]) != isBright[tile])
                    return false;
            return true;
        })) << words.toStdString();
    };
    waitFor("big", {true, false, false});
    waitFor("letter", {false, true, false});
    waitFor("few3", {false, false, true});
    waitFor("type:video", {true, false, false});
    waitFor("", {true, true, true});
}

TEST_F(FindTabs, ActOnlyOnWhatIsShownAsSelected) {
    auto &outline = find<OutlineView>("outline");
    filter.setText(QStringLiteral("big"));
    const auto selectedInOutline = [&] {
        outline.selectAll();
        const std::vector<FSNode *> nodes = outline.selectedNodes();
        return nodes.size() == 1 ? nodes.front()->name : std::to_string(nodes.size()) + " nodes";
    };
    EXPECT_TRUE(eventually([&] { return selectedInOutline() == "big.mkv"; })) << "not the folder around it";

    filter.clear();
    tabs.setCurrentIndex(1);
    waitForRows({"big.mkv", "paper.pdf", "small.mp4", "letter.txt"});
    list.setCurrentIndex(list.model()->index(0, 0));
    EXPECT_EQ(selected(), QStringList("big.mkv"));
    auto &map = find<TreemapView>("treemap");
    emit map.selected(model.scan->tree->children().back().get());
    EXPECT_TRUE(selected().isEmpty()) << "the selection is in the map now";
}

} // namespace brimvale
