#include "Views/UpdateView.h"

#include "Support/LoopbackServer.h"
#include "Support/StandInTools.h"
#include "Support/TemporaryFolder.h"
#include "Views/Components/ProgressLine.h"

#include <QDesktopServices>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QNetworkProxy>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using namespace updateState;
using ::testing::Contains;
using testing::HttpAnswer;

/// An application that does not end, but says that it was to.
class KeptOpen : public ApplicationQuit {
public:
    void closeAllWindows() override { isAskedToClose = true; }
    void terminate() override {}
    void exitNow() override {}
    bool isAskedToClose = false;
};

/// What addresses the window opens, instead of a browser.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler("https", this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler("https"); }

    std::vector<QUrl> opened;

public slots:
    void open(const QUrl &url) { opened.push_back(url); }
};

/// The window of an application of build 41, before a server with a feed.
class UpdateViewTest : public ::testing::Test {
protected:
    UpdateViewTest() {
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); // whatever the environment says
        makeApp(folder, "release/Brimvale.app");
        archive = testing::archiveOf(folder.path("release"));
        server.put("/app.zip", {.body = archive});
        publish(42);
        environment.feedURL = server.url("/appcast.json");
        environment.bundle = {
            .url = FileURL(makeApp(folder, "Brimvale.app")), .version = "1.4.1", .build = "41"};
        environment.canInstallItself = true;
        environment.macOSVersion.reset();
        environment.temporaryFolder = FileURL(folder.makeFolder("tmp"));
        environment.installLog = FileURL(folder.path("install.log"));
        environment.tools = testing::makeUpdateTools(folder);
        environment.tools.shell = testing::makeTool(folder, "shell", "exit 0");
        environment.quit = quit;
        environment.log = [](const std::string &) {};
    }

    void publish(int build) {
        const QJsonObject feed{{"version", "1.4.2"},
                               {"build", build},
                               {"url", server.url("/app.zip").toString()},
                               {"notes", "First line\n<b>Second</b> line"}};
        server.put("/appcast.json", {.body = QJsonDocument(feed).toJson().toStdString()});
    }

    void open() {
        updater.emplace(environment);
        show();
    }

    void show() {
        window = new UpdateView(*updater, &parent);
        window->show();
    }

    template<class Widget = QLabel>
    [[nodiscard]] Widget &find(const char *name) const {
        return *window->findChild<Widget *>(QLatin1String(name));
    }

    [[nodiscard]] std::string title() const { return find("updateTitle").text().toStdString(); }
    [[nodiscard]] std::string words() const { return find("updateText").text().toStdString(); }
    /// The title of the button for the next step; empty where there is none.
    [[nodiscard]] std::string action() const {
        const auto &button = find<QPushButton>("updateAction");
        return button.isVisible() ? button.text().toStdString() : "";
    }
    void act() const { QTest::mouseClick(&find<QPushButton>("updateAction"), Qt::LeftButton); }

    bool waitFor(const std::string &wanted) const {
        return QTest::qWaitFor([&] { return title() == wanted; }, 20'000);
    }

    testing::TemporaryFolder folder;
    testing::LoopbackServer server;
    std::string archive;
    std::shared_ptr<KeptOpen> quit = std::make_shared<KeptOpen>();
    UpdateEnvironment environment = UpdateEnvironment::current();
    std::optional<Updater> updater;
    QWidget parent;
    QPointer<UpdateView> window;
};

} // namespace

TEST_F(UpdateViewTest, LeadsFromTheCheckToTheRelaunch) {
    open();
    EXPECT_EQ(action(), "Check for Updates");
    EXPECT_FALSE(find("lastChecked").isVisible());
    act();
    EXPECT_EQ(title(), "Checking for updates");
    EXPECT_EQ(action(), "");
    EXPECT_TRUE(find<ProgressLine>("updateProgress").isVisible());
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    EXPECT_EQ(words(), "You have version 1.4.1.");
    EXPECT_EQ(find<QPlainTextEdit>("updateNotes").toPlainText(), "First line\n<b>Second</b> line");
    EXPECT_TRUE(find<QPlainTextEdit>("updateNotes").isVisible());
    EXPECT_FALSE(find<ProgressLine>("updateProgress").isVisible());
    EXPECT_TRUE(find("lastChecked").isVisible());
    EXPECT_EQ(action(), "Download and Install");

    std::vector<int> shown;
    QObject::connect(&*updater, &Updater::stateChanged, window, [&] {
        const auto &line = find<ProgressLine>("updateProgress");
        if (std::holds_alternative<Downloading>(*updater->state) && line.maximum() > 0)
            shown.push_back(line.value());
    });
    act();
    EXPECT_EQ(title(), "Downloading the update");
    EXPECT_EQ(action(), "");
    EXPECT_FALSE(find<QPlainTextEdit>("updateNotes").isVisible());
    ASSERT_TRUE(waitFor("Ready to install"));
    EXPECT_THAT(shown, Contains(1000)) << "all of it";
    EXPECT_EQ(words(), "Downloaded and signature-checked. Brimvale will quit and reopen on the new version.");
    EXPECT_EQ(action(), "Install");
    EXPECT_FALSE(quit->isAskedToClose);
    act();
    EXPECT_TRUE(quit->isAskedToClose);
}

TEST_F(UpdateViewTest, SaysWhatACheckCameTo) {
    publish(41);
    open();
    window->check();
    ASSERT_TRUE(waitFor("Brimvale is up to date"));
    EXPECT_EQ(words(), "You have version 1.4.1.");
    EXPECT_EQ(action(), "Check Again");
    EXPECT_TRUE(find("lastChecked").isVisible());

    server.put("/appcast.json", {.status = "500 Internal Server Error"});
    act();
    EXPECT_EQ(title(), "Checking for updates");
    ASSERT_TRUE(waitFor("Could not update"));
    EXPECT_EQ(words(), "The update server did not answer properly.");
    EXPECT_EQ(action(), "Check Again");

    publish(42);
    act();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    server.put("/app.zip", {.status = "404 Not Found"});
    act();
    ASSERT_TRUE(waitFor("Could not update"));
    EXPECT_EQ(action(), "Check Again");
    EXPECT_FALSE(quit->isAskedToClose);
}

TEST_F(UpdateViewTest, OpensTheDownloadPageWhereThePackageManagerInstalls) {
    environment.canInstallItself = false;
    open();
    window->check();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    EXPECT_THAT(words(), ::testing::HasSubstr("package manager"));
    EXPECT_TRUE(find<QPlainTextEdit>("updateNotes").isVisible());
    EXPECT_EQ(action(), "Open Download Page");
    const Browser browser;
    act();
    EXPECT_THAT(browser.opened, ::testing::ElementsAre(Updater::downloadPage()));
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return *updater->state == UpdateState(Idle{}); }, 20'000));
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(server.requestsFor("/appcast.json"), 4);
}

TEST_F(UpdateViewTest, StopsNothingWhenItIsClosed) {
    server.put("/app.zip", {.body = archive, .held = archive.size() / 2, .hangsUp = false});
    open();
    window->check();
    ASSERT_TRUE(waitFor("Version 1.4.2 is available"));
    act();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.requestsFor("/app.zip") > 0; }, 20'000));
    QTest::keyClick(window, Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.isNull(); }, 20'000));
    show();
    EXPECT_EQ(title(), "Downloading the update");
    EXPECT_TRUE(find<ProgressLine>("updateProgress").isVisible());
    window->check();
    EXPECT_EQ(title(), "Downloading the update");
}

} // namespace brimvale

#include "UpdateViewTests.moc"
