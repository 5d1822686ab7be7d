#include "Views/BrowseView.h"

#include "Support/TemporaryFolder.h"
#include "Views/Components/Breadcrumb.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/StateMessage.h"
#include "Views/OutlineView.h"
#include "Views/TreemapView.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// The page with a scanned folder: big/inner/file, big/other, small/file.
class BrowsePage : public ::testing::Test {
protected:
    BrowsePage() {
        folder.makeFile("big/inner/file", 90'000);
        folder.makeFile("big/other/file", 20'000);
        folder.makeFile("small/file", 5'000);
        page.resize(1000, 700);
        page.show();
    }

    void scan() {
        model.startScan(folder.path());
        ASSERT_TRUE(QTest::qWaitFor([&] { return *model.tree != nullptr; }, 20'000));
    }

    template<class Widget>
    Widget &find(const char *name) {
        return *page.findChild<Widget *>(QLatin1String(name));
    }

    [[nodiscard]] FSNode &node(std::initializer_list<const char *> names) const {
        FSNode *found = model.tree->get();
        for (const char *name : names) {
            const auto children = found->children();
            const auto child = std::find_if(children.begin(), children.end(),
                                            [&](const auto &one) { return one->name == name; });
            found = child->get();
        }
        return *found;
    }

    void click(const char *name) { QTest::mouseClick(&find<QPushButton>(name), Qt::LeftButton); }

    void clickTile(const FSNode &of, bool twice) {
        TreemapView &treemap = find<TreemapView>("treemap");
        for (const TreemapTile &tile : treemap.tiles())
            if (tile.node == &of) {
                const QPoint middle =
                    QRectF(tile.rect.x, tile.rect.y, tile.rect.width, tile.rect.height).center().toPoint();
                QTest::mouseClick(&treemap, Qt::LeftButton, {}, middle);
                if (twice)
                    QTest::mouseDClick(&treemap, Qt::LeftButton, {}, middle);
                return;
            }
        FAIL() << of.name << " has no tile";
    }

    QString detail(const char *name) { return find<QLabel>(name).text(); }
    QString detailName() { return find<ElidedLabel>("detailName").text(); }

    testing::TemporaryFolder folder;
    CorvelModel model;
    BrowseView page{model};
};

} // namespace

TEST_F(BrowsePage, InvitesToScanAndShowsWhatWasFound) {
    EXPECT_TRUE(page.findChild<StateMessage *>()->isVisible());
    EXPECT_FALSE(find<QWidget>("results").isVisible());
    EXPECT_FALSE(find<QLabel>("scanFiles").isVisible());
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(find<QLineEdit>("filter").hasFocus()) << "there is nothing to filter yet";
    scan();
    EXPECT_FALSE(page.findChild<StateMessage *>()->isVisible());
    EXPECT_TRUE(find<QWidget>("results").isVisible());
    EXPECT_EQ(find<QLabel>("scanFiles").text(), QStringLiteral("3 files"));
    EXPECT_FALSE(find<QLabel>("scanUnreadable").isVisible());
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.tree->get());
    EXPECT_EQ(find<OutlineView>("outline").model()->rowCount(), 2);
    EXPECT_EQ(detailName(), QString::fromStdString((*model.tree)->name));
}

TEST_F(BrowsePage, SaysWhyThereIsNothingToShow) {
    const StateMessage &message = *page.findChild<StateMessage *>();
    folder.makeFolder("empty");
    struct Case {
        std::string path;
        QString title;
    };
    const std::string longest(255, 'W');
    folder.makeFolder(longest + "/" + longest);
    for (const Case &one : {Case{folder.path(longest + "/" + longest), QStringLiteral("Nothing in here")},
                            Case{folder.path("empty"), QStringLiteral("Nothing in here")},
                            Case{folder.path("missing"), QStringLiteral("Nothing to scan")},
                            Case{folder.path("small/file"), QStringLiteral("This could not be read")}}) {
        model.startScan(one.path);
        EXPECT_EQ(message.title(), QStringLiteral("Scanning…"));
        model.chooseScanRoot("/"); // which is not what is told about
        ASSERT_TRUE(QTest::qWaitFor([&] { return !*model.isScanning; }, 20'000));
        EXPECT_EQ(message.title(), one.title);
        const QString ending = QString::fromStdString(one.path).right(5) + QStringLiteral("”");
        EXPECT_TRUE(message.sentence().contains(ending)) << "the path, or its ends";
        const auto *sentence = message.findChild<QLabel *>(QStringLiteral("stateSentence"));
        EXPECT_LE(sentence->sizeHint().width(), sentence->width());
        EXPECT_FALSE(message.sentence().contains(QStringLiteral("“/”")));
    }
}

TEST_F(BrowsePage, StartsAndStopsFromTheBar) {
    auto &presets = find<QComboBox>("presets");
    presets.setCurrentIndex(presets.count() - 1);
    emit presets.activated(presets.count() - 1);
    EXPECT_EQ(*model.scanRootPath, "/");
    EXPECT_FALSE(*model.isScanning) << "choosing a place does not scan it";
    EXPECT_EQ(find<ElidedLabel>("scanRoot").text(), QStringLiteral("/"));

    model.chooseScanRoot(folder.path());
    EXPECT_EQ(presets.currentIndex(), -1) << "no preset is this folder";
    click("scan");
    EXPECT_TRUE(*model.isScanning);
    EXPECT_EQ(find<QPushButton>("scan").text(), QStringLiteral("Stop"));
    EXPECT_TRUE(find<QWidget>("scanProgress").isVisible());
    click("scan");
    EXPECT_TRUE(model.scanStats()->cancelled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !*model.isScanning; }, 20'000));
    EXPECT_EQ(*model.tree, nullptr);
    EXPECT_EQ(find<QPushButton>("scan").text(), QStringLiteral("Scan"));
}

TEST_F(BrowsePage, ScansAChosenFolderAtOnce) {
    click("chooseFolder");
    auto *chooser = page.window()->findChild<QFileDialog *>(QStringLiteral("folderChooser"));
    ASSERT_NE(chooser, nullptr);
    emit chooser->fileSelected(QString::fromStdString(folder.path("small")));
    chooser->close();
    EXPECT_EQ(*model.scanRootPath, folder.path("small"));
    EXPECT_TRUE(*model.isScanning);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !*model.isScanning; }, 20'000));
}

TEST_F(BrowsePage, SelectsInOutlineAndTreemapTogether) {
    scan();
    auto &outline = find<OutlineView>("outline");
    auto &treemap = find<TreemapView>("treemap");
    clickTile(node({"small"}), false);
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"small"})});
    EXPECT_EQ(detailName(), QStringLiteral("small"));
    EXPECT_EQ(detail("files"), QStringLiteral("1"));

