#include "Core/Model/ScanSession.h"
#include "Support/PublishedWriter.h"
#include "Support/ScannedWindow.h"
#include "Views/Components/Card.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/FoldingButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFont>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// Texts of another size, for the windows that are made after it.
class ScaledTexts {
public:
    explicit ScaledTexts(double scale) : before_(QApplication::font()) {
        Type::setScale(scale);
        QApplication::setFont(Type::font(Type::Size::body));
    }
    ~ScaledTexts() {
        Type::setScale(1);
        QApplication::setFont(before_);
    }
    ScaledTexts(const ScaledTexts &) = delete;
    ScaledTexts &operator=(const ScaledTexts &) = delete;

private:
    QFont before_;
};

/// In the smallest window, at first.
class PageLayout : private ScaledTexts, public testing::ScannedWindow {
protected:
    explicit PageLayout(double scale) : ScaledTexts(scale) { window.resize(ContentView::smallestSize()); }
    PageLayout() : PageLayout(1) {}

    int rightEdge(const QWidget &widget) const {
        return widget.mapTo(&window, QPoint(widget.width(), 0)).x();
    }
};

} // namespace

class PageLayoutWithTexts : public PageLayout, public ::testing::WithParamInterface<double> {
protected:
    PageLayoutWithTexts() : PageLayout(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Scaled, PageLayoutWithTexts, ::testing::Values(0.8, 1, 1.3, 1.6));

TEST_P(PageLayoutWithTexts, HasOneRightEdge) {
    for (const QSize size : {ContentView::smallestSize(), QSize(1180, 760)}) {
        window.resize(size);
        for (const Section &section : sections()) {
            QWidget &page = pageOf(section);
            SCOPED_TRACE(page.objectName().toStdString());
            int edge = 0;
            for (const Card *card : page.findChildren<Card *>())
                if (card->isVisible())
                    edge = std::max(edge, rightEdge(*card));
            for (const QAbstractButton *button : page.findChildren<QAbstractButton *>())
                if (button->isVisible())
                    edge = std::max(edge, rightEdge(*button));
            EXPECT_EQ(edge, window.width() - Metrics::pageMargin);
        }
    }
}

TEST_P(PageLayoutWithTexts, CutsNoControlInASmallWindow) {
    PublishedWriter::set(model.scan, &SessionState::scanUnreadable, 1234);
    for (const Section &section : sections()) {
        QWidget &page = pageOf(section);
        // The free space of a place may have changed its text a moment ago.
        QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        SCOPED_TRACE(page.objectName().toStdString());
        const int left = page.mapTo(&window, QPoint()).x();
        for (const QWidget *widget : page.findChildren<QWidget *>()) {
            const bool isControl = qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                                   qobject_cast<const QComboBox *>(widget) != nullptr;
            if (!isControl || !widget->isVisible())
                continue;
            SCOPED_TRACE(widget->objectName().toStdString());
            EXPECT_GE(widget->width(), std::min(widget->minimumSizeHint().width(), widget->maximumWidth()));
            EXPECT_LE(rightEdge(*widget), window.width() - Metrics::pageMargin);
            EXPECT_GE(widget->mapTo(&window, QPoint()).x(), left);
        }
        for (const QScrollArea *area : page.findChildren<QScrollArea *>()) {
            EXPECT_TRUE(!area->isVisible() || area->horizontalScrollBar()->maximum() == 0)
                << area->objectName().toStdString();
        }
        for (const QLabel *label : page.findChildren<QLabel *>()) {
            const bool mayBeNarrow = label->wordWrap() || qobject_cast<const ElidedLabel *>(label) != nullptr;
            EXPECT_TRUE(!label->isVisible() || mayBeNarrow ||
                        label->width() >= label->minimumSizeHint().width())
                << label->text().toStdString();
        }
    }
}

TEST_F(PageLayout, FoldsButtonsOnlyWhereThereIsNoRoom) {
    pageOf({Section::Kind::browse});
    const auto *choose = window.findChild<FoldingButton *>("chooseFolder");
    const auto *scan = window.findChild<FoldingButton *>("scan");
    EXPECT_TRUE(choose->isFolded());
    EXPECT_EQ(choose->text(), "Choose Folder") << "which a screen reader reads";
    window.resize(1180, 760);
    EXPECT_TRUE(testing::eventually([&] { return choose->width() >= choose->minimumSizeHint().width(); }));
    EXPECT_FALSE(choose->isFolded());
    EXPECT_FALSE(scan->isFolded());
}

TEST_F(PageLayout, NamesTheWindowAfterWhatWasScanned) {
    const std::string name = model.scan->tree->name;
    EXPECT_EQ(window.windowTitle().toStdString(),
              name + " — " + QApplication::applicationName().toStdString());
    model.scan.startScan(home.path("folder"));
    EXPECT_TRUE(testing::eventually([this] { return !model.scan->isScanning; }));
    EXPECT_TRUE(window.windowTitle().startsWith("folder — "));
}

} // namespace brimvale
