#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"
#include "Platform/Host.h"
#include "Support/Model.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Browse/DetailPanel.h"
#include "Views/Components/CapacityBar.h"
#include "Views/Components/DisclosureButton.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/TickBox.h"
#include "Views/Window/WindowStyle.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QStackedWidget>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// What a screen reader meets in the window of a user with a scanned home.
class PageAccessibility : public ::testing::Test {
protected:
    PageAccessibility() {
        QApplication::setStyle(new WindowStyle);
        Host::useSystem(System::linux);
        home.makeFile("folder/file", 5'000'000);
        testing::activate(window);
        model.scan.startScan(home.path());
        EXPECT_TRUE(testing::eventually([this] { return !model.scan->isScanning; }));
    }
    ~PageAccessibility() override { QApplication::setStyle("Fusion"); }

    std::vector<Section> sections() const {
        std::vector<Section> all = {{Section::Kind::overview},
                                    {Section::Kind::browse},
                                    {Section::Kind::cleanup},
                                    {Section::Kind::apps}};
        for (const MeasuredCategory &one : model.storage->categories)
            if (one.category.hasPlace())
                all.push_back({Section::Kind::category, one.category.id});
        return all;
    }

    QWidget &pageOf(const Section &section) {
        window.goTo(section);
        QApplication::sendPostedEvents();
        QApplication::processEvents();
        return *window.findChild<QStackedWidget *>()->currentWidget();
    }

    static QAccessibleInterface &reader(QObject &object) {
        return *QAccessible::queryAccessibleInterface(&object);
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
    testing::WholeWindow window{model};
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

} // namespace brimvale
