#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Trash.h"
#include "Support/AtPath.h"
#include "Support/EnvironmentVariable.h"
#include "Support/Model.h"
#include "Support/SampleHome.h"
#include "Support/TreeListing.h"
#include "Support/Window.h"
#include "Views/Category/CategoryDetailView.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/ConfirmationSheet.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

/// The page of the Trash for a user of Linux.
class TrashOnItsPage : public ::testing::Test {
protected:
    TrashOnItsPage() {
        Host::useSystem(System::linux);
        Host::useRoot(home.path());
    }

    /// Moves files to the Trash, and shows what is there.
    void open(const std::vector<std::string> &files) {
        model = std::make_unique<CorvelModel>();
        for (const std::string &file : files) {
            const std::string path = home.makeFile(file, 5000);
            EXPECT_FALSE(testing::moveToTrashAt(FileURL(path))) << path;
        }
        model->storage.measureCategories();
        page = std::make_unique<CategoryDetailView>("trash", model->storage, model->removals, model->backups,
                                                    model->trash);
        page->resize(900, 700);
        testing::activate(*page);
        ASSERT_TRUE(eventually([&] {
            return !model->storage->isMeasuringCategories &&
                   model->trash->records.size() == model->storage.category("trash")->entries.size();
        }));
    }
    [[nodiscard]] std::vector<std::string> rows() const {
        const QAbstractItemModel &list = *testing::find<EntryList>(*page, "entries").model();
        std::vector<std::string> rows;
        for (int row = 0; row < list.rowCount(); ++row) {
            const QModelIndex index = list.index(row, 0);
            rows.push_back(index.data().toString().toStdString() + ": " +
                           index.data(EntryListModel::folderRole).toString().toStdString());
        }
        return rows;
    }
    void tick(int row) const {
        QAbstractItemModel &list = *testing::find<EntryList>(*page, "entries").model();
        list.setData(list.index(row, 0), Qt::Checked, Qt::CheckStateRole);
    }
    void confirm() const {
        auto *sheet = page->findChild<ConfirmationSheet *>();
        ASSERT_NE(sheet, nullptr);
        testing::click(*sheet, "confirm");
        ASSERT_TRUE(testing::waitUntilRemoved(*model));
    }
    void putBack() const {
        testing::click(*page, "putBack");
        ASSERT_TRUE(eventually([&] { return !model->trash->isPuttingBack; }));
    }
    [[nodiscard]] std::int64_t sizeOf(const char *id) const { return model->storage.category(id)->size; }

    testing::SampleHome home;
    testing::EnvironmentVariable data{"XDG_DATA_HOME", std::nullopt};
    std::unique_ptr<CorvelModel> model;
    std::unique_ptr<CategoryDetailView> page;
    const std::string trash = home.path(".local/share/Trash");
};

} // namespace

TEST_F(TrashOnItsPage, PutsItemsBackAndSaysWhyOthersStay) {
    home.makeFolder("Documents");
    open({"Documents/a", "Documents/b", "Documents/empty"});
    home.makeFile(".local/share/Trash/files/stranger");
    model->storage.listTrashAgain();
    ASSERT_TRUE(eventually([&] { return model->trash->records.size() == 4; }));
    const std::string from = ": From " + home.path("Documents");
    EXPECT_THAT(rows(),
                ::testing::UnorderedElementsAre("a" + from, "b" + from, "empty" + from,
                                                "stranger: The Trash has no record of where it was."));
    EXPECT_FALSE(testing::find(*page, "putBack").isEnabled());
    home.writeFile("Documents/b", "new");
    for (int row = 0; row < 4; ++row)
        tick(row);
    putBack();
    EXPECT_THAT(rows(), ::testing::UnorderedElementsAre(
                            "b" + from, "stranger: The Trash has no record of where it was."));
    EXPECT_EQ(testing::allocatedBytes(home.path("Documents/a")), 8192);
    EXPECT_EQ(testing::contentOf(home.path("Documents/b")), "new");
    auto *notice = page->findChild<NoticeSheet *>();
    ASSERT_NE(notice, nullptr);
    EXPECT_THAT(testing::shown(*notice, "explanation"),
                ::testing::AllOf(HasSubstr("2 items are back in their old places."),
                                 HasSubstr("“b”: “" + home.path("Documents/b") + "” already exists"),
                                 HasSubstr("“stranger”: The Trash has no record")));
    testing::click(*notice, "ok");
    EXPECT_EQ(sizeOf("trash"), 8192);
    EXPECT_TRUE(eventually([&] { return sizeOf("documents") == 8192 + 8192 + 4096; }))
        << "the figures of the old place follow";
}

TEST_F(TrashOnItsPage, DeletesItemsWithTheirRecords) {
    open({"one", "two", "three"});
    tick(0);
    testing::click(*page, "deleteNow");
    confirm();
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_EQ(testing::listing(trash + "/info").size(), 2U);
    EXPECT_EQ(sizeOf("trash"), 16384);

    // What came to the Trash after it was shown stays there.
    EXPECT_FALSE(testing::moveToTrashAt(FileURL(home.makeFile("late", 5000))));
    testing::click(*page, "emptyTrash");
    confirm();
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(testing::listing(trash),
                ElementsAre("/files: folder", ::testing::StartsWith("/files/late"), "/info: folder",
                            ::testing::StartsWith("/info/late.trashinfo")));
    EXPECT_EQ(sizeOf("trash"), 0);
    EXPECT_FALSE(testing::find(*page, "emptyTrash").isEnabled());
    model->storage.listTrashAgain();
    EXPECT_TRUE(eventually([&] { return rows().size() == 1; }));
    EXPECT_TRUE(testing::find(*page, "emptyTrash").isEnabled());
}

TEST_F(TrashOnItsPage, RemovesLeftRecordsWithoutAQuestion) {
    home.makeFolder(".local/share/Trash/files");
    const std::string record = home.writeFile(".local/share/Trash/info/lost.trashinfo", "[Trash Info]\n");
    fs::last_write_time(record, fs::file_time_type::clock::now() - std::chrono::hours(1));
    open({"item"});
    EXPECT_EQ(testing::shown(*page, "note"),
              "1 record in the Trash has no item any more. It is removed when the Trash is emptied.");
    tick(0);
    putBack();
    EXPECT_EQ(testing::shown(*page, "note"), "1 item is back in its old place.");
    testing::click(*page, "emptyTrash");
    EXPECT_TRUE(eventually([&] { return !testing::isThere(record); }));
    EXPECT_EQ(page->findChild<ConfirmationSheet *>(), nullptr);
    EXPECT_TRUE(eventually([&] { return !testing::find(*page, "emptyTrash").isEnabled(); }));
}

} // namespace brimvale
