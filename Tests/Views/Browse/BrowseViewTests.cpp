#include "Views/Browse/BrowseView.h"

#include "Core/Model/AdministratorScan.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Scan/ScanRootPreset.h"
#include "Core/Scan/ScanStats.h"
#include "Support/PageTest.h"
#include "Support/SampleTree.h"
#include "Views/Browse/Breadcrumb.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Browse/UnreadableSheet.h"
#include "Views/Components/StateMessage.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolButton>
#include <filesystem>
#include <gmock/gmock.h>
#include <span>

namespace brimvale {

namespace {

using testing::eventually;

struct ShownBrowse : BrowseView {
    explicit ShownBrowse(CorvelModel &model)
        : BrowseView(model.scan, model.removals, model.duplicates, model.volumes) {}
};

/// The page with a scanned folder: big/inner/file, big/other, small/file.
class BrowsePage : public testing::PageTest<ShownBrowse> {
protected:
    BrowsePage() {
        folder.makeFile("big/inner/file", 90'000);
        folder.makeFile("big/other/file", 20'000);
        folder.makeFile("small/file", 5'000);
        page.show();
    }

    void scan() {
        model.scan.startScan(folder.path());
        ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    }

    [[nodiscard]] FSNode &node(std::initializer_list<std::string_view> names) const {
        return *testing::descendant(*model.scan->tree, names);
    }

    void clickTile(const FSNode &of, bool twice) {
        TreemapView &treemap = find<TreemapView>("treemap");
        for (std::size_t i = 0; i < treemap.tiles().size(); ++i)
            if (treemap.tiles()[i].node == &of) {
                QTest::mouseClick(&treemap, Qt::LeftButton, {}, treemap.tileArea(i).center());
                if (twice)
                    QTest::mouseDClick(&treemap, Qt::LeftButton, {}, treemap.tileArea(i).center());
                return;
            }
        FAIL() << of.name.view() << " has no tile";
    }

    /// The button for a folder in the way from the root; null where it is not to be seen.
    QToolButton *button(const std::string &name) {
        for (QToolButton *one : find<Breadcrumb>("breadcrumb").findChildren<QToolButton *>())
            if (!one->isHidden() && one->accessibleName().toStdString() == name)
                return one;
        return nullptr;
    }

    testing::TemporaryFolder folder;
};

} // namespace

TEST_F(BrowsePage, InvitesToScanAndShowsWhatWasFound) {
    EXPECT_TRUE(page.findChild<StateMessage *>()->isVisible());
    EXPECT_FALSE(isVisible("results"));
    EXPECT_FALSE(isVisible("scanFiles"));
    testing::activate(page);
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(find<QLineEdit>("filter").hasFocus()) << "there is nothing to filter yet";
    scan();
    EXPECT_FALSE(page.findChild<StateMessage *>()->isVisible());
    EXPECT_TRUE(isVisible("results"));
    EXPECT_EQ(text("scanFiles"), "3 files");
    EXPECT_FALSE(isVisible("scanUnreadable"));
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.scan->tree.get());
    EXPECT_EQ(find<OutlineView>("outline").model()->rowCount(), 2);
    EXPECT_EQ(text("detailName"), model.scan->tree->name);
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
    for (const Case &one :
         {Case{folder.path(longest + "/" + longest), "This folder is empty"},
          Case{folder.path("empty"), "This folder is empty"}, Case{folder.path("missing"), "Nothing to scan"},
          Case{folder.path("small/file"), "This could not be read"}}) {
        model.scan.startScan(one.path);
        EXPECT_EQ(message.title(), "Scanning…");
        model.scan.chooseScanRoot("/"); // which is not what is told about
        ASSERT_TRUE(eventually([&] { return !model.scan->isScanning; }));
        EXPECT_EQ(message.title(), one.title);
        const QString ending = QString::fromStdString(one.path).right(5) + QStringLiteral("”");
        EXPECT_TRUE(message.sentence().contains(ending)) << "the path, or its ends";
        const auto *sentence = message.findChild<QLabel *>("stateSentence");
        EXPECT_LE(sentence->sizeHint().width(), sentence->width());
        EXPECT_FALSE(message.sentence().contains("“/”"));
    }
}

TEST_F(BrowsePage, StartsAndStopsFromTheBar) {
    auto &presets = find<QComboBox>("presets");
    presets.setCurrentIndex(static_cast<int>(ScanRootPreset::allCases().size()) - 1);
    emit presets.activated(presets.currentIndex());
    EXPECT_EQ(model.scan->scanRootPath, Host::current().root);
    EXPECT_FALSE(model.scan->isScanning) << "choosing a place does not scan it";
    EXPECT_EQ(text("scanRoot"), Host::current().root);

    model.scan.chooseScanRoot(folder.path());
    EXPECT_EQ(presets.currentIndex(), -1) << "no preset is this folder";
    click("scan");
    EXPECT_TRUE(model.scan->isScanning);
    EXPECT_EQ(text("scan"), "Stop");
    EXPECT_TRUE(isVisible("scanProgress"));
    click("scan");
    EXPECT_TRUE(model.scan.scanStats()->cancelled());
    ASSERT_TRUE(eventually([&] { return !model.scan->isScanning; }));
    EXPECT_EQ(model.scan->tree, nullptr);
    EXPECT_EQ(text("scan"), "Scan");
}

TEST_F(BrowsePage, ScansAChosenFolderAtOnce) {
    click("chooseFolder");
    auto *chooser = page.window()->findChild<QFileDialog *>("folderChooser");
    ASSERT_NE(chooser, nullptr);
    emit chooser->fileSelected(QString::fromStdString(folder.path("small")));
    chooser->close();
    EXPECT_EQ(model.scan->scanRootPath, folder.path("small"));
    EXPECT_TRUE(model.scan->isScanning);
    ASSERT_TRUE(eventually([&] { return !model.scan->isScanning; }));
}

TEST_F(BrowsePage, SelectsInOutlineAndTreemapTogether) {
    scan();
    auto &outline = find<OutlineView>("outline");
    auto &treemap = find<TreemapView>("treemap");
    clickTile(node({"small"}), false);
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"small"})});
    EXPECT_EQ(text("detailName"), "small");
    EXPECT_EQ(text("files"), "1");

    // A row deeper in the outline marks the tile that it lies in.
    outline.setFocus();
    outline.setCurrentIndex(outline.model()->index(0, 0));
    QTest::keyClick(&outline, Qt::Key_Right);
    QTest::keyClick(&outline, Qt::Key_Down);
    EXPECT_EQ(text("detailName"), "inner");
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, &node({"big"}));

    QTest::keyClick(&outline, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(text("detailName"), "2 items selected");
    EXPECT_EQ(text("files"), "2") << "what lies in another folder that is selected counts once";
}

