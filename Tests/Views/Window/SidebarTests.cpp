#include "Views/Window/Sidebar.h"

#include "Core/Text/Formatting.h"
#include "Support/OpenedAddresses.h"
#include "Support/Window.h"
#include "Views/Components/CapacityBar.h"
#include "Views/Components/NodeName.h"
#include "Views/Window/SidebarFooter.h"

#include <QAccessible>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QToolButton>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace brimvale {

namespace {

class SidebarTest : public ::testing::Test {
protected:
    SidebarTest() {
        overview = sidebar.addRow({"Overview", "chart-pie"});
        browse = sidebar.addRow({"Browse", "folder-tree"});
        sidebar.addHeading("Storage");
        documents = sidebar.addRow({"Documents", "files", Qt::blue});
        sidebar.setCurrentRow(overview);
        sidebar.resize(sidebar.width(), 600);
        sidebar.show();
        sidebar.activateWindow();
        list->setFocus();
    }

    [[nodiscard]] QPoint middleOf(int row) const { return list->visualItemRect(list->item(row)).center(); }

    [[nodiscard]] bool isShown(const char *name) const {
        return sidebar.findChild<QWidget *>(name)->isVisibleTo(&sidebar);
    }

    Sidebar sidebar;
    QListWidget *list = sidebar.findChild<QListWidget *>("pages");
    int overview, browse, documents;
};

} // namespace

TEST_F(SidebarTest, PassesOverHiddenRows) {
    sidebar.setRowHidden(browse, true);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(list->currentRow(), documents);
    sidebar.setRowHidden(browse, false);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(list->currentRow(), browse);
}

TEST_F(SidebarTest, GoesWhereAClickOrAKeySays) {
    const int heading = browse + 1;
    const auto click = [this](QPoint where, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, keys, where);
    };
    const auto type = [this](Qt::Key key) { QTest::keyClick(list, key); };
    struct Case {
        const char *description;
        int from;
        std::function<void()> action;
        int to;
    };
    for (const Case &one : {
             Case{"a click on a row", overview, [&] { click(middleOf(documents)); }, documents},
             Case{"a click on a heading", browse, [&] { click(middleOf(heading)); }, browse},
             Case{"a click beside the rows", browse,
                  [&] {
                      click({50, list->viewport()->height() - 5});
                  },
                  browse},
             Case{"a click with Control on the current row", browse,
                  [&] { click(middleOf(browse), Qt::ControlModifier); }, browse},
             Case{"Down over a heading", browse, [&] { type(Qt::Key_Down); }, documents},
             Case{"Up over a heading", documents, [&] { type(Qt::Key_Up); }, browse},
         }) {
        SCOPED_TRACE(one.description);
        sidebar.setCurrentRow(one.from);
        const QSignalSpy changes(&sidebar, &Sidebar::currentRowChanged);
        one.action();
        EXPECT_EQ(list->currentRow(), one.to);
        EXPECT_TRUE(list->item(one.to)->isSelected());
        EXPECT_EQ(list->selectedItems().size(), 1);
        EXPECT_EQ(changes.count(), one.from == one.to ? 0 : 1);
    }
}

TEST_F(SidebarTest, ShowsAndReadsOutValues) {
    const auto spoken = [this](int row) {
        return QAccessible::queryAccessibleInterface(list)->child(row)->text(QAccessible::Name);
    };
    const QImage before = sidebar.grab().toImage();
    EXPECT_EQ(spoken(documents), "Documents");
    sidebar.setValue(documents, "86.4 GB");
    EXPECT_EQ(spoken(documents), "Documents, 86.4 GB");
    EXPECT_NE(sidebar.grab().toImage(), before);
    sidebar.setValue(documents, "");
    EXPECT_EQ(spoken(documents), "Documents");
    EXPECT_EQ(sidebar.grab().toImage(), before);
}

