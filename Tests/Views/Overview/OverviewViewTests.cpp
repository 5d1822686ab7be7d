#include "Views/Overview/OverviewView.h"

#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"
#include "Core/Text/Formatting.h"
#include "Support/PageTest.h"
#include "Support/PublishedWriter.h"
#include "Views/Components/CapacityBar.h"
#include "Views/Overview/CategoryRow.h"
#include "Views/Overview/SegmentedBar.h"
#include "Views/Removing/ConfirmationSheet.h"

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::eventually;

constexpr std::int64_t gigabyte = 1'000'000'000;

constexpr auto sizeText = Fmt::byteFormatter;

VolumeInfo volume(const char *path, const char *name, std::int64_t free, std::int64_t available) {
    return {.url = FileURL(path),
            .name = name,
            .totalCapacity = 500 * gigabyte,
            .availableForImportantUsage = available,
            .trueFree = free,
            .isInternal = true,
            .isRootVolume = std::string_view(path) == "/"};
}

struct ShownOverview : OverviewView {
    explicit ShownOverview(CorvelModel &model) : OverviewView(model.storage, model.volumes) {}
};

/// The model reads the real volumes and snapshots in the background. What a test puts in their place holds
/// until it lets the event loop run.
class OverviewPage : public testing::PageTest<ShownOverview> {
protected:
    OverviewPage() {
        page.show();
        QObject::connect(&page, &OverviewView::categoryOpened,
                         [this](const std::string &id) { opened.push_back(id); });
    }

    void showVolumes(std::vector<VolumeInfo> volumes) {
        PublishedWriter::set(model.volumes, &VolumeState::volumes, std::move(volumes));
    }

    void showSize(std::string_view id, std::int64_t bytes) {
        PublishedWriter::update(model.storage, [&](StorageState &state) {
            for (MeasuredCategory &one : state.categories)
                if (one.category.id == id) {
                    one.size = bytes;
                    one.measured = true;
                }
        });
    }

    CategoryRow &row(const char *id) {
        return *page.findChild<CategoryRow *>(QStringLiteral("category:") + QLatin1String(id));
    }

    std::vector<std::string> opened;
};

std::string nameOf(QAccessibleInterface *item) {
    return item == nullptr ? "" : item->text(QAccessible::Name).toStdString();
}

} // namespace

TEST_F(OverviewPage, ShowsTheCapacityOfTheRootVolume) {
    EXPECT_EQ(text("sizesNote"),
              "Sizes are measured in allocated blocks, so they match what deleting actually frees.");
    showVolumes({volume("/", "Macintosh HD", 100 * gigabyte, 120 * gigabyte),
                 volume("/Volumes/Backup", "Backup", 40 * gigabyte, 0)});
    EXPECT_EQ(text("capacityName"), "Macintosh HD");
    EXPECT_EQ(text("capacityUsed"), sizeText(400 * gigabyte) + " of " + sizeText(500 * gigabyte) + " used");
    EXPECT_EQ(text("capacityFree"), sizeText(120 * gigabyte)) << "purgeable space is free space";
    EXPECT_TRUE(text("purgeable").starts_with(sizeText(20 * gigabyte) + " of the free space is purgeable, "));
    const QList<QWidget *> others = page.findChildren<QWidget *>("volumeRow");
    ASSERT_EQ(others.size(), 1);
    EXPECT_THAT(testing::labels(*others.front(), ""),
                ::testing::Contains(sizeText(40 * gigabyte) + " free of " + sizeText(500 * gigabyte)))
        << "where nothing is known of purgeable space, what is free";

    showVolumes({volume("/", "Macintosh HD", 100 * gigabyte, 100 * gigabyte)});
    EXPECT_TRUE(find("purgeable").isHidden());
    EXPECT_TRUE(find("volumesCard").isHidden());
    EXPECT_EQ(text("reserved"), "") << "nothing is reserved";
    VolumeInfo shared = volume("/", "Disk", 55 * gigabyte, 55 * gigabyte);
    shared.totalCapacity = 102 * gigabyte;
    shared.reserved = 168 * gigabyte;
    showVolumes({shared});
    EXPECT_TRUE(text("reserved")
                    .starts_with(sizeText(47 * gigabyte) + " used, " + sizeText(55 * gigabyte) + " free, " +
                                 sizeText(168 * gigabyte) + " reserved."));
    EXPECT_TRUE(find("capacityCard").toolTip().isEmpty()) << "a Mac does not tell its devices";
    shared.fileSystem = "ext4";
    shared.device = "/dev/sda2";
    VolumeInfo other = volume("/media/stick", "Stick", 0, 0);
    other.fileSystem = "vfat";
    other.device = "/dev/sdb1";
    showVolumes({shared, other});
    EXPECT_EQ(find("capacityCard").toolTip().toStdString(), "ext4 · /dev/sda2 · /");
    EXPECT_EQ(text("volumeDetails"), "vfat · /dev/sdb1 · /media/stick");
    showVolumes({});
    EXPECT_EQ(text("capacityName"), "No volume");
    EXPECT_TRUE(find("volumesCard").isHidden());
}