TEST_F(BrowsePage, SwitchesToADetailedMap) {
    scan();
    auto &treemap = find<TreemapView>("treemap");
    treemap.window()->resize(1400, 900);
    QCoreApplication::processEvents();
    EXPECT_FALSE(treemap.isDetailed());
    EXPECT_FALSE(isVisible("mapColors"));
    click(find<QToolButton>("detailedMapButton"));
    EXPECT_TRUE(treemap.isDetailed());
    EXPECT_TRUE(page.detailedMap()->isChecked());
    FSNode &inner = node({"big", "inner"});
    clickTile(*inner.children()[0], false);
    EXPECT_EQ(find<OutlineView>("outline").selectedNodes(), std::vector<FSNode *>{inner.children()[0].get()});
    treemap.setFocus();
    QTest::keyClick(&treemap, Qt::Key_Escape);
    EXPECT_EQ(find<OutlineView>("outline").selectedNodes(), std::vector<FSNode *>{&inner});
    QTest::keyClick(&treemap, Qt::Key_Return);
    EXPECT_EQ(treemap.node(), &inner);
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    FSNode &other = node({"big", "other"});
    auto &outline = find<OutlineView>("outline");
    const auto &rows = dynamic_cast<const OutlineModel &>(*outline.model());
    outline.expand(rows.indexOf(node({"big"})));
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {},
                      outline.visualRect(rows.indexOf(other)).center());
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, &other);
    EXPECT_EQ(text("detailName"), "other");

    EXPECT_TRUE(isVisible("mapColors"));
    EXPECT_FALSE(isVisible("mapLegend"));
    find<QComboBox>("mapColors").setCurrentIndex(2);
    EXPECT_TRUE(isVisible("mapLegend"));
    EXPECT_EQ(find<QWidget>("mapLegend").accessibleDescription().section(',', 0, 0), "Up to a month");
    page.detailedMap()->trigger();
    EXPECT_FALSE(treemap.isDetailed());
    EXPECT_FALSE(isVisible("mapLegend"));
}

