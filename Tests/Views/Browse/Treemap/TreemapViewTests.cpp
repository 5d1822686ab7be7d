#include "Views/Browse/Treemap/ShownTreemap.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::add;
using testing::makeMixedFolder;
using testing::makeRoot;
using testing::nodesIn;
using testing::ShownTreemap;

std::string toolTipAt(TreemapView &view, QPoint position) {
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, position, view.mapToGlobal(position));
    QApplication::sendEvent(&view, &event);
    const QString text = QToolTip::text();
    return (Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text)
        .toStdString();
}

} // namespace

TEST(TreemapView, SelectsWithAClickAndEntersWithADoubleClick) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    const auto tiles = map.view.tiles();
    ASSERT_EQ(tiles.size(), 4U);
    ASSERT_EQ(tiles[3].node->name, "2 smaller items");
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        map.selected.clear();
        map.click(i);
        EXPECT_EQ(nodesIn(map.selected), std::vector<const FSNode *>{tiles[i].node});
        EXPECT_EQ(map.view.selectedTile(), i);
    }
    EXPECT_TRUE(map.drilledIn.isEmpty());
    for (std::size_t i = 0; i < tiles.size(); ++i)
        map.doubleClick(i);
    EXPECT_EQ(nodesIn(map.drilledIn), std::vector<const FSNode *>{folder->children()[0].get()})
        << "neither a file nor the rest can be entered";

    map.selected.clear();
    QTest::mouseClick(&map.view, Qt::RightButton, {}, map.middleOf(0));
    EXPECT_TRUE(map.selected.isEmpty());
}

TEST(TreemapView, MovesWithTheArrowsAndEntersWithReturn) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    const auto press = [&](Qt::Key key) { QTest::keyClick(&map.view, key); };
    press(Qt::Key_Return);
    EXPECT_TRUE(map.drilledIn.isEmpty()) << "nothing is selected yet";

    press(Qt::Key_Left);
    EXPECT_EQ(map.view.selectedTile(), 0U);
    press(Qt::Key_Left);
    EXPECT_EQ(map.selected.size(), 1) << "there is nothing further left";
    press(Qt::Key_Return);
    EXPECT_EQ(nodesIn(map.drilledIn), std::vector<const FSNode *>{folder->children()[0].get()});
    press(Qt::Key_Right);
    EXPECT_EQ(map.view.selectedTile(), 1U);
    press(Qt::Key_Down);
    EXPECT_GT(map.view.tiles()[*map.view.selectedTile()].rect.y, map.view.tiles()[1].rect.y);
    press(Qt::Key_Up);
    press(Qt::Key_Enter);
    EXPECT_EQ(map.view.selectedTile(), 1U);
    EXPECT_EQ(map.drilledIn.size(), 1) << "a file cannot be entered";

    // What the window's shortcuts are made of passes by.
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Up, modifier);
        QApplication::sendEvent(&map.view, &event);
        EXPECT_FALSE(event.isAccepted());
    }
    QTest::keyClick(&map.view, Qt::Key_Left, Qt::KeypadModifier);
    EXPECT_EQ(map.view.selectedTile(), 0U);

    map.view.setNode(nullptr);
    map.selected.clear();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Return})
        press(key);
    EXPECT_TRUE(map.selected.isEmpty());
}

TEST(TreemapView, AsksForAMenuOfTheTileThatItSelects) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    const auto ask = [&](QContextMenuEvent::Reason reason, QPoint position) {
        QContextMenuEvent event(reason, position, map.view.mapToGlobal(position));
        QApplication::sendEvent(&map.view, &event);
    };
    ask(QContextMenuEvent::Keyboard, {});
    EXPECT_TRUE(map.menus.isEmpty());
    ask(QContextMenuEvent::Mouse, map.middleOf(1));
    const std::vector<const FSNode *> file{folder->children()[1].get()};
    EXPECT_EQ(nodesIn(map.selected), file);
    EXPECT_EQ(nodesIn(map.menus), file);
    EXPECT_EQ(map.menus[0][1].toPoint(), map.view.mapToGlobal(map.middleOf(1)));
    map.menus.clear();
    ask(QContextMenuEvent::Keyboard, {3, 3});
    EXPECT_EQ(nodesIn(map.menus), file);
    EXPECT_TRUE(map.view.tileArea(1).contains(map.view.mapFromGlobal(map.menus[0][1].toPoint())));

    // Selecting may change the folder before the menu opens.
    map.menus.clear();
    QObject::connect(&map.view, &TreemapView::selected, &map.view, [&] { map.view.setNode(nullptr); });
    ask(QContextMenuEvent::Mouse, map.middleOf(0));
    EXPECT_TRUE(map.menus.isEmpty());
}

