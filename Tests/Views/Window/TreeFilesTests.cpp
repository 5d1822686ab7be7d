#include "Core/Model/CorvelModel.h"
#include "Core/Model/ScanSession.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/SampleTree.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"

#include <QAction>
#include <QDialog>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QThreadPool>
#include <QTreeView>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

class TreeFilesTest : public ::testing::Test {
protected:
    TreeFilesTest() {
        home.makeFile("files/folder/file", 90'000);
        home.makeFile("files/other", 20'000);
        testing::activate(window);
    }

    void scan() {
        window.goTo({Section::Kind::browse});
        model.scan.startScan(home.path("files"));
        ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    }

    /// Chooses an entry of the File menu, and this file in the dialog that it opens.
    void choose(const char *action, const std::string &file) {
        window.findChild<QAction *>(QLatin1String(action))->trigger();
        auto *dialog = window.findChild<QFileDialog *>("fileChooser");
        ASSERT_NE(dialog, nullptr);
        emit dialog->fileSelected(QString::fromStdString(file));
        delete dialog;
    }

    /// What the window says about a file when it is written; the notice is closed.
    std::string notice() {
        EXPECT_TRUE(eventually([&] { return testing::find(window, "noticeBar").isVisible(); }));
        const std::string words = testing::shown(window, "windowNotice");
        testing::click(window, "closeNotice");
        return words;
    }
    /// What the page says of a comparison when that has ended.
    static std::string comparison(BrowseView &page) {
        const auto words = [&page] { return testing::shown(page, "compareWords"); };
        EXPECT_TRUE(
            eventually([&] { return words().starts_with("Compared with") && words().ends_with("."); }));
        return words();
    }
    /// What the window warns of; the warning is closed.
    std::string warning() {
        QPointer<QDialog> sheet;
        EXPECT_TRUE(eventually([&] {
            sheet = window.findChild<QDialog *>("noticeSheet");
            return sheet != nullptr;
        }));
        std::string words = sheet->windowTitle().toStdString();
        for (const std::string &label : testing::labels(*sheet, "explanation"))
            words.append(". ").append(label);
        delete sheet;
        return words;
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
    testing::WholeWindow window{model};
};

} // namespace

TEST_F(TreeFilesTest, ExportsPicturesAndLists) {
    EXPECT_FALSE(window.findChild<QMenu *>("export")->isEnabled());
    scan();
    EXPECT_TRUE(window.findChild<QMenu *>("export")->isEnabled());
    for (const char *kind : {"exportPng", "exportSvg", "exportCsv", "exportJson", "exportNcdu"}) {
        choose(kind, home.path(kind));
        EXPECT_THAT(notice(), StartsWith("“" + std::string(kind) + "” was written."));
    }
    const QWidget &map = window.findChild<BrowseView *>()->map();
    EXPECT_EQ(QImage(QString::fromStdString(home.path("exportPng"))).width(), map.width() * 2);
    EXPECT_THAT(testing::contentOf(home.path("exportSvg")), HasSubstr("folder"));
    EXPECT_THAT(testing::contentOf(home.path("exportCsv")), HasSubstr("/files/folder,folder,"));
    choose("exportJson", "/nowhere/list");
    EXPECT_THAT(warning(), StartsWith("“list” could not be written. "));
}

TEST_F(TreeFilesTest, NothingOfAnImportedTreeIsTouched) {
    scan();
    choose("exportJson", home.path("list.json"));
    EXPECT_THAT(notice(), HasSubstr("was written"));
    choose("import", home.path("files/other"));
    EXPECT_THAT(warning(), HasSubstr("could not be imported. Line 1, byte "));
    EXPECT_FALSE(model.scan->tree->isImported());

    choose("import", home.path("list.json"));
    ASSERT_TRUE(eventually([&] { return model.scan->tree->isImported(); }));
    BrowseView &page = *window.findChild<BrowseView *>();
    EXPECT_THAT(testing::shown(page, "importNote"), StartsWith("Imported from “list.json” ("));
    // The same paths exist here, and are still neither removed nor shown.
    FSNode *folder = testing::descendant(*model.scan->tree, {"folder"});
    page.findChild<OutlineView *>("outline")->select(folder);
    emit page.findChild<OutlineView *>("outline")->selectionChangedTo({folder});
    EXPECT_FALSE(testing::find<QPushButton>(page, "remove").isEnabled());
    EXPECT_FALSE(testing::find<QPushButton>(page, "reveal").isEnabled());
    model.scan.drop(GonePaths({FileURL(folder->path())}));
    EXPECT_NE(testing::descendant(*model.scan->tree, {"folder"}), nullptr);
    EXPECT_TRUE(actions.calls.empty());

    // The next scan shows this disk again.
    scan();
    ASSERT_TRUE(eventually([&] { return !model.scan->isScanning && model.scan->tree != nullptr; }));
    EXPECT_FALSE(model.scan->tree->isImported());
    EXPECT_EQ(testing::shown(page, "importNote"), "");
}

TEST_F(TreeFilesTest, SavesAScanAndShowsItAgain) {
    EXPECT_FALSE(window.findChild<QAction *>("saveScan")->isEnabled());
    scan();
    choose("saveScan", home.path("monday.scan"));
    EXPECT_THAT(notice(), StartsWith("“monday.scan” was written."));
    const std::int64_t size = model.scan->tree->size;
    choose("import", home.path("monday.scan"));
    ASSERT_TRUE(eventually([&] { return model.scan->tree->isImported(); }));
    EXPECT_EQ(model.scan->tree->size, size);
    EXPECT_EQ(testing::descendant(*model.scan->tree, {"folder"})->fileCount, 1);
}

TEST_F(TreeFilesTest, SavesTheTreeAsItWasBeforeALaterChange) {
    scan();
    QThreadPool &pool = *QThreadPool::globalInstance();
    const int threads = pool.maxThreadCount();
    for (int i = 0; i < threads; ++i)
        pool.reserveThread(); // nothing is written in the background
    choose("exportCsv", home.path("before.csv"));
    home.makeFile("files/folder/large", 3'000'000);
    model.scan.rescan(FileURL(home.path("files/folder")));
    ASSERT_TRUE(eventually([&] {
        return testing::descendant(*model.scan->tree, {"folder", "large"}) != nullptr;
    }));
    choose("exportCsv", home.path("between.csv"));
    model.scan.drop(GonePaths({FileURL(home.path("files/folder"))}));
    EXPECT_EQ(testing::descendant(*model.scan->tree, {"folder"}), nullptr);
    for (int i = 0; i < threads; ++i)
        pool.releaseThread();
    ASSERT_TRUE(eventually([&] {
        return testing::isThere(home.path("before.csv")) && testing::isThere(home.path("between.csv"));
    }));
    EXPECT_THAT(testing::contentOf(home.path("before.csv")),
                AllOf(HasSubstr("/files/folder,folder,"), Not(HasSubstr("/large"))));
    EXPECT_THAT(testing::contentOf(home.path("between.csv")), HasSubstr("/files/folder/large"));
}

TEST_F(TreeFilesTest, ComparesWithASavedScan) {
    EXPECT_FALSE(window.findChild<QAction *>("compareWith")->isEnabled());
    home.makeFile("files/folder/file", 2'500'000);
    home.makeFile("files/old/gone", 3'000'000);
    home.makeFile("files/old/moved", 2'000'000);
    scan();
    choose("saveScan", home.path("monday.scan"));
    EXPECT_THAT(notice(), HasSubstr("Compare With"));
    home.makeFile("files/new", 5'000'000);
    home.makeFile("files/folder/file", 4'000'000);
    std::filesystem::rename(home.path("files/old/moved"), home.path("files/folder/here"));
    std::filesystem::remove(home.path("files/old/gone"));
    model.scan.startScan();
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));

