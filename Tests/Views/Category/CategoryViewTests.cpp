#include "Views/Category/CategoryDetailView.h"

#include "Core/Model/Backups.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Storage/StorageFigures.h"
#include "Core/Text/Formatting.h"
#include "Platform/Host.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/Window.h"
#include "Views/Components/NoteLabel.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/RemovalSheet.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::eventually;

constexpr std::int64_t gigabyte = 1'000'000'000;

constexpr auto sizeText = Fmt::byteFormatter;

class CategoryPage : public ::testing::Test {
protected:
    void open(const char *id) {
        page = std::make_unique<CategoryDetailView>(id, model.storage, model.removals, model.backups,
                                                    model.trash);
        page->resize(900, 700);
        testing::activate(*page);
    }

    void show(std::string_view id, std::int64_t size, const std::vector<CleanupEntry> &entries) {
        PublishedWriter::update(model.storage, [&](StorageState &state) {
            for (MeasuredCategory &one : state.categories)
                if (one.category.id == id)
                    one = {one.category, size, entries, true,
                           CleanupEntries::hasUnreadableRoot(one.category.roots)};
        });
    }

    template<class Widget = QWidget>
    Widget *find(const char *name) {
        return page->findChild<Widget *>(name);
    }
    std::string text(const char *name) { return testing::shown(*page, name); }
    void click(const char *button) { testing::click(*page, button); }
    EntryList &list() { return *find<EntryList>("entries"); }
    RemovalSheet *sheet() { return page->findChild<RemovalSheet *>(); }

    CleanupEntry entry(const char *place, std::int64_t size) {
        return {FileURL(home.makeFile(place, 10)), size};
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
    std::unique_ptr<CategoryDetailView> page;
};

} // namespace

TEST_F(CategoryPage, OffersWhatItsActionAllows) {
    struct Case {
        const char *id;
        bool hasBar, hasBackupBar, opensApps, canTick;
        const char *note;
    };
    for (const Case &one : {Case{"applications", false, false, true, false, nullptr},
                            Case{"documents", true, false, false, true, "caveat"},
                            Case{"photos", false, false, false, false, "reason"},
                            Case{"messages", false, true, false, true, "warning"},
                            Case{"macos", false, false, false, false, "reason"},
                            Case{"systemData", true, false, false, true, "caveat"}}) {
        show(one.id, 500, {entry("file", 500)});
        open(one.id);
        EXPECT_EQ(find("actionBar") != nullptr, one.hasBar) << one.id;
        EXPECT_EQ(find("backupBar") != nullptr, one.hasBackupBar) << one.id;
        EXPECT_EQ(find("openApps") != nullptr, one.opensApps) << one.id;
        EXPECT_EQ(list().model()->index(0, 0).data(Qt::CheckStateRole).isValid(), one.canTick) << one.id;
        for (const char *note : {"caveat", "reason", "warning"})
            EXPECT_EQ(find<NoteLabel>(note) != nullptr,
                      one.note != nullptr && std::string_view(note) == one.note)
                << one.id;
        list().setFocus(Qt::TabFocusReason);
        QTest::keyClick(&list(), Qt::Key_Space);
        QTest::keyClick(page.get(), Qt::Key_Delete);
        EXPECT_EQ(sheet() != nullptr, one.hasBar) << one.id;
    }
}

TEST_F(CategoryPage, OpensTheApplications) {
    open("applications");
    bool isAsked = false;
    QObject::connect(page.get(), &CategoryDetailView::appsAsked, [&] { isAsked = true; });
    click("openApps");
    EXPECT_TRUE(isAsked);
}

TEST_F(CategoryPage, SaysWhyThereIsNothing) {
    home.makeFile("Music"); // where a folder should be that can be listed
    home.makeFolder("Documents");
    for (const auto &[id, why] : {std::pair("music", "This folder could not be opened"),
                                  std::pair("documents", "This category is empty")}) {
        open(id);
        EXPECT_TRUE(text("categoryState").starts_with("Not measured yet")) << id;
        EXPECT_EQ(text("categorySize"), "—");
        show(id, 0, {});
        EXPECT_TRUE(text("categoryState").starts_with(why)) << id;
        EXPECT_FALSE(list().isVisible());
        EXPECT_FALSE(find("remove")->isEnabled());
    }
}

