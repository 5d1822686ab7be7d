#include "Views/Browse/Treemap/ShownTreemap.h"

#include <QAccessible>
#include <gmock/gmock.h>

namespace brimvale {

using ::testing::ElementsAre;
using testing::makeMixedFolder;
using testing::nodesIn;
using testing::ShownTreemap;

TEST(TreemapAccessibility, ExposesItsTilesToAssistiveTechnology) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(&map.view);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), "Treemap of root");
    ASSERT_EQ(list->childCount(), 4);
    EXPECT_EQ(list->child(4), nullptr);
    EXPECT_EQ(list->child(-1), nullptr);

    std::vector<std::string> names;
    for (int i = 0; i < list->childCount(); ++i) {
        QAccessibleInterface *const tile = list->child(i);
        names.push_back(tile->text(QAccessible::Name).toStdString());
        EXPECT_EQ(tile->role(), QAccessible::ListItem);
        EXPECT_EQ(tile->parent(), list);
        EXPECT_EQ(list->indexOfChild(tile), i);
        const QRect area = map.view.tileArea(static_cast<std::size_t>(i));
        EXPECT_EQ(tile->rect(), area.translated(map.view.mapToGlobal(QPoint())));
        EXPECT_EQ(list->childAt(tile->rect().center().x(), tile->rect().center().y()), tile);
        EXPECT_FALSE(tile->state().selected);
    }
    EXPECT_THAT(names, ElementsAre("documents, 600 MB, 60 percent", "film.mov, 300 MB, 30 percent",
                                   "a, 40 MB, 4 percent", "2 smaller items, 60 MB, 6 percent"));

    const auto act = [&](int tile, const QString &action) {
        ASSERT_TRUE(list->child(tile)->actionInterface()->actionNames().contains(action));
        list->child(tile)->actionInterface()->doAction(action);
    };
    const FSNode *const documents = folder->children()[0].get();
    act(0, "open");
    EXPECT_EQ(nodesIn(map.drilledIn), std::vector<const FSNode *>{documents});
    EXPECT_FALSE(list->child(1)->actionInterface()->actionNames().contains("open"));
    act(0, QAccessibleActionInterface::showMenuAction());
    EXPECT_EQ(nodesIn(map.menus), std::vector<const FSNode *>{documents});
    act(3, QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(list->child(3)->state().selected);
    EXPECT_FALSE(list->child(0)->state().selected);
}

TEST(TreemapAccessibility, TellsAssistiveTechnologyWhereTheFocusIs) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(&map.view);
    map.view.setFocus();
    ASSERT_TRUE(map.view.hasFocus());
    EXPECT_EQ(list->focusChild(), nullptr);
    QTest::keyClick(&map.view, Qt::Key_Down);
    QTest::keyClick(&map.view, Qt::Key_Right);
    EXPECT_EQ(list->focusChild(), list->child(1));
    EXPECT_TRUE(list->child(1)->state().focused);
}

} // namespace brimvale
