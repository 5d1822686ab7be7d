#include "Views/OverviewView.h"

#include "Core/Formatting.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/ConfirmationSheet.h"
#include "Views/Overview/CategoryRow.h"
#include "Views/Overview/SegmentedBar.h"

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

constexpr std::int64_t gigabyte = 1'000'000'000;

QString sizeText(std::int64_t bytes) {
    return QString::fromStdString(Fmt::byteFormatter(bytes));
}

VolumeInfo volume(const char *path, const char *name, std::int64_t free, std::int64_t available) {
    return {.url = FileURL(path),
            .name = name,
            .totalCapacity = 500 * gigabyte,
            .availableForImportantUsage = available,
            .trueFree = free,
            .isInternal = true,
            .isRootVolume = std::string_view(path) == "/"};
}

/// The model reads the real volumes and snapshots in the background. What a test puts in their place holds
/// until it lets the event loop run.
class OverviewPage : public ::testing::Test {
protected:
    OverviewPage() {
        page.resize(900, 700);
        page.show();
        page.activateWindow();
        QObject::connect(&page, &OverviewView::categoryOpened,
                         [this](const std::string &id) { opened.push_back(id); });
    }

    void showVolumes(std::vector<VolumeInfo> volumes) {
        PublishedWriter::set(model.volumes, std::move(volumes));
    }

    void showSize(std::string_view id, std::int64_t bytes) {
        PublishedWriter::update(model.categories, [&](std::vector<MeasuredCategory> &categories) {
            for (MeasuredCategory &one : categories)
                if (one.category.id == id) {
                    one.size = bytes;
                    one.measured = true;
                }
        });
    }

    template<class Widget>
    Widget &find(const char *name) {
        return *page.findChild<Widget *>(QLatin1String(name));
    }
    QString label(const char *name) { return find<QLabel>(name).text(); }
    CategoryRow &row(const char *id) {
        return *page.findChild<CategoryRow *>(QStringLiteral("category:") + QLatin1String(id));
    }
    static void click(QWidget &widget) { QTest::mouseClick(&widget, Qt::LeftButton); }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{nullptr, actions};
    OverviewView page{model};
    std::vector<std::string> opened;
};

QString nameOf(QAccessibleInterface *item) {
    return item == nullptr ? QString() : item->text(QAccessible::Name);
}

} // namespace

TEST_F(OverviewPage, ShowsTheCapacityOfTheRootVolume) {
    showVolumes({volume("/", "Macintosh HD", 100 * gigabyte, 120 * gigabyte),
                 volume("/Volumes/Backup", "Backup", 40 * gigabyte, 0)});
    EXPECT_EQ(find<ElidedLabel>("capacityName").text(), QStringLiteral("Macintosh HD"));
    EXPECT_EQ(label("capacityUsed"),
              QStringLiteral("%1 of %2 used").arg(sizeText(400 * gigabyte), sizeText(500 * gigabyte)));
    EXPECT_EQ(label("capacityFree"), sizeText(120 * gigabyte)) << "purgeable space is free space";
    EXPECT_EQ(
        label("purgeable"),
        sizeText(20 * gigabyte) +
            QStringLiteral(" of the free space is purgeable, meaning macOS is holding it but will give "
                           "it back under pressure. Mostly Time Machine snapshots and evictable caches."));
    const QList<QWidget *> others = page.findChildren<QWidget *>(QStringLiteral("volumeRow"));
    ASSERT_EQ(others.size(), 1);
    QStringList words;
    for (const QLabel *part : others.front()->findChildren<QLabel *>())
        words.append(part->text());
    EXPECT_TRUE(words.contains(
        QStringLiteral("%1 free of %2").arg(sizeText(40 * gigabyte), sizeText(500 * gigabyte))))
        << "where nothing is known of purgeable space, what is free";

    showVolumes({volume("/", "Macintosh HD", 100 * gigabyte, 100 * gigabyte)});
    EXPECT_TRUE(find<QLabel>("purgeable").isHidden());
    EXPECT_TRUE(find<QWidget>("volumesCard").isHidden());
    showVolumes({});
    EXPECT_EQ(find<ElidedLabel>("capacityName").text(), QStringLiteral("No volume"));
    EXPECT_TRUE(find<QWidget>("volumesCard").isHidden());
}

