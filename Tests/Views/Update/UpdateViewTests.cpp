#include "Views/Update/UpdateView.h"

#include "Core/Model/Backups.h"
#include "Core/Model/CorvelModel.h"
#include "Support/OpenedAddresses.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleHome.h"
#include "Support/UpdateScene.h"
#include "Support/Window.h"
#include "Views/Components/ProgressLine.h"
#include "Views/Window/ContentView.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QPointer>
#include <QToolButton>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using namespace updateState;
using ::testing::Contains;

/// The window of an application, before a server with a feed.
class UpdateViewTest : public testing::UpdateScene {
protected:
    UpdateViewTest() {
        feed["notes"] = "First line\n<b>Second</b> line";
        environment.tools.shell = testing::makeTool(folder, "shell", "exit 0");
        publish(42);
    }

    void publish(int build) {
        feed["build"] = build;
        UpdateScene::publish();
    }

    void open() {
        updater.emplace(environment);
        show();
    }

    void show() {
        window = new UpdateView(*updater, &parent);
        QObject::connect(window, &UpdateView::installAsked, &*updater, &Updater::installAndRelaunch);
        window->show();
    }

    [[nodiscard]] bool isVisible(const char *name) const { return testing::find(*window, name).isVisible(); }

    [[nodiscard]] std::string title() const { return testing::shown(*window, "updateTitle"); }
    [[nodiscard]] std::string words() const { return testing::shown(*window, "updateText"); }
    /// The title of the button for the next step; empty where there is none.
    [[nodiscard]] std::string action() const { return testing::shown(*window, "updateAction"); }
    void act() const { testing::click(*window, "updateAction"); }

    bool waitFor(const std::string &wanted) const {
        return testing::eventually([&] { return title() == wanted; });
    }

    std::optional<Updater> updater;
    QWidget parent;
    QPointer<UpdateView> window;
};

} // namespace

TEST_F(UpdateViewTest, LeadsFromTheCheckToTheRelaunch) {
    open();
    EXPECT_EQ(action(), "Check for Updates");
    EXPECT_FALSE(isVisible("lastChecked"));
    act();
    EXPECT_EQ(title(), "Checking for updates");
    EXPECT_EQ(action(), "");
    EXPECT_TRUE(isVisible("updateProgress"));
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    EXPECT_EQ(words(), "You have version 1.4.1.");
    EXPECT_EQ(testing::find<QPlainTextEdit>(*window, "updateNotes").toPlainText(),
              "First line\n<b>Second</b> line");
    EXPECT_TRUE(isVisible("updateNotes"));
    EXPECT_FALSE(isVisible("updateProgress"));
    EXPECT_TRUE(isVisible("lastChecked"));
    EXPECT_EQ(action(), "Download and Install");

    std::vector<int> shown;
    QObject::connect(&*updater, &Updater::stateChanged, window, [&] {
        const auto &line = testing::find<ProgressLine>(*window, "updateProgress");
        if (std::holds_alternative<Downloading>(*updater->state) && line.maximum() > 0)
            shown.push_back(line.value());
    });
    act();
    EXPECT_EQ(title(), "Downloading the update");
    EXPECT_EQ(action(), "");
    EXPECT_FALSE(isVisible("updateNotes"));
    ASSERT_TRUE(waitFor("Ready to install"));
    EXPECT_THAT(shown, Contains(1000)) << "all of it";
    EXPECT_EQ(words(), "Downloaded and signature-checked. Brimvale will quit and reopen on the new version.");
    EXPECT_EQ(action(), "Install");
    EXPECT_EQ(record->lines().size(), 0U);
    act();
    EXPECT_THAT(record->lines(), Contains("close windows"));
}

TEST_F(UpdateViewTest, SaysWhatACheckCameTo) {
    publish(41);
    open();
    window->check();
    ASSERT_TRUE(waitFor("Brimvale is up to date"));
    EXPECT_EQ(words(), "You have version 1.4.1.");
    EXPECT_EQ(action(), "Check Again");
    EXPECT_TRUE(isVisible("lastChecked"));

    server.put("/appcast.json", {.status = "500 Internal Server Error"});
    act();
    EXPECT_EQ(title(), "Checking for updates");
    ASSERT_TRUE(waitFor("Could not update"));
    EXPECT_EQ(words(), "The update server did not answer properly.");
    EXPECT_EQ(action(), "Check Again");
}

TEST_F(UpdateViewTest, OpensTheDownloadPageWhereThePackageManagerInstalls) {
    environment.canInstallItself = false;
    open();
    window->check();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    EXPECT_THAT(words(), ::testing::HasSubstr("package manager"));
    EXPECT_TRUE(isVisible("updateNotes"));
    EXPECT_EQ(action(), "Open Download Page");
    const testing::OpenedAddresses browser("https");
    act();
    EXPECT_EQ(browser.all, QStringList(Updater::downloadPage().toString()));
    EXPECT_EQ(server.requestsFor("/app.zip"), 0);
}