TEST(TreemapView, NamesATileInItsToolTip) {
    for (const auto &[name, shown] : std::vector<std::pair<std::string, std::string>>{
             {"film.mov", "film.mov"},
             {"<b>bold</b>  &amp;", "<b>bold</b>  &amp;"},
             {"<img src=\"/etc/hostname\">", "<img src=\"/etc/hostname\">"},
             {"two\nlines\tand\x7f", "two␊lines␉and␡"},
             {"exe.\u202Egpj", "exe.\\u{202E}gpj"},
             {"two\u200Bnames", "two\\u{200B}names"},
             {"caf\xE9", "caf\uFFFD"},
         }) {
        const std::shared_ptr<FSNode> folder = makeRoot();
        add(*folder, name, 1'500'000);
        ShownTreemap map(folder.get());
        EXPECT_EQ(toolTipAt(map.view, map.middleOf(0)), shown + "\n1.5 MB");
    }
}

TEST(TreemapView, SelectsOnlyWhatHasATileOfItsOwn) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    map.view.setSelection(folder->children()[2].get());
    EXPECT_EQ(map.view.selectedTile(), 2U);
    map.view.setSelection(folder->children()[4].get());
    EXPECT_EQ(map.view.selectedTile(), std::nullopt);
    map.view.setMaxTiles(80);
    EXPECT_EQ(map.view.selectedTile(), 4U) << "it has a tile now, and is still what is selected";
    map.view.setSelection(nullptr);
    EXPECT_EQ(map.view.selectedTile(), std::nullopt);
    EXPECT_TRUE(map.selected.isEmpty()) << "only the user's selections are told";

    map.view.setMaxTiles(3);
    map.click(3);
    map.view.setNode(folder.get());
    EXPECT_EQ(map.view.selectedTile(), std::nullopt) << "that node is gone";
}

TEST(TreemapView, OpensTheFolderOfTheFirstClickAlsoWhereTheTilesHaveMovedSince) {
    const std::shared_ptr<FSNode> folder = testing::makeRoot();
    testing::addFolder(*folder, "left", 200'000'000);
    testing::addFolder(*folder, "right", 100'000'000);
    ShownTreemap map(folder.get());
    const QPoint second = map.middleOf(1);
    map.click(1);
    map.view.resize(800, 300);
    ASSERT_TRUE(map.view.tileArea(0).contains(second)) << "the tiles must move for this test";
    QTest::mouseDClick(&map.view, Qt::LeftButton, {}, second);
    EXPECT_EQ(nodesIn(map.drilledIn), std::vector<const FSNode *>{folder->children()[1].get()});
}

TEST(TreemapView, LetsGoOfTheTree) {
    std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    map.click(1);
    QTest::mouseMove(&map.view, map.middleOf(0));
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(&map.view);
    QAccessibleInterface *const tile = accessible->child(1);
    ASSERT_TRUE(tile->isValid());
    const QPoint middle = map.middleOf(0);

    map.view.setNode(nullptr);
    folder.reset();
    EXPECT_TRUE(map.view.tiles().empty());
    EXPECT_EQ(map.view.selectedTile(), std::nullopt);
    EXPECT_EQ(map.view.node(), nullptr);
    map.view.resize(300, 200);
    map.view.grab();
    QTest::mouseDClick(&map.view, Qt::LeftButton, {}, middle);
    EXPECT_EQ(toolTipAt(map.view, middle), "");
    EXPECT_FALSE(tile->isValid());
    EXPECT_TRUE(tile->text(QAccessible::Name).isEmpty());
    tile->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(map.selected.size(), 1);

    // Children that are gone are not looked at when the folder is shown again.
    folder = makeMixedFolder();
    map.view.setNode(folder.get());
    map.click(0);
    EXPECT_TRUE(folder->drop([](const FSNode &child) { return child.name != "film.mov"; }));
    map.view.setNode(folder.get());
    ASSERT_EQ(map.view.tiles().size(), 1U);
    EXPECT_EQ(map.view.tiles()[0].node->name, "film.mov");
    map.view.resize(4, 300);
    EXPECT_TRUE(map.view.tiles().empty()) << "there is no room";
}

} // namespace brimvale