    choose("compareWith", home.path("files/other"));
    EXPECT_THAT(warning(), HasSubstr("“other” could not be compared. Line 1, byte "));
    choose("compareWith", home.path("monday.scan"));
    BrowseView &page = *window.findChild<BrowseView *>();
    ASSERT_TRUE(eventually([&] { return page.isComparing(); }));
    EXPECT_THAT(comparison(page), StartsWith("Compared with “monday.scan”, "));
    EXPECT_THAT(comparison(page), HasSubstr(", 1 new, 1 gone, 1 moved, 1 changed."));

    // The outline, sorted by growth, and the details.
    auto &outline = testing::find<OutlineView>(page, "outline");
    const auto cell = [&](int row) {
        return outline.model()->index(row, OutlineModel::changeColumn).data().toString().toStdString();
    };
    EXPECT_THAT(cell(0), StartsWith("new +5"));
    EXPECT_THAT(cell(1), StartsWith("▲ +3.5")) << "the folder that grew, with what was moved into it";
    EXPECT_THAT(cell(2), "") << "nothing became of it";
    EXPECT_THAT(cell(3), StartsWith("▼ −5"));
    EXPECT_GT(outline.columnWidth(OutlineModel::changeColumn), 0);
    outline.select(testing::descendant(*model.scan->tree, {"folder", "here"}));
    emit outline.selectionChangedTo({testing::descendant(*model.scan->tree, {"folder", "here"})});
    EXPECT_EQ(testing::shown(page, "detailChange"),
              "Moved here from “" + home.path("files/old/moved") + "”.");