TEST_F(BrowsePage, KeepsTheTreemapInItsPlaceWhenARemarkAppears) {
    scan();
    page.resize(1100, 700);
    QCoreApplication::processEvents();
    const QSize before = find<TreemapView>("treemap").size();
    auto &details = find<DetailPanel>("detailPanel");
    for (const bool isThere : {true, false}) {
        details.showObjection(
            isThere ? std::optional(DetailPanel::Objection{QStringLiteral("It is protected."), {}})
                    : std::nullopt);
        QTest::qWait(0);
        EXPECT_EQ(find<TreemapView>("treemap").size(), before);
    }
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
    EXPECT_EQ(text("detailName"), "inner");

    const std::string &rootName = model.scan->tree->name;
    ASSERT_TRUE(eventually([&] { return button(rootName) != nullptr; }));
    click(*button(rootName));
    EXPECT_EQ(treemap.node(), model.scan->tree.get());
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(treemap.node(), model.scan->tree.get()) << "nothing lies around the scan root";
}

TEST_F(BrowsePage, GoesBackForwardAndUpByKeys) {
    scan();
    const auto &treemap = find<TreemapView>("treemap");
    FSNode *root = model.scan->tree.get();
    clickTile(node({"big"}), true);
    clickTile(node({"big", "inner"}), true);
    testing::activate(page);
    struct Step {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        FSNode *shown;
    };
    for (const Step &step : {
             Step{Qt::Key_Left, Qt::AltModifier, &node({"big"})},
             Step{Qt::Key_Left, Qt::AltModifier, root},
             Step{Qt::Key_Left, Qt::AltModifier, root},
             Step{Qt::Key_Right, Qt::AltModifier, &node({"big"})},
             Step{Qt::Key_BracketRight, Qt::ControlModifier, &node({"big", "inner"})},
             Step{Qt::Key_Right, Qt::AltModifier, &node({"big", "inner"})},
             Step{Qt::Key_Backspace, Qt::NoModifier, &node({"big"})},
             Step{Qt::Key_Right, Qt::AltModifier, &node({"big"})}, // going up is a step of its own
             Step{Qt::Key_BracketLeft, Qt::ControlModifier, &node({"big", "inner"})},
             Step{Qt::Key_Up, Qt::AltModifier, &node({"big"})},
             Step{Qt::Key_Up, Qt::AltModifier, root},
         }) {
        QTest::keyClick(&page, step.key, step.modifiers);
        EXPECT_EQ(treemap.node(), step.shown) << step.key;
    }
    auto &filter = find<QLineEdit>("filter");
    filter.setFocus();
    QTest::keyClicks(&filter, "ab");
    QTest::keyClick(&filter, Qt::Key_Backspace);
    EXPECT_EQ(filter.text(), "a") << "in a field the key is the field's";
}

