#include "Views/CategoryDetailView.h"

#include "Core/CleanupRiskTexts.h"
#include "Core/Formatting.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Views/Components/NoteLabel.h"
#include "Views/Components/RemovalModePicker.h"
#include "Views/Entries/EntryList.h"
#include "Views/RemovalSheet.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace brimvale {

namespace {

constexpr std::int64_t gigabyte = 1'000'000'000;

QString sizeText(std::int64_t bytes) {
    return QString::fromStdString(Fmt::byteFormatter(bytes));
}

class CategoryPage : public ::testing::Test {
protected:
    void open(const char *id) {
        page = std::make_unique<CategoryDetailView>(model, id);
        page->resize(900, 700);
        page->show();
        page->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(page.get()));
    }

    void show(std::string_view id, std::int64_t size, const std::vector<CleanupEntry> &entries) {
        PublishedWriter::update(model.categories, [&](std::vector<MeasuredCategory> &categories) {
            for (MeasuredCategory &one : categories)
                if (one.category.id == id)
                    one = {one.category, size, entries, true};
        });
    }

    template<class Widget>
    Widget *find(const char *name) {
        return page->findChild<Widget *>(QLatin1String(name));
    }
    QString label(const char *name) { return find<QLabel>(name)->text(); }
    static void click(QWidget *widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    EntryList &list() { return *find<EntryList>("entries"); }
    RemovalSheet *sheet() { return page->findChild<RemovalSheet *>(); }

    CleanupEntry entry(const char *place, std::int64_t size) {
        return {FileURL(home.makeFile(place, 10)), size};
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{nullptr, actions};
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
        EXPECT_EQ(find<QWidget>("actionBar") != nullptr, one.hasBar) << one.id;
        EXPECT_EQ(find<QWidget>("backupBar") != nullptr, one.hasBackupBar) << one.id;
        EXPECT_EQ(find<QWidget>("openApps") != nullptr, one.opensApps) << one.id;
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
    click(find<QPushButton>("openApps"));
    EXPECT_TRUE(isAsked);
}

TEST_F(CategoryPage, SaysWhyThereIsNothing) {
    home.makeFile("Music"); // where a folder should be that can be listed
    home.makeFolder("Documents");
    for (const auto &[id, why] :
         {std::pair("music", "This could not be read"), std::pair("documents", "Nothing found")}) {
        open(id);
        EXPECT_TRUE(label("categoryState").startsWith(QStringLiteral("Not measured yet"))) << id;
        EXPECT_EQ(label("categorySize"), QStringLiteral("—"));
        show(id, 0, {});
        EXPECT_TRUE(label("categoryState").startsWith(QLatin1String(why))) << id;
        EXPECT_FALSE(list().isVisible());
        EXPECT_FALSE(find<QPushButton>("remove")->isEnabled());
    }
}

TEST_F(CategoryPage, WarnsByRiskAndModeAndForgetsWhatIsGone) {
    const std::vector<CleanupEntry> entries = {entry("Documents/large", 700), entry("Documents/small", 200)};
    show("documents", 900, entries);
    open("documents");
    EXPECT_EQ(find<QLabel>("selection")->text(), QStringLiteral("Nothing selected"));
    list().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list(), Qt::Key_Space);
    click(find<QPushButton>("remove"));
    ASSERT_NE(sheet(), nullptr);
    const QLabel &remark = *sheet()->findChild<QLabel *>(QStringLiteral("remark"));
    for (const RemovalMode mode : {RemovalMode::deleteNow, RemovalMode::trash}) {
        sheet()->findChild<RemovalModePicker *>()->setMode(mode);
        EXPECT_EQ(remark.text().toStdString(), removalWarning(CleanupRisk::careful, mode));
    }
    click(sheet()->findChild<QPushButton *>(QStringLiteral("confirm")));
    EXPECT_FALSE(find<QPushButton>("remove")->isEnabled()) << "a removal runs";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, 20'000));
    EXPECT_EQ(actions.calls, std::vector<std::string>{"trash " + entries[0].url.path()});
    EXPECT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(label("categorySize"), sizeText(200));
    EXPECT_EQ(find<QLabel>("selection")->text(), QStringLiteral("Nothing selected"));
}

TEST_F(CategoryPage, ComparesSystemDataWithItsRows) {
    open("systemData");
    const QLabel &sentence = *find<QLabel>("sentence");
    EXPECT_FALSE(sentence.isVisible());
    show("systemData", 50 * gigabyte, {});
    EXPECT_FALSE(sentence.isVisible());
    show("systemData", 50 * gigabyte, {entry(".tool/blob", 30 * gigabyte)});
    EXPECT_TRUE(sentence.isVisible());
    EXPECT_TRUE(sentence.text().startsWith(
        QStringLiteral("The locations above account for %1 of the %2. The remaining %3 is not attributable")
            .arg(sizeText(30 * gigabyte), sizeText(50 * gigabyte), sizeText(20 * gigabyte))));
    show("systemData", 30 * gigabyte, {entry(".tool/blob", 30 * gigabyte)});
    EXPECT_TRUE(sentence.text().startsWith(
        QStringLiteral("The locations above cover all of it, and then some: they total %1 against a headline "
                       "of %1.")
            .arg(sizeText(30 * gigabyte))));
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
    EXPECT_EQ(find<QLabel>("selection")->text(), QStringLiteral("1 item selected, %1").arg(sizeText(1)));
}

} // namespace brimvale