TEST_F(OverviewPage, SegmentsGrowAndTellNameAndSize) {
    showVolumes({volume("/", "Macintosh HD", 100 * gigabyte, 0)});
    SegmentedBar &bar = find<SegmentedBar>("segmentedBar");
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&bar);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->childCount(), 0);

    showSize("systemData", 300 * gigabyte);
    ASSERT_EQ(list->childCount(), 1);
    const double widthBefore = bar.rectOf(0).width();
    showSize("documents", 100 * gigabyte);
    showSize("systemData", 200 * gigabyte);
    showSize("trash", 0);
    ASSERT_EQ(list->childCount(), 2);
    QAccessibleInterface *documents = list->child(0);
    QAccessibleInterface *systemData = list->child(1);
    EXPECT_EQ(nameOf(documents), QStringLiteral("Documents, ") + sizeText(100 * gigabyte));
    EXPECT_EQ(nameOf(systemData), QStringLiteral("System Data, ") + sizeText(200 * gigabyte));
    EXPECT_EQ(list->indexOfChild(systemData), 1);
    EXPECT_EQ(documents->parent(), list);
    EXPECT_LE(documents->rect().right(), systemData->rect().left() + 1);
    EXPECT_NEAR(bar.rectOf(1).width(), widthBefore * 2 / 3, 1);
    EXPECT_LT(bar.rectOf(1).right(), bar.width()) << "the free space stays empty";

    showSize("documents", 0);
    EXPECT_EQ(list->childCount(), 1);
    EXPECT_FALSE(systemData->isValid()) << "there is no second one any more";
    EXPECT_EQ(nameOf(documents), QStringLiteral("System Data, ") + sizeText(200 * gigabyte));

    showSize("documents", 900 * gigabyte);
    EXPECT_NEAR(bar.rectOf(1).right(), bar.width(), 1) << "what is more than the volume shares the bar";
}

TEST_F(OverviewPage, RowsOpenTheirCategory) {
    showSize("mail", 5 * gigabyte);
    EXPECT_EQ(row("mail").accessibleName(), QStringLiteral("Mail, ") + sizeText(5 * gigabyte));
    EXPECT_EQ(row("music").accessibleName(), QStringLiteral("Music")) << "not measured yet";
    click(row("documents"));
    row("applications").setFocus();
    QTest::keyClick(&row("applications"), Qt::Key_Return);
    EXPECT_EQ(opened, (std::vector<std::string>{"documents", "applications"}));

    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    QTest::keyClick(&row("applications"), Qt::Key_Down);
    EXPECT_TRUE(row("documents").hasFocus());
    for (const char *next : {"messages", "mail", "music", "macos", "messages"}) {
        QTest::keyClick(page.focusWidget(), Qt::Key_M);
        EXPECT_TRUE(row(next).hasFocus()) << next;
    }
    EXPECT_FALSE(row("messages").visibleRegion().isEmpty());
}

TEST_F(OverviewPage, SnapshotsAreDeletedAfterAQuestion) {
    EXPECT_TRUE(find<QWidget>("snapshotsCard").isHidden());
    const std::vector<LocalSnapshot> snapshots = {
        {"com.apple.TimeMachine.2026-02-01-101500.local", Date(std::chrono::seconds(1'770'000'000))},
        {"com.apple.TimeMachine.garbage.local", std::nullopt}};
    PublishedWriter::set(model.snapshots, snapshots);
    EXPECT_FALSE(find<QWidget>("snapshotsCard").isHidden());
    EXPECT_EQ(label("snapshotsNote"),
              QStringLiteral("2 snapshots. These hold on to deleted blocks and are the usual reason System "
                             "Data grows and shrinks on its own."));
    EXPECT_EQ(label("snapshotsRemark"),
              QStringLiteral("macOS does not report a size per snapshot. Their combined weight shows up as "
                             "purgeable space above."));
    const auto buttons = [&] { return page.findChildren<QPushButton *>(QStringLiteral("deleteSnapshot")); };
    ASSERT_EQ(buttons().size(), 2);
    EXPECT_TRUE(buttons().at(1)->accessibleName().contains(QStringLiteral("garbage")));

    const auto sheet = [&] { return page.findChild<ConfirmationSheet *>(); };
    buttons().front()->click();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_TRUE(sheet()->findChild<QPushButton *>(QStringLiteral("cancel"))->isDefault());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(*model.isDeletingSnapshot);
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet() == nullptr; }));

    PublishedWriter::set(model.snapshots, snapshots);
    actions.privilegedRunError = PrivilegedRunError{};
    buttons().front()->click();
    click(*sheet()->findChild<QPushButton *>(QStringLiteral("confirm")));
    EXPECT_TRUE(*model.isDeletingSnapshot);
    EXPECT_FALSE(buttons().back()->isEnabled()) << "one at a time";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !*model.isDeletingSnapshot; }, 20'000));
    EXPECT_EQ(actions.calls,
              std::vector<std::string>{"admin /usr/bin/tmutil deletelocalsnapshots 2026-02-01-101500"});
    EXPECT_NE(page.findChild<NoticeSheet *>(), nullptr) << "it is still there";
}

} // namespace brimvale
