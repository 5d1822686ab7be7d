#pragma once

#include "Core/Model/CorvelModel.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Support/Model.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Window/WindowStyle.h"

#include <QApplication>
#include <QStackedWidget>
#include <gtest/gtest.h>
#include <vector>

namespace brimvale::testing {

/// The window in the style of the program, for a user of Linux with a scanned home.
class ScannedWindow : public ::testing::Test {
protected:
    ScannedWindow() {
        QApplication::setStyle(new WindowStyle);
        home.makeFile("folder/file", 5'000'000);
        activate(window);
        model.scan.startScan(home.path());
        EXPECT_TRUE(eventually([this] { return !model.scan->isScanning; }));
    }
    ~ScannedWindow() override { QApplication::setStyle("Fusion"); }

    /// Every page that the sidebar shows.
    [[nodiscard]] std::vector<Section> sections() const {
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

    LinuxHome home;
    RecordingActions actions;
    CorvelModel model{actions};
    WholeWindow window{model};
};

} // namespace brimvale::testing
