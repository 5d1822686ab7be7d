#include "Core/Model/CorvelModel.h"
#include "Core/Model/ScanSession.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/SampleTree.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Outline/OutlineView.h"

#include <QAction>
#include <QDialog>
#include <QFileDialog>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <gmock/gmock.h>

namespace brimvale {

using testing::eventually;
using ::testing::HasSubstr;
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

} // namespace brimvale
