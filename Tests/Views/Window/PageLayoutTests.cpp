#include "Core/Model/ScanSession.h"
#include "Support/PublishedWriter.h"
#include "Support/ScannedWindow.h"
#include "Views/Components/Card.h"
#include "Views/Components/FoldingButton.h"
#include "Views/Components/Metrics.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// In the smallest window, at first.
class PageLayout : public testing::ScannedWindow {
protected:
    PageLayout() { window.resize(900, 600); }

    int rightEdge(const QWidget &widget) const {
        return widget.mapTo(&window, QPoint(widget.width(), 0)).x();
    }
};

} // namespace

TEST_F(PageLayout, HasOneRightEdge) {
    for (const QSize size : {QSize(900, 600), QSize(1180, 760)}) {
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

TEST_F(PageLayout, CutsNoControlInASmallWindow) {
    PublishedWriter::set(model.scan, &SessionState::scanUnreadable, 1234);
    for (const Section &section : sections()) {
        QWidget &page = pageOf(section);
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
