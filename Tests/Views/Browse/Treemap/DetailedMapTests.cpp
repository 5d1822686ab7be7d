#include "Views/Browse/Treemap/ShownTreemap.h"
#include "Views/Components/Theme.h"

#include <QAccessible>
#include <QApplication>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::add;
using testing::addFolder;
using ::testing::ElementsAre;
using testing::nodesIn;
using testing::ShownTreemap;

/// documents with reports (annual.pdf, draft.pdf) and letter.txt, and film.mov.
std::shared_ptr<FSNode> makeNestedFolder() {
    std::shared_ptr<FSNode> folder = testing::makeRoot();
    FSNode &documents = addFolder(*folder, "documents");
    FSNode &reports = addFolder(documents, "reports");
    add(reports, "annual.pdf", 300'000'000);
    add(reports, "draft.pdf", 100'000'000);
    add(documents, "letter.txt", 200'000'000);
    add(*folder, "film.mov", 400'000'000);
    return folder;
}

struct ShownDetails : ShownTreemap {
    explicit ShownDetails(FSNode *node) : ShownTreemap(node) {
        view.resize(600, 400);
        view.setDetailed(true);
    }

    [[nodiscard]] std::size_t tile(std::string_view name) const {
        const auto tiles = view.tiles();
        const auto found = std::find_if(tiles.begin(), tiles.end(),
                                        [&](const TreemapTile &one) { return one.node->name == name; });
        EXPECT_NE(found, tiles.end()) << name;
        return static_cast<std::size_t>(found - tiles.begin());
    }
    [[nodiscard]] QPoint headingOf(std::string_view name) const {
        return view.tileArea(tile(name)).topLeft() + QPoint(20, 8);
    }
    [[nodiscard]] std::string selectedName() const {
        const std::optional<std::size_t> index = view.selectedTile();
        return index ? std::string(view.tiles()[*index].node->name) : "";
    }
};

} // namespace

TEST(DetailedMap, IsAskedForAndNestsFolders) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    ShownTreemap map(folder.get());
    EXPECT_FALSE(map.view.isDetailed());
    EXPECT_EQ(map.view.tiles().size(), 2U);
    map.view.resize(600, 400);
    map.view.setDetailed(true);
    std::vector<std::string> names;
    for (const TreemapTile &tile : map.view.tiles())
        names.push_back(tile.node->name);
    EXPECT_THAT(names,
                ElementsAre("documents", "reports", "annual.pdf", "draft.pdf", "letter.txt", "film.mov"));
    map.view.setDetailed(false);
    EXPECT_EQ(map.view.tiles().size(), 2U);
}

TEST(DetailedMap, SelectsTheInnermostTileAndEntersFolders) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    ShownDetails map(folder.get());
    map.click(map.tile("draft.pdf"));
    EXPECT_EQ(map.selectedName(), "draft.pdf");
    QTest::mouseClick(&map.view, Qt::LeftButton, {}, map.headingOf("reports"));
    EXPECT_EQ(map.selectedName(), "reports");
    EXPECT_EQ(map.selected.size(), 2);

    map.doubleClick(map.tile("letter.txt"));
    EXPECT_TRUE(map.drilledIn.isEmpty()) << "a file cannot be entered";
    QTest::mouseClick(&map.view, Qt::LeftButton, {}, map.headingOf("reports"));
    QTest::mouseDClick(&map.view, Qt::LeftButton, {}, map.headingOf("reports"));
    EXPECT_EQ(nodesIn(map.drilledIn),
              std::vector<const FSNode *>{testing::descendant(*folder, {"documents", "reports"})});
}

TEST(DetailedMap, IsWalkedWithTheKeys) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    ShownDetails map(folder.get());
    const auto press = [&](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&map.view, &event);
        return event.isAccepted();
    };
    press(Qt::Key_Down);
    EXPECT_EQ(map.selectedName(), "documents");
    press(Qt::Key_Down);
    EXPECT_EQ(map.selectedName(), "annual.pdf") << "down leads into the folder";
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_EQ(map.selectedName(), "reports");
    press(Qt::Key_Return);
    EXPECT_EQ(map.drilledIn.size(), 1);
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_EQ(map.selectedName(), "documents");
    EXPECT_FALSE(press(Qt::Key_Escape)) << "there is nothing around it here";
    EXPECT_EQ(map.selectedName(), "documents");
}