TEST_F(OverviewPage, ShowsNoNameOfAVolumeRaw) {
    showVolumes({volume("/", "System\n\u202Eksid", 0, 0), volume("/m/<b>\n", "Up\u202E<b>\xff", 0, 0)});
    EXPECT_EQ(text("capacityName"), "System␊\\u{202E}ksid");
    const auto &row = find("volumeRow");
    EXPECT_EQ(row.toolTip().toStdString(), "<p>/m/&lt;b&gt;␊</p>") << "shown as text";
    EXPECT_THAT(testing::labels(row, ""), ::testing::Contains("Up\\u{202E}<b>\uFFFD"));
    EXPECT_EQ(row.findChild<CapacityBar *>()->accessibleName().toStdString(),
              "Capacity of Up\\u{202E}<b>\uFFFD");
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
    EXPECT_EQ(nameOf(documents), "Documents, " + sizeText(100 * gigabyte));
    EXPECT_EQ(nameOf(systemData), "System Data, " + sizeText(200 * gigabyte));
    EXPECT_LE(documents->rect().right(), systemData->rect().left() + 1);
    EXPECT_NEAR(bar.rectOf(1).width(), widthBefore * 2 / 3, 1);
    EXPECT_LT(bar.rectOf(1).right(), bar.width()) << "the free space stays empty";

    showSize("documents", 0);
    EXPECT_EQ(list->childCount(), 1);
    EXPECT_FALSE(systemData->isValid()) << "there is no second one any more";
    EXPECT_EQ(nameOf(documents), "System Data, " + sizeText(200 * gigabyte));

    showSize("documents", 900 * gigabyte);
    EXPECT_NEAR(bar.rectOf(1).right(), bar.width(), 1) << "what is more than the volume shares the bar";
}

TEST_F(OverviewPage, LeavesOutCategoriesThatHaveNoPlace) {
    const auto setRoots = [&](std::vector<std::string> roots) {
        PublishedWriter::update(model.storage, [&](StorageState &state) {
            for (MeasuredCategory &one : state.categories)
                if (one.category.id == "music")
                    one.category.roots = roots;
        });
    };
    setRoots({});
    EXPECT_FALSE(row("music").isVisible());
    EXPECT_TRUE(row("mail").isVisible() && row("systemData").isVisible());
    setRoots({"/music"});
    EXPECT_TRUE(row("music").isVisible());
}

TEST_F(OverviewPage, RowsOpenTheirCategory) {
    showSize("mail", 5 * gigabyte);
    EXPECT_EQ(row("mail").accessibleName().toStdString(), "Mail, " + sizeText(5 * gigabyte));
    EXPECT_EQ(row("music").accessibleName(), "Music") << "not measured yet";
    click(row("documents"));
    row("applications").setFocus();
    QTest::keyClick(&row("applications"), Qt::Key_Return);
    EXPECT_EQ(opened, (std::vector<std::string>{"documents", "applications"}));

    testing::activate(page);
    QTest::keyClick(&row("applications"), Qt::Key_Down);
    EXPECT_TRUE(row("documents").hasFocus());
    for (const char *next : {"messages", "mail", "music", "macos", "messages"}) {
        QTest::keyClick(page.focusWidget(), Qt::Key_M);
        EXPECT_TRUE(row(next).hasFocus()) << next;
    }
    EXPECT_FALSE(row("messages").visibleRegion().isEmpty());
}