TEST_F(BrowsePage, ScansAFolderAgainInItsPlace) {
    folder.makeFile("big/inner/deep/file", 30'000);
    scan();
    auto &outline = find<OutlineView>("outline");
    const auto rescan = [&](std::string_view name, std::int64_t files) {
        testing::activate(page);
        outline.select(&node({name}));
        emit outline.selectionChangedTo({&node({name})});
        QTest::keyClick(&page, Qt::Key_F5, Qt::ShiftModifier);
        EXPECT_EQ(model.scan->rescannedPath, folder.path(name));
        EXPECT_TRUE(isVisible("scanProgress"));
        ASSERT_TRUE(eventually([&] { return model.scan->rescannedPath.empty(); }));
        EXPECT_EQ(model.scan->tree->fileCount, files);
        EXPECT_FALSE(isVisible("scanProgress"));
    };
    const auto indexOf = [&](FSNode &of) {
        return static_cast<OutlineModel *>(outline.model())->indexOf(of);
    };
    outline.expand(indexOf(node({"big"})));
    outline.expand(indexOf(node({"big", "inner"})));
    folder.makeFile("big/more", 10'000);
    rescan("big", 5);
    EXPECT_EQ(text("detailName"), "big");
    EXPECT_TRUE(outline.isExpanded(indexOf(node({"big"}))));
    EXPECT_TRUE(outline.isExpanded(indexOf(node({"big", "inner"}))));

    // The focus, and a selection below the folder.
    emit outline.opened(&node({"big", "inner"}));
    outline.select(&node({"big", "inner", "deep"}));
    folder.makeFile("big/inner/deep/another", 10'000);
    model.scan.rescan(FileURL(folder.path("big")));
    ASSERT_TRUE(eventually([&] { return model.scan->rescannedPath.empty(); }));
    EXPECT_EQ(outline.focusFolder(), &node({"big", "inner"}));
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"big", "inner", "deep"})});
    ASSERT_TRUE(eventually([&] { return text("files") == "2"; }));

    std::filesystem::remove_all(folder.path("big/inner"));
    model.scan.rescan(FileURL(folder.path("big")));
    ASSERT_TRUE(eventually([&] { return model.scan->rescannedPath.empty(); }));
    EXPECT_EQ(outline.focusFolder(), &node({"big"})) << "the nearest ancestor that is left";

    std::filesystem::remove_all(folder.path("small"));
    model.scan.rescan(FileURL(folder.path()));
    EXPECT_EQ(find<QPushButton>("scan").text(), "Stop");
    testing::click(page, "scan");
    EXPECT_TRUE(model.scan->rescannedPath.empty());
    EXPECT_EQ(find<QPushButton>("scan").text(), "Scan");
}

TEST_F(BrowsePage, ShowsAnItemInItsFolder) {
    scan();
    page.showItem(FileURL(folder.path("big/inner")));
    auto &outline = find<OutlineView>("outline");
    EXPECT_EQ(outline.focusFolder(), &node({"big"}));
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"big", "inner"})});

    // A file that is too small for a node is shown by a scan of its folder.
    page.showItem(FileURL(folder.path("big/inner/file")));
    ASSERT_TRUE(eventually([&] { return model.scan->isScanning; }));
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    EXPECT_EQ(model.scan->tree->path(), folder.path("big/inner"));
    EXPECT_EQ(outline.selectedNodes(), std::vector<FSNode *>{&node({"file"})});
    const FSNode *tree = model.scan->tree.get();
    page.showItem(FileURL(folder.path("missing")));
    QTest::qWait(100);
    EXPECT_EQ(model.scan->tree.get(), tree);
}

TEST_F(BrowsePage, DropsTheSelectionWhenTheFolderShownIsChosenAgain) {
    scan();
    clickTile(node({"small"}), false);
    auto &breadcrumb = find<Breadcrumb>("breadcrumb");
    emit breadcrumb.chosen(model.scan->tree.get());
    EXPECT_TRUE(find<OutlineView>("outline").selectedNodes().empty());
    EXPECT_EQ(find<TreemapView>("treemap").selectedTile(), std::nullopt);
    EXPECT_EQ(text("detailName"), model.scan->tree->name);
}

TEST_F(BrowsePage, NamesTheWayAsItStandsAndKeepsTheFocusOnIt) {
    folder.makeFile("<b>Q&A && more/file", 200'000);
    scan();
    const std::string &rootName = model.scan->tree->name;
    clickTile(node({"<b>Q&A && more"}), true);
    const QToolButton *focused = nullptr;
    ASSERT_TRUE(eventually([&] { return (focused = button("<b>Q&A && more")) != nullptr; }));
    EXPECT_EQ(focused->text(), "<b>Q&&A &&&& more") << "no key is hidden in a name";
    EXPECT_TRUE(focused->shortcut().isEmpty());
    EXPECT_FALSE(focused->toolTip().contains("<b>"));

    testing::activate(page);
    button(rootName)->setFocus();
    QTest::keyClick(button(rootName), Qt::Key_Space);
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.scan->tree.get());
    EXPECT_TRUE(button(rootName)->hasFocus());
}