TEST_F(SidebarTest, FooterShowsOnlyWhatThereIsToSay) {
    SidebarFooter &footer = sidebar.footer();
    const VolumeInfo volume{.url = FileURL("/"), .name = "Disk", .totalCapacity = 1000};
    struct Case {
        bool hasVolume;
        std::int64_t freed;
        bool hasAccess;
        QString update = {};
        std::int64_t inTrash = 0;
    };
    for (const Case &one :
         {Case{false, 0, true}, Case{true, 0, true}, Case{false, 1, true}, Case{false, 0, false},
          Case{true, 5000, false}, Case{false, 0, true, "Version 2 is available"},
          Case{false, 0, true, {}, 5000}, Case{false, 0, true}}) {
        footer.setVolume(one.hasVolume ? std::optional(volume) : std::nullopt);
        footer.setFreed(one.freed, one.inTrash);
        footer.setHasFullDiskAccess(one.hasAccess);
        footer.setUpdate(one.update);
        EXPECT_EQ(isShown("update"), !one.update.isEmpty());
        EXPECT_EQ(isShown("volumeName"), one.hasVolume);
        EXPECT_EQ(isShown("freedThisSession"), one.freed > 0);
        EXPECT_EQ(isShown("movedToTrash"), one.inTrash > 0);
        EXPECT_EQ(isShown("grantFullDiskAccess"), !one.hasAccess);
        EXPECT_EQ(isShown("sidebarFooter"), one.hasVolume || one.freed > 0 || one.inTrash > 0 ||
                                                !one.hasAccess || !one.update.isEmpty());
    }
}

TEST_F(SidebarTest, FooterTellsHowFullTheVolumeIs) {
    struct Case {
        std::int64_t total, important, plain;
        double used;
    };
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const Case &one : {
             Case{1000, 250, 200, 0.75}, // what would be purged counts as free
             Case{1000, 0, 200, 0.8},    // a system that knows no purging
             Case{1000, 2000, 0, 0},     // more free than there is
             Case{1000, 100, 200, 0.9},  // as on the Overview
             Case{0, 0, 0, 1},           // of unknown size
             Case{most, most, most, 0},  // as large as it gets
         }) {
        const VolumeInfo volume{.url = FileURL("/"),
                                .name = "Disk",
                                .totalCapacity = one.total,
                                .availableForImportantUsage = one.important,
                                .trueFree = one.plain};
        sidebar.footer().setVolume(volume);
        EXPECT_DOUBLE_EQ(sidebar.findChild<CapacityBar *>("capacityBar")->usedShare(), one.used);
        EXPECT_EQ(testing::shown(sidebar, "freeSpace"),
                  Fmt::byteFormatter(volume.shownAvailable()) + " free of " + Fmt::byteFormatter(one.total));
    }
}

TEST_F(SidebarTest, FooterKeepsAnyNameWithinTheSidebar) {
    const auto *label = sidebar.findChild<QLabel *>("volumeName");
    const int width = sidebar.width();
    for (const std::string &name :
         {std::string("Disk"), std::string(300, 'm'), std::string("<b>\xff</b>\n"), std::string()}) {
        sidebar.footer().setVolume(VolumeInfo{.url = FileURL("/"), .name = name, .totalCapacity = 1000});
        QTest::qWait(0);
        EXPECT_EQ(sidebar.width(), width);
        EXPECT_LE(label->mapTo(&sidebar, label->rect().topRight()).x(), width);
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
        EXPECT_EQ(label->accessibleName(), displayedText(name)) << "never raw";
    }
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST_F(SidebarTest, FooterKeepsTheLineAboutAnUpdateWithinTheSidebar) {
    auto *line = sidebar.findChild<QToolButton *>("update");
    const QSignalSpy asked(&sidebar.footer(), &SidebarFooter::updateAsked);
    for (const QString &said : {QString("Version 1.4.2 is available"), QString(300, 'm')}) {
        sidebar.footer().setUpdate(said);
        QTest::qWait(0);
        EXPECT_LE(line->mapTo(&sidebar, line->rect().topRight()).x(), sidebar.width());
        EXPECT_LE(line->sizeHint().width(), line->width());
        EXPECT_EQ(line->text() == said, line->toolTip().isEmpty());
        EXPECT_EQ(line->accessibleName(), said);
    }
    line->setFocus();
    QTest::keyClick(line, Qt::Key_Space);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(SidebarTest, FooterOpensThePrivacySettings) {
    const testing::OpenedAddresses opened("x-apple.systempreferences");
    sidebar.footer().setHasFullDiskAccess(false);
    auto *button = sidebar.findChild<QPushButton *>("grantFullDiskAccess");
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(opened.all,
              QStringList("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
}

} // namespace brimvale