TEST(DetailedMap, KeepsTheSelectionWhileItsTilesComeAndGo) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    ShownDetails map(folder.get());
    FSNode *draft = testing::descendant(*folder, {"documents", "reports", "draft.pdf"});
    map.view.setSelection(draft);
    EXPECT_EQ(map.selectedName(), "draft.pdf");
    map.view.resize(200, 55);
    EXPECT_EQ(map.selectedName(), "reports") << "which is closed now";
    map.view.setDetailed(false);
    EXPECT_EQ(map.selectedName(), "documents");
    map.view.setDetailed(true);
    map.view.resize(600, 400);
    EXPECT_EQ(map.selectedName(), "draft.pdf");
    EXPECT_TRUE(map.selected.isEmpty());
    FSNode other("other", "/other", true);
    map.view.setSelection(&other);
    EXPECT_EQ(map.selectedName(), "");
}

TEST(DetailedMap, TellsPathAndSizeOfWhatIsUnderThePointer) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    testing::addAggregate(*folder, 3, 100'000'000);
    ShownDetails map(folder.get());
    const std::string path = folder->path();
    QSignalSpy hovered(&map.view, &TreemapView::hovered);
    QTest::mouseMove(&map.view, {-5, -5});
    for (const auto &[name, shown] :
         {std::pair("annual.pdf", path + "/documents/reports/annual.pdf · 300 MB"),
          std::pair("3 smaller items", "3 smaller items · " + path + " · 100 MB")}) {
        hovered.clear();
        QTest::mouseMove(&map.view, map.middleOf(map.tile(name)));
        QTest::qWait(0);
        ASSERT_EQ(hovered.size(), 1);
        EXPECT_EQ(hovered[0][0].toString().toStdString(), shown);
    }
    hovered.clear();
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&map.view, &leave);
    ASSERT_EQ(hovered.size(), 1);
    EXPECT_TRUE(hovered[0][0].toString().isEmpty());
}

TEST(DetailedMap, LetsTilesStandBackThatDoNotMatch) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    for (const bool isDetailed : {true, false}) {
        ShownDetails map(folder.get());
        map.view.setDetailed(isDetailed);
        const std::string other = isDetailed ? "letter.txt" : "documents";
        const auto colorOf = [&](std::string_view name) {
            return map.view.grab().toImage().pixelColor(map.view.tileArea(map.tile(name)).bottomRight() -
                                                        QPoint(8, 8));
        };
        const QColor film = colorOf("film.mov");
        const QColor text = colorOf(other);
        map.view.setHighlighted([](const FSNode &node) { return node.name == "film.mov"; });
        EXPECT_EQ(colorOf("film.mov"), film);
        EXPECT_GT(colorOf(other).lightness(), text.lightness() + 20) << "nearer to the light card";
        map.view.setHighlighted({});
        EXPECT_EQ(colorOf(other), text);
    }
}

TEST(DetailedMap, IsATreeForAssistiveTechnology) {
    const std::shared_ptr<FSNode> folder = makeNestedFolder();
    ShownDetails map(folder.get());
    QAccessibleInterface *const tree = QAccessible::queryAccessibleInterface(&map.view);
    EXPECT_EQ(tree->role(), QAccessible::Tree);
    ASSERT_EQ(tree->childCount(), 2);
    QAccessibleInterface *const documents = tree->child(0);
    EXPECT_EQ(documents->role(), QAccessible::TreeItem);
    EXPECT_EQ(documents->text(QAccessible::Name), "documents, 600 MB, 60 percent");
    EXPECT_TRUE(documents->state().expanded);
    EXPECT_EQ(documents->parent(), tree);
    ASSERT_EQ(documents->childCount(), 2);
    QAccessibleInterface *const reports = documents->child(0);
    QAccessibleInterface *const letter = documents->child(1);
    EXPECT_EQ(letter->text(QAccessible::Name), "letter.txt, 200 MB, 20 percent");
    EXPECT_FALSE(letter->state().expandable);
    EXPECT_EQ(letter->childCount(), 0);
    EXPECT_EQ(letter->parent(), documents);
    EXPECT_EQ(documents->indexOfChild(letter), 1);
    EXPECT_EQ(tree->indexOfChild(letter), -1);
    EXPECT_EQ(tree->indexOfChild(tree->child(1)), 1);
    EXPECT_EQ(documents->child(2), nullptr);
    const QPoint middle = letter->rect().center();
    EXPECT_EQ(tree->childAt(middle.x(), middle.y()), documents);
    EXPECT_EQ(documents->childAt(middle.x(), middle.y()), letter);

    map.view.setFocus();
    reports->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(map.selectedName(), "draft.pdf");
    EXPECT_EQ(tree->focusChild(), reports->child(1));
    map.view.setNode(nullptr);
    EXPECT_EQ(tree->childCount(), 0);
    EXPECT_FALSE(letter->isValid());
    EXPECT_EQ(letter->childCount(), 0);
}

} // namespace brimvale