TEST_F(BrowsePage, FiltersByNameAndEscapesFromIt) {
    scan();
    auto &filter = find<QLineEdit>("filter");
    const QAbstractItemModel &rows = *find<OutlineView>("outline").model();
    QTest::keyClick(&page, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&filter, "SMALL");
    ASSERT_TRUE(eventually([&] { return rows.rowCount() == 1; }));
    QTest::keyClick(&filter, Qt::Key_Escape);
    EXPECT_TRUE(filter.text().isEmpty());
    EXPECT_TRUE(eventually([&] { return rows.rowCount() == 2; }));
}

TEST_F(BrowsePage, ClearsAFilterThatWouldHideTheFolderThatIsEntered) {
    scan();
    auto &filter = find<QLineEdit>("filter");
    auto &outline = find<OutlineView>("outline");
    filter.setText("inner");
    ASSERT_TRUE(eventually([&] { return outline.model()->rowCount() == 1; }));
    clickTile(node({"big"}), true); // holds what matches
    EXPECT_EQ(filter.text(), "inner");
    QTest::keyClick(&page, Qt::Key_Up, Qt::ControlModifier);
    clickTile(node({"small"}), true);
    EXPECT_TRUE(filter.text().isEmpty());
    EXPECT_EQ(outline.focusFolder(), &node({"small"}));
    EXPECT_EQ(outline.model()->rowCount(outline.rootIndex()), 1);
}

TEST_F(BrowsePage, ShowsAFolderThatWasScannedAgain) {
    scan();
    OutlineView &outline = find<OutlineView>("outline");
    // Focused on what goes, then on the folder itself, then on the folder around it.
    for (const auto &focus : {std::vector<std::string_view>{"big", "inner"}, {"big"}, {}}) {
        folder.makeFile("big/inner/file", 90'000);
        scan();
        FSNode *shown = model.scan->tree.get();
        for (const std::string_view name : focus)
            shown = testing::descendant(*shown, {name});
        emit outline.opened(shown);
        outline.selectAll();
        std::filesystem::remove_all(folder.path("big/inner"));
        emit model.removals.partlyGone(GonePaths({FileURL(folder.path("big"))}));
        ASSERT_TRUE(eventually([&] { return node({"big"}).children().size() == 1; }));
        EXPECT_TRUE(eventually([&] { return find<TreemapView>("treemap").node() != nullptr; }));
        EXPECT_EQ(outline.model()->rowCount(outline.rootIndex()), focus.empty() ? 2 : 1);
        for (const FSNode *selected : outline.selectedNodes())
            EXPECT_NE(selected->name, "inner");
        outline.viewport()->grab();
    }
}

TEST_F(BrowsePage, CopiesPathsAndLetsGoOfAReplacedTree) {
    scan();
    clickTile(node({"small"}), false);
    click("copyPath");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(folder.path("small")));

    const std::weak_ptr<FSNode> earlier = model.scan->tree;
    model.scan.startScan();
    EXPECT_EQ(find<TreemapView>("treemap").node(), nullptr);
    EXPECT_FALSE(find<QPushButton>("copyPath").isEnabled());
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr && earlier.expired(); }));
    EXPECT_EQ(find<TreemapView>("treemap").node(), model.scan->tree.get());
}