    // The map, and the list, which also has what is gone.
    auto &map = page.map();
    EXPECT_TRUE(map.isDetailed());
    EXPECT_EQ(map.legend().front().title, "▲ Grew");
    auto &tabs = testing::find<QTabBar>(page, "browseTabs");
    tabs.setCurrentIndex(tabs.count() - 1);
    const QAbstractItemModel &changes = *testing::find<QTreeView>(page, "changeList").model();
    const auto rows = [&] {
        std::vector<std::string> texts;
        for (int row = 0; row < changes.rowCount(); ++row)
            texts.push_back(changes.index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString());
        return texts;
    };
    EXPECT_THAT(rows(), ElementsAre(StartsWith("new, new, +5"), StartsWith("file, changed, +"),
                                    StartsWith("here, moved, 2"), StartsWith("gone, gone, −3")));
    auto &filter = testing::find<QLineEdit>(page, "filter");
    for (const auto &one :
         {std::pair("HERE", "here"), {">4.5M", "new"}, {"gone >2M", "gone"}, {"old", "gone"}}) {
        filter.setText(QLatin1String(one.first));
        EXPECT_TRUE(eventually([&] { return rows().size() == 1 && rows().front().starts_with(one.second); }))
            << one.second;
    }
    filter.clear();
    ASSERT_TRUE(eventually([&] { return changes.rowCount() == 4; }));

    // It follows a removal, and ends with everything as before.
    model.scan.drop(GonePaths({FileURL(home.path("files/new"))}));
    ASSERT_TRUE(eventually([&] { return changes.rowCount() == 3; }));
    testing::click(page, "stopComparing");
    EXPECT_FALSE(page.isComparing());
    EXPECT_FALSE(map.isDetailed());
    EXPECT_EQ(outline.columnWidth(OutlineModel::changeColumn), 0);
    EXPECT_EQ(changes.rowCount(), 0);
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_FALSE(window.findChild<QAction *>("stopComparingInMenu")->isEnabled());
}

TEST_F(TreeFilesTest, ComparisonLastsForTheFolder) {
    scan();
    choose("saveScan", home.path("monday.scan"));
    EXPECT_THAT(notice(), HasSubstr("was written"));
    choose("compareWith", home.path("monday.scan"));
    BrowseView &page = *window.findChild<BrowseView *>();
    ASSERT_TRUE(eventually([&] { return page.isComparing(); }));
    EXPECT_THAT(comparison(page), HasSubstr("nothing has changed"));
    home.makeFile("files/folder/more", 1'500'000);
    model.scan.startScan();
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    EXPECT_THAT(comparison(page), HasSubstr(", 1 new."));
    home.makeFile("files/folder/even more", 1'500'000);
    model.scan.rescan(FileURL(home.path("files/folder")));
    EXPECT_TRUE(eventually(
        [&] { return testing::shown(page, "compareWords").find(", 2 new.") != std::string::npos; }));
    model.scan.startScan(home.path("files/folder"));
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    EXPECT_FALSE(page.isComparing()) << "it is another folder";
}

TEST_F(TreeFilesTest, PictureShowsTheDetailedMap) {
    scan();
    choose("exportSvg", home.path("plain.svg"));
    EXPECT_THAT(notice(), HasSubstr("was written"));
    EXPECT_THAT(testing::contentOf(home.path("plain.svg")), Not(HasSubstr(">1 smaller item<")));
    window.findChild<BrowseView *>()->detailedMap()->trigger();
    choose("exportSvg", home.path("detailed.svg"));
    EXPECT_THAT(notice(), HasSubstr("was written"));
    EXPECT_THAT(testing::contentOf(home.path("detailed.svg")), HasSubstr(">1 smaller item<"));
}

} // namespace brimvale