TEST_F(CategoryPage, WarnsByRiskAndModeAndForgetsWhatIsGone) {
    const std::vector<CleanupEntry> entries = {entry("Documents/large", 700), entry("Documents/small", 200)};
    show("documents", 900, entries);
    open("documents");
    EXPECT_EQ(text("selection"), "Nothing selected");
    list().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list(), Qt::Key_Space);
    click("remove");
    ASSERT_NE(sheet(), nullptr);
    for (const RemovalMode mode : {RemovalMode::deleteNow, RemovalMode::trash}) {
        sheet()->findChild<RemovalModePicker *>()->setMode(mode);
        EXPECT_EQ(testing::shown(*sheet(), "remark"), removalWarning(CleanupRisk::careful, mode));
    }
    testing::click(*sheet(), "confirm");
    EXPECT_FALSE(find("remove")->isEnabled()) << "a removal runs";
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving(); }));
    EXPECT_EQ(actions.calls, std::vector<std::string>{"trash " + entries[0].url.path()});
    EXPECT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(text("categorySize"), sizeText(200));
    EXPECT_EQ(text("selection"), "Nothing selected");
}

TEST_F(CategoryPage, ComparesSystemDataWithItsRows) {
    open("systemData");
    EXPECT_FALSE(find("sentence")->isVisible());
    show("systemData", 50 * gigabyte, {});
    EXPECT_FALSE(find("sentence")->isVisible());
    show("systemData", 50 * gigabyte, {entry(".tool/blob", 30 * gigabyte)});
    EXPECT_EQ(text("sentence"), StorageFigures::systemDataSentence(30 * gigabyte, 50 * gigabyte));
}

TEST_F(CategoryPage, IsWorkedByKeysHoweverLongItIs) {
    std::vector<CleanupEntry> entries;
    for (int i = 0; i < 20'000; ++i)
        entries.push_back({FileURL(home.path("Downloads/file " + std::to_string(i))), 20'000 - i});
    show("documents", 200'010'000, entries);
    open("documents");
    ASSERT_EQ(list().model()->rowCount(), 20'000);
    list().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list(), Qt::Key_End);
    EXPECT_EQ(list().currentIndex().row(), 19'999);
    EXPECT_FALSE(list().visibleRegion().intersected(list().visualRect(list().currentIndex())).isEmpty())
        << "the page follows";
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(text("selection"), "1 item selected, " + sizeText(1));
}

TEST_F(CategoryPage, LocksWhatIsNeverRemovedAndOpensItInBrowse) {
    const FileURL guarded("/usr/lib");
    show("systemData", 900, {{.url = guarded, .size = 700, .isFolder = true}, entry(".tool/file", 200)});
    open("systemData");
    const QModelIndex locked = list().model()->index(0, 0);
    const QModelIndex other = list().model()->index(1, 0);
    ASSERT_TRUE(eventually([&] { return !locked.data(EntryListModel::lockRole).toString().isEmpty(); }));
    const std::string reason = "/usr/lib is a structural directory and is never removed.";
    for (const int role : {static_cast<int>(EntryListModel::lockRole),
                           static_cast<int>(Qt::AccessibleTextRole), static_cast<int>(Qt::ToolTipRole)})
        EXPECT_NE(locked.data(role).toString().toStdString().find(reason), std::string::npos) << role;
    EXPECT_FALSE(locked.data(Qt::CheckStateRole).isValid());
    EXPECT_FALSE(locked.flags().testFlag(Qt::ItemIsUserCheckable));
    EXPECT_TRUE(other.data(Qt::CheckStateRole).isValid());

    list().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(text("selection"), "Nothing selected");
    EXPECT_TRUE(text("refusal").starts_with(reason)) << text("refusal");
    std::vector<FileURL> browsed;
    QObject::connect(page.get(), &CategoryDetailView::browseAsked,
                     [&](const FileURL &folder) { browsed.push_back(folder); });
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(browsed, std::vector<FileURL>{guarded});

    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(text("selection"), "1 item selected, " + sizeText(200));
    EXPECT_EQ(text("refusal"), "") << "another selection";
}

TEST_F(CategoryPage, SystemDataTellsWhatNoRowShows) {
    open("systemData");
    PublishedWriter::update(model.storage, [&](StorageState &state) {
        state.lastCategoryScan = now();
        state.categories.back().incomplete = {home.makeFolder("closed")};
    });
    EXPECT_TRUE(find("hiddenSpace")->isHidden() || text("hiddenSpace").empty())
        << "a Mac has other sentences";
    EXPECT_FALSE(find("measureAsAdministrator")->isVisible());

    Host::useSystem(System::linux);
    PublishedWriter::update(model.storage, [&](StorageState &state) {
        state.hiddenSpace.deletedFiles.holders = {{"holder", 50'000'000}};
    });
    EXPECT_TRUE(text("hiddenSpace").starts_with("holder still uses " + sizeText(50'000'000)));
    actions.privilegedRunError = PrivilegedRunError{};
    click("measureAsAdministrator");
    EXPECT_FALSE(find("measureAsAdministrator")->isEnabled());
    EXPECT_TRUE(eventually([&] { return page->findChild<NoticeSheet *>() != nullptr; }));
    EXPECT_TRUE(find("measureAsAdministrator")->isEnabled());
}

} // namespace brimvale