TEST_F(OverviewPage, SnapshotsAreDeletedAfterAQuestion) {
    EXPECT_TRUE(find("snapshotsCard").isHidden());
    const std::vector<LocalSnapshot> snapshots = {
        {"com.apple.TimeMachine.2026-02-01-101500.local", Date(std::chrono::seconds(1'770'000'000))},
        {"com.apple.TimeMachine.garbage.local", std::nullopt}};
    PublishedWriter::set(model.volumes, &VolumeState::snapshots, snapshots);
    EXPECT_FALSE(find("snapshotsCard").isHidden());
    EXPECT_EQ(text("snapshotsNote"), snapshotNote(2));
    const auto buttons = [&] { return page.findChildren<QPushButton *>("deleteSnapshot"); };
    ASSERT_EQ(buttons().size(), 2);
    EXPECT_TRUE(buttons().at(1)->accessibleName().contains("garbage"));

    const auto sheet = [&] { return page.findChild<ConfirmationSheet *>(); };
    buttons().front()->click();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_TRUE(sheet()->findChild<QPushButton *>("cancel")->isDefault());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(model.volumes->isDeletingSnapshot);
    EXPECT_TRUE(eventually([&] { return sheet() == nullptr; }));

    PublishedWriter::set(model.volumes, &VolumeState::snapshots, snapshots);
    actions.privilegedRunError = PrivilegedRunError{};
    buttons().front()->click();
    testing::click(*sheet(), "confirm");
    EXPECT_TRUE(model.volumes->isDeletingSnapshot);
    EXPECT_FALSE(buttons().back()->isEnabled()) << "one at a time";
    ASSERT_TRUE(eventually([&] { return !model.volumes->isDeletingSnapshot; }));
    EXPECT_EQ(actions.calls,
              std::vector<std::string>{"admin /usr/bin/tmutil deletelocalsnapshots 2026-02-01-101500"});
    EXPECT_NE(page.findChild<NoticeSheet *>(), nullptr) << "it is still there";
}

TEST_F(OverviewPage, SnapshotsOfToolsShowWhatTheyWouldFree) {
    PublishedWriter::set(model.volumes, &VolumeState::snapshots,
                         std::vector<LocalSnapshot>{{.name = "root 7",
                                                     .date = {},
                                                     .tool = "Snapper",
                                                     .description = "before <b>",
                                                     .exclusiveBytes = 5 * gigabyte,
                                                     .deletion = {"snapper"}},
                                                    {.name = "/home/.kept", .date = {}, .tool = "Btrfs"}});
    const auto texts = [&](const char *name) {
        std::vector<std::string> all;
        for (const QLabel *label : page.findChildren<QLabel *>(name))
            all.push_back(label->text().toStdString());
        return all;
    };
    EXPECT_THAT(
        texts("snapshotDetails"),
        ::testing::ElementsAre("Snapper · before <b>", "Btrfs · delete it with the program that made it"));
    EXPECT_THAT(texts("snapshotSize"), ::testing::ElementsAre(sizeText(5 * gigabyte), "size unknown"));
    EXPECT_EQ(page.findChildren<QPushButton *>("deleteSnapshot").size(), 1) << "the other has no known tool";
}

TEST_F(OverviewPage, CanBeStoppedAndPretendsNothing) {
    home.makeFile("Documents/file", 50'000);
    EXPECT_FALSE(isVisible("stopMeasuring"));
    click("measure");
    ASSERT_TRUE(isVisible("stopMeasuring"));
    click("stopMeasuring");
    EXPECT_FALSE(find("stopMeasuring").isEnabled()) << "it stops once";
    ASSERT_TRUE(eventually([&] { return !model.storage->isMeasuringCategories; }));
    EXPECT_FALSE(isVisible("stopMeasuring"));
    EXPECT_TRUE(isVisible("measure"));
    EXPECT_FALSE(model.storage->lastCategoryScan);
    EXPECT_EQ(text("pageSubtitle"), "Stopped. Categories without a size were not measured.");

    model.volumes.refreshVolumes();
    model.storage.resolveRemainder();
    const MeasuredCategory &systemData = *model.storage.category("systemData");
    EXPECT_FALSE(systemData.measured) << "nobody knows what the other categories leave";
    EXPECT_EQ(systemData.size, 0);
    EXPECT_EQ(row("systemData").accessibleName().toStdString(), "System Data") << "no size is told";

    click("measure");
    EXPECT_TRUE(find("stopMeasuring").isEnabled());
    ASSERT_TRUE(eventually([&] { return !model.storage->isMeasuringCategories; }));
    EXPECT_TRUE(model.storage.category("systemData")->measured);
    EXPECT_TRUE(text("pageSubtitle").starts_with("Measured at "));
}

} // namespace brimvale
