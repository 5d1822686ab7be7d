#include "Core/Model/Duplicates.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Support/PageTest.h"
#include "Support/TemporaryFolder.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Find/TabStrip.h"
#include "Views/Entries/EntryListModel.h"
#include "Views/Removing/RemovalSheet.h"

#include <QComboBox>
#include <QListView>
#include <QPushButton>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::eventually;

struct DuplicatesBrowse : BrowseView {
    explicit DuplicatesBrowse(CorvelModel &model)
        : BrowseView(model.scan, model.removals, model.duplicates, model.volumes) {}
};

/// The tab for duplicates, of a folder with three equal large files and two equal small ones.
class DuplicatesTab : public testing::PageTest<DuplicatesBrowse> {
protected:
    DuplicatesTab() {
        const std::string film(300'000, 'f');
        const auto write = [&](const char *name, const std::string &contents, int daysAgo) {
            std::filesystem::last_write_time(folder.writeFile(name, contents),
                                             std::filesystem::file_time_type::clock::now() -
                                                 std::chrono::hours(24 * daysAgo));
        };
        write("films/first.mkv", film, 30);
        write("films/second.mkv", film, 20);
        write("more/third.mkv", film, 10);
        write("a.txt", "equal", 5);
        write("b.txt", "equal", 4);
        write("other.txt", "alone", 4);
        page.show();
        testing::activate(page);
        model.scan.startScan(folder.path());
        EXPECT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
        tabs.setCurrentIndex(4);
    }

    void search(int leastLength = 0) {
        find<QComboBox>("leastLength").setCurrentIndex(leastLength);
        click("searchDuplicates");
        EXPECT_TRUE(eventually([&] { return model.duplicates->folder && !model.duplicates->isSearching; }));
    }
    /// The rows: "-" before a file that can't be ticked, "x" before a ticked one.
    [[nodiscard]] QStringList rows() const {
        QStringList texts;
        for (int i = 0; i < list.model()->rowCount(); ++i) {
            const QModelIndex row = list.model()->index(i, 0);
            const QVariant ticked = row.data(Qt::CheckStateRole);
            const bool isHead = row.data(EntryListModel::dateRole).isNull();
            const QString mark = isHead                ? QString()
                                 : !ticked.isValid()   ? "- "
                                 : ticked.toInt() == 0 ? "  "
                                                       : "x ";
            texts << mark + row.data().toString();
        }
        return texts;
    }
    void press(int row, Qt::Key key) {
        list.setFocus();
        list.setCurrentIndex(list.model()->index(row, 0));
        QTest::keyClick(&list, key);
    }

    testing::TemporaryFolder folder;
    TabStrip &tabs = find<TabStrip>("browseTabs");
    QListView &list = find<QListView>("duplicatesList");
};

} // namespace

TEST_F(DuplicatesTab, ShowsGroupsOfWhichOneFileStays) {
    EXPECT_FALSE(isVisible("duplicatesList"));
    search();
    const QStringList none = {"first.mkv and 2 equal files", "- first.mkv", "  second.mkv", "  third.mkv",
                              "a.txt and 1 equal file",      "- a.txt",     "  b.txt"};
    EXPECT_EQ(rows(), none) << rows().join(u", ").toStdString();
    EXPECT_EQ(text("duplicatesRule"), StayingRule::inWords());
    EXPECT_FALSE(find<QPushButton>("removeDuplicates").isEnabled());

    press(1, Qt::Key_Space);
    EXPECT_EQ(text("duplicatesRefusal"), "This file stays.");
    press(2, Qt::Key_Space);
    EXPECT_EQ(rows()[2], "x second.mkv");
    EXPECT_TRUE(text("removeDuplicates").starts_with("Remove 1 Item, "));

    // Another one stays, so its tick is gone, and the first may go.
    click("letStay");
    EXPECT_EQ(rows().mid(0, 4),
              (QStringList{"second.mkv and 2 equal files", "  first.mkv", "- second.mkv", "  third.mkv"}));
    click("tickAllButOne");
    EXPECT_EQ(rows(), (QStringList{"second.mkv and 2 equal files", "x first.mkv", "- second.mkv",
                                   "x third.mkv", "a.txt and 1 equal file", "- a.txt", "x b.txt"}));
    list.viewport()->update(); // so the list is painted while the search begins
    search(1);                 // from 100 KB
    EXPECT_EQ(rows().size(), 4);
}

TEST_F(DuplicatesTab, RemovesTickedFilesAfterTheQuestion) {
    search();
    click("tickAllButOne");
    click("removeDuplicates");
    auto &sheet = find<RemovalSheet>("removalSheet");
    EXPECT_TRUE(testing::shown(sheet, "question").starts_with("Remove 3 items, "));
    testing::click(sheet, "confirm");
    EXPECT_TRUE(eventually([&] { return rows().isEmpty() && !model.removals.isRemoving(); }));
    EXPECT_EQ(actions.calls, (std::vector<std::string>{"trash " + folder.path("films/second.mkv"),
                                                       "trash " + folder.path("more/third.mkv"),
                                                       "trash " + folder.path("b.txt")}));
}

TEST_F(DuplicatesTab, RemovesNothingBesideAFileThatHasChanged) {
    search(1);
    click("tickAllButOne");
    folder.writeFile("films/first.mkv", std::string(300'000, 'x'));
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Delete);
    testing::click(find<RemovalSheet>("removalSheet"), "confirm");
    EXPECT_TRUE(eventually([&] { return model.removals->lastResult && !model.removals.isRemoving(); }));
    EXPECT_EQ(model.removals->lastResult->failed.size(), 2U);
    EXPECT_TRUE(actions.calls.empty());
}

} // namespace brimvale