    // A row deeper in the outline marks the tile that it lies in.
    outline.setFocus();
    outline.setCurrentIndex(outline.model()->index(0, 0));
    QTest::keyClick(&outline, Qt::Key_Right);
    QTest::keyClick(&outline, Qt::Key_Down);
    EXPECT_EQ(detailName(), QStringLiteral("inner"));
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, &node({"big"}));

    QTest::keyClick(&outline, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(detailName(), QStringLiteral("2 items selected"));
    EXPECT_EQ(detail("files"), QStringLiteral("2"))
        << "what lies in another folder that is selected counts once";
}

TEST_F(BrowsePage, EntersFoldersAndComesBack) {
    scan();
    auto &treemap = find<TreemapView>("treemap");
    auto &outline = find<OutlineView>("outline");
    clickTile(node({"big"}), true);
    EXPECT_EQ(treemap.node(), &node({"big"}));
    EXPECT_EQ(outline.focusFolder(), &node({"big"}));

    outline.setFocus();
    outline.setCurrentIndex(outline.model()->index(0, 0, outline.rootIndex()));
    QTest::keyClick(&outline, Qt::Key_Return);
    EXPECT_EQ(treemap.node(), &node({"big", "inner"}));
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(treemap.node(), &node({"big"}));
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"big", "inner"})});
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, &node({"big", "inner"}));
    EXPECT_EQ(detailName(), QStringLiteral("inner"));

    const auto rootButton = [&]() -> QToolButton * {
        for (QToolButton *button : find<Breadcrumb>("breadcrumb").findChildren<QToolButton *>())
            if (button->isVisible() &&
                button->accessibleName() == QString::fromStdString((*model.tree)->name))
                return button;
        return nullptr;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return rootButton() != nullptr; }, 5'000));
    QTest::mouseClick(rootButton(), Qt::LeftButton);
    EXPECT_EQ(treemap.node(), model.tree->get());
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(treemap.node(), model.tree->get()) << "nothing lies around the scan root";
}