TEST_F(BrowsePage, ShowsWhatComesBackIntoAnEmptyTree) {
    const FileURL item(folder.path("back"));
    const auto comesBack = [&] {
        folder.makeFile("back", 9'000);
        model.scan.readPlacesAgain(GonePaths({item}));
        return eventually([&] { return isVisible("results"); });
    };
    std::filesystem::remove_all(folder.path("big"));
    std::filesystem::remove_all(folder.path("small"));
    scan();
    EXPECT_FALSE(isVisible("results")) << "the folder is empty";
    EXPECT_TRUE(comesBack());
    EXPECT_TRUE(eventually([&] { return find<TreemapView>("treemap").tiles().size() == 1; }));
    std::filesystem::remove(item.path());
    model.scan.drop(GonePaths({item}));
    EXPECT_TRUE(eventually([&] { return !isVisible("results"); }));
    EXPECT_TRUE(comesBack());
    EXPECT_EQ(find<OutlineView>("outline").model()->rowCount(), 1);
}

TEST_F(BrowsePage, ShowsAScanAsAdministratorWithoutRemoval) {
    scan();
    const std::string root = folder.path();
    const auto run = [&](const std::string &printed) {
        std::string failure;
        actions.printed = printed;
        model.administratorScan.start(FileURL(root), [&](const std::string &why) { failure = why; });
        EXPECT_TRUE(eventually([&] { return !model.administratorScan->isRunning; }));
        return failure;
    };
    const std::string list = R"({"root": {"name": "x", "path": ")" + root +
                             R"(", "isDirectory": true, "children": [
        {"name": "secret", "isDirectory": true, "size": 70000, "logicalSize": 70000, "fileCount": 1}]}})";
    EXPECT_EQ(run("no list"), "The program that scans as administrator gave no list.");
    EXPECT_EQ(run(R"({"root": {"name": "x", "path": "/elsewhere", "isDirectory": true}})"),
              "The program that scans as administrator gave no list.");
    EXPECT_FALSE(model.scan->importedFrom);
    EXPECT_EQ(run(list), "");
    EXPECT_THAT(actions.calls.back(), ::testing::EndsWith("/brimvalectl scan --json -- " + root));
    EXPECT_TRUE(text("importNote").starts_with("Scanned as administrator."));
    FSNode *secret = &node({"secret"});
    EXPECT_TRUE(secret->isImported());
    EXPECT_TRUE(removableNodes(std::span(&secret, 1)).empty());
    EXPECT_TRUE(model.scan.unreadableItems().empty()) << "those of another scan";

    // What the user has asked for since is not replaced.
    std::string failure;
    model.administratorScan.start(FileURL(root), [&](const std::string &why) { failure = why; });
    scan();
    EXPECT_TRUE(eventually([&] { return !failure.empty() && !model.scan->isScanning; }));
    EXPECT_FALSE(model.scan->importedFrom);

    actions.privilegedRunError = PrivilegedRunError{};
    EXPECT_TRUE(run(list).starts_with("No password was entered"));
}

TEST_F(BrowsePage, OffersAScanAsAdministratorWhereThatIsPossible) {
    UnreadableSheet sheet({}, 3, &page);
    sheet.open();
    EXPECT_FALSE(testing::find(sheet, "scanAsAdministrator").isVisible());
    sheet.offerAdministrator();
    QSignalSpy asked(&sheet, &UnreadableSheet::administratorAsked);
    testing::click(sheet, "scanAsAdministrator");
    EXPECT_EQ(asked.size(), 1);
    EXPECT_FALSE(AdministratorScan::isPossible()) << "a Mac has no program for that";
}

TEST_F(BrowsePage, TellsWhatDeletingTheSelectionFrees) {
    std::filesystem::create_hard_link(folder.path("small/file"), folder.path("big/linked"));
    scan();
    EXPECT_EQ(text("reclaim"), "") << "nothing is selected";
    clickTile(node({"big"}), false);
    const std::string shared = "1 file that has other names elsewhere (";
    EXPECT_TRUE(eventually([&] { return text("reclaim").find(shared) != std::string::npos; }));
    EXPECT_THAT(text("reclaim"), ::testing::StartsWith("Deleting frees now: "));
    EXPECT_THAT(text("reclaim"), ::testing::HasSubstr("small/file)"))
        << "the start of a long path may be cut";
    emit find<OutlineView>("outline").selectionChangedTo({});
    EXPECT_EQ(text("reclaim"), "");
}

} // namespace brimvale