TEST_F(UpdateViewTest, AnswersWhoAsksDuringTheSilentCheck) {
    server.put("/appcast.json", {.status = "404 Not Found"});
    open();
    updater->check(true);
    window->check();
    ASSERT_TRUE(waitFor("Could not update")) << "though the silent check says nothing";
    EXPECT_EQ(server.requestsFor("/appcast.json"), 2);

    // Where that one has something to say, it is not asked again.
    publish(42);
    open();
    updater->check(true);
    window->check();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    EXPECT_EQ(server.requestsFor("/appcast.json"), 3);

    // Nobody is there to be answered any more.
    server.put("/appcast.json", {.status = "404 Not Found"});
    open();
    updater->check(true);
    window->check();
    window->close();
    ASSERT_TRUE(testing::eventually([&] { return *updater->state == UpdateState(Idle{}); }));
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(server.requestsFor("/appcast.json"), 4);
}

TEST_F(UpdateViewTest, StopsACheck) {
    server.put("/appcast.json", {.body = "{", .held = 1, .hangsUp = false});
    open();
    EXPECT_FALSE(isVisible("stopCheck"));
    for (const bool isSilent : {false, true}) {
        updater->check(isSilent);
        window->check();
        EXPECT_EQ(title(), "Checking for updates");
        testing::click(*window, "stopCheck");
        EXPECT_EQ(title(), "Software Update");
        EXPECT_EQ(action(), "Check for Updates");
        EXPECT_FALSE(isVisible("stopCheck"));
        EXPECT_FALSE(isVisible("updateProgress"));
    }
    publish(41);
    act();
    EXPECT_TRUE(waitFor("Brimvale is up to date"));
}

TEST_F(UpdateViewTest, StopsNothingWhenItIsClosed) {
    server.put("/app.zip", {.body = archive, .held = archive.size() / 2, .hangsUp = false});
    open();
    window->check();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    act();
    ASSERT_TRUE(testing::eventually([&] { return server.requestsFor("/app.zip") > 0; }));
    QTest::keyClick(window, Qt::Key_Escape);
    ASSERT_TRUE(testing::eventually([&] { return window.isNull(); }));
    show();
    EXPECT_EQ(title(), "Downloading the update");
    EXPECT_TRUE(isVisible("updateProgress"));
    window->check();
    EXPECT_EQ(title(), "Downloading the update");
}

TEST_F(UpdateViewTest, OpensFromTheLineInTheSidebar) {
    updater.emplace(environment);
    const testing::SampleHome home;
    CorvelModel model;
    ContentView content(model, *updater);
    testing::activate(content);
    EXPECT_EQ(content.findChild<QAction *>("howToUpdate"), nullptr);
    auto &line = testing::find<QToolButton>(content, "update");
    EXPECT_FALSE(line.isVisible());
    updater->check(true);
    ASSERT_TRUE(testing::eventually([&] { return line.isVisible(); }));
    EXPECT_EQ(line.text(), "Version 1.4.2 is available");
    EXPECT_EQ(content.findChild<UpdateView *>(), nullptr) << "nothing else is shown";

    testing::click(line);
    window = content.findChild<UpdateView *>();
    ASSERT_TRUE(window);
    EXPECT_EQ(title(), "Version 1.4.2 is available");
    EXPECT_EQ(server.requestsFor("/appcast.json"), 1) << "not checked again";
    act();
    EXPECT_TRUE(line.isHidden());
    ASSERT_TRUE(waitFor("Ready to install"));
    EXPECT_EQ(line.text(), "Update ready to install");
}

TEST_F(UpdateViewTest, SaysHowToUpdateWhereThePackageManagerInstalls) {
    environment.canInstallItself = false;
    updater.emplace(environment);
    const testing::SampleHome home;
    CorvelModel model;
    ContentView content(model, *updater);
    testing::activate(content);
    testing::find<QAction>(content, "howToUpdate").trigger();
    window = content.findChild<UpdateView *>();
    ASSERT_TRUE(window);
    EXPECT_EQ(words(),
              "You have version 1.4.1. Your system updates Brimvale together with your other programs, "
              "through its software updates or package manager.");
    EXPECT_EQ(action(), "Check for Updates");
    EXPECT_EQ(server.requestsFor("/appcast.json"), 0);
}

TEST_F(UpdateViewTest, AsksBeforeItEndsWhatIsUnderWay) {
    updater.emplace(environment);
    const testing::SampleHome home;
    CorvelModel model;
    ContentView content(model, *updater);
    testing::activate(content);
    testing::find<QAction>(content, "checkForUpdates").trigger();
    window = content.findChild<UpdateView *>();
    ASSERT_TRUE(window && waitFor("Version 1.4.2 is available"));
    act();
    ASSERT_TRUE(waitFor("Ready to install"));

    PublishedWriter::set(model.backups, &BackupState::isArchiving, true);
    const auto answer = [&](const char *button) {
        act();
        auto *question = content.findChild<QDialog *>("confirmationSheet");
        ASSERT_NE(question, nullptr);
        EXPECT_EQ(testing::shown(*question, "confirm"), "Quit and Install");
        EXPECT_EQ(record->lines().size(), 0U);
        testing::click(*question, button);
    };
    answer("cancel");
    ASSERT_TRUE(
        testing::eventually([&] { return content.findChild<QDialog *>("confirmationSheet") == nullptr; }));
    answer("confirm");
    EXPECT_THAT(record->lines(), Contains("close windows"));
}

} // namespace brimvale