TEST_F(BrowsePage, DropsTheSelectionWhenTheFolderShownIsChosenAgain) {
    scan();
    clickTile(node({"small"}), false);
    auto &breadcrumb = find<Breadcrumb>("breadcrumb");
    emit breadcrumb.chosen(model.tree->get());
    EXPECT_TRUE(find<OutlineView>("outline").selectedNodes().empty());
    EXPECT_EQ(find<TreemapView>("treemap").selectedTile(), std::nullopt);
    EXPECT_EQ(detailName(), QString::fromStdString((*model.tree)->name));
}

TEST_F(BrowsePage, NamesTheWayAsItStandsAndKeepsTheFocusOnIt) {
    folder.makeFile("R&D/file", 200'000);
    scan();
    const std::string &rootName = (*model.tree)->name;
    auto &breadcrumb = find<Breadcrumb>("breadcrumb");
    const auto button = [&](const std::string &name) -> QToolButton * {
        for (QToolButton *one : breadcrumb.findChildren<QToolButton *>())
            if (!one->isHidden() && one->accessibleName() == QString::fromStdString(name))
                return one;
        return nullptr;
    };
    emit breadcrumb.chosen(&node({"R&D"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return button("R&D") != nullptr; }, 5'000));
    EXPECT_TRUE(QKeySequence::mnemonic(button("R&D")->text()).isEmpty()) << "no key is hidden in a name";

    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    button(rootName)->setFocus();
    QTest::keyClick(button(rootName), Qt::Key_Space);
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.tree->get());
    EXPECT_TRUE(button(rootName)->hasFocus());
}

TEST_F(BrowsePage, FiltersByNameAndEscapesFromIt) {
    scan();
    auto &filter = find<QLineEdit>("filter");
    const QAbstractItemModel &rows = *find<OutlineView>("outline").model();
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&filter, QStringLiteral("SMALL"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows.rowCount() == 1; }, 5'000));
    QTest::keyClick(&filter, Qt::Key_Escape);
    EXPECT_TRUE(filter.text().isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows.rowCount() == 2; }, 5'000));
}

TEST_F(BrowsePage, TakesNothingInANameForAShortcutOrMarkup) {
    folder.makeFile("big/<b>Q&A && more/file", 200'000);
    scan();
    clickTile(node({"big"}), true);
    clickTile(node({"big", "<b>Q&A && more"}), true);
    const auto buttons = find<Breadcrumb>("breadcrumb").findChildren<QToolButton *>();
    const auto focused = std::find_if(buttons.begin(), buttons.end(), [](const QToolButton *button) {
        return button->accessibleName() == QStringLiteral("<b>Q&A && more");
    });
    ASSERT_NE(focused, buttons.end());
    EXPECT_EQ((*focused)->text(), QStringLiteral("<b>Q&&A &&&& more"));
    EXPECT_TRUE((*focused)->shortcut().isEmpty());
    EXPECT_FALSE((*focused)->toolTip().contains(QStringLiteral("<b>")));
}

TEST_F(BrowsePage, ClearsAFilterThatWouldHideTheFolderThatIsEntered) {
    scan();
    auto &filter = find<QLineEdit>("filter");
    auto &outline = find<OutlineView>("outline");
    filter.setText(QStringLiteral("inner"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return outline.model()->rowCount() == 1; }, 5'000));
    clickTile(node({"big"}), true); // holds what matches
    EXPECT_EQ(filter.text(), QStringLiteral("inner"));
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    clickTile(node({"small"}), true);
    EXPECT_TRUE(filter.text().isEmpty());
    EXPECT_EQ(outline.focusFolder(), &node({"small"}));
    EXPECT_EQ(outline.model()->rowCount(outline.rootIndex()), 1);
}

TEST_F(BrowsePage, CopiesPathsAndLetsGoOfAReplacedTree) {
    scan();
    clickTile(node({"small"}), false);
    click("copyPath");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(folder.path("small")));

    const std::weak_ptr<FSNode> earlier = *model.tree;
    model.startScan();
    EXPECT_EQ(find<TreemapView>("treemap").node(), nullptr);
    EXPECT_FALSE(find<QPushButton>("copyPath").isEnabled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return *model.tree != nullptr && earlier.expired(); }, 20'000));
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.tree->get());
}

} // namespace brimvale
