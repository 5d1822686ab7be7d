#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Support/PublishedWriter.h"
#include "Support/ScannedWindow.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Components/CapacityBar.h"
#include "Views/Components/DisclosureButton.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/TickBox.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// What a screen reader meets.
class PageAccessibility : public testing::ScannedWindow {
protected:
    static QAccessibleInterface &reader(QObject &object) {
        return *QAccessible::queryAccessibleInterface(&object);
    }
};

/// Whether `later` comes before `earlier` for people who see: above it and not in a column to its right, or
/// to its left in the same line.
bool isSeenBefore(const QRect &later, const QRect &earlier) {
    const bool isAbove = later.bottom() < earlier.top() && later.left() <= earlier.right();
    const bool sharesLine = later.top() <= earlier.bottom() && earlier.top() <= later.bottom();
    return isAbove || (sharesLine && later.right() < earlier.left());
}

void expectVisualOrder(QAccessibleInterface &parent) {
    if (qobject_cast<DetailPanel *>(parent.object()) != nullptr) // its titles come with their values
        return;
    QRect before;
    for (int i = 0; i < parent.childCount(); ++i) {
        QAccessibleInterface *child = parent.child(i);
        auto *widget = child == nullptr ? nullptr : qobject_cast<QWidget *>(child->object());
        if (widget == nullptr || !widget->isVisible() || widget->size().isEmpty())
            continue;
        EXPECT_TRUE(before.isNull() || !isSeenBefore(child->rect(), before))
            << parent.object()->objectName().toStdString() << ": " << widget->metaObject()->className() << ' '
            << widget->objectName().toStdString();
        before = child->rect();
        if (qobject_cast<QAbstractItemView *>(widget) == nullptr)
            expectVisualOrder(*child);
    }
}

} // namespace

TEST_F(PageAccessibility, IsReadInVisualOrder) {
    for (const Section &section : sections()) {
        QWidget &page = pageOf(section);
        SCOPED_TRACE(page.objectName().toStdString());
        expectVisualOrder(reader(page));
    }
}

TEST_F(PageAccessibility, NamesEveryControlAndHeading) {
    for (const Section &section : sections()) {
        QWidget &page = pageOf(section);
        SCOPED_TRACE(page.objectName().toStdString());
        int headings = 0;
        for (TextLabel *label : page.findChildren<TextLabel *>())
            headings += label->isVisible() && reader(*label).role() == QAccessible::Heading ? 1 : 0;
        EXPECT_TRUE(headings > 0 || section.kind == Section::Kind::browse);
        for (QComboBox *box : page.findChildren<QComboBox *>()) {
            EXPECT_EQ(reader(*box).role(), QAccessible::ComboBox);
            EXPECT_EQ(reader(*box).text(QAccessible::Name), box->accessibleName());
            EXPECT_EQ(reader(*box).text(QAccessible::Value).isEmpty(), false);
        }
        for (CapacityBar *bar : page.findChildren<CapacityBar *>()) {
            EXPECT_EQ(reader(*bar).role(), QAccessible::ProgressBar);
            EXPECT_EQ(reader(*bar).valueInterface()->currentValue().toInt(), qRound(bar->usedShare() * 100));
        }
    }
}

TEST_F(PageAccessibility, TellsWhetherThereIsMoreToShow) {
    QWidget &page = pageOf({Section::Kind::cleanup});
    auto &button = *page.findChild<DisclosureButton *>("disclosure");
    EXPECT_TRUE(reader(button).state().expandable);
    EXPECT_FALSE(reader(button).state().expanded);
    EXPECT_FALSE(reader(button).state().checkable) << "it chooses nothing";
    reader(button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(reader(button).state().expanded);
}

TEST_F(PageAccessibility, ReadsEachFigureOfTheDetailsOnce) {
    QWidget &page = pageOf({Section::Kind::browse});
    auto &details = *page.findChild<DetailPanel *>();
    int heard = 0;
    for (TextLabel *label : details.findChildren<TextLabel *>())
        if (!reader(*label).state().invisible && reader(*label).text(QAccessible::Name).contains("Allocated"))
            ++heard;
    EXPECT_EQ(heard, 1);
    EXPECT_TRUE(reader(*details.findChild<TextLabel *>("allocated"))
                    .text(QAccessible::Name)
                    .startsWith("Allocated: "));
}

TEST_F(PageAccessibility, ColumnsAreChosenFromTheMenuBar) {
    QWidget &page = pageOf({Section::Kind::browse});
    const auto &outline = *page.findChild<OutlineView *>();
    auto &columns = *page.window()->findChild<QMenu *>("columns");
    emit columns.aboutToShow();
    EXPECT_EQ(columns.actions().first()->text(), "Size");
    for (QAction *action : columns.actions())
        if (action->text() == "Files")
            action->trigger();
    EXPECT_GT(outline.columnWidth(OutlineModel::filesColumn), 0);
}

} // namespace brimvale
