#include "Core/Update/Updater.h"

#include "Support/SettledUpdater.h"
#include "Support/UpdateScene.h"

#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using namespace updateState;
using ::testing::ElementsAre;
using testing::makeApp;
using testing::makeTool;
using testing::settled;
using ::testing::StartsWith;

const UpdateState badResponse = Failed{"The update server did not answer properly."};

class UpdaterTest : public testing::UpdateScene {
protected:
    static void check(Updater &updater) {
        updater.check(false);
        settled(updater);
    }

    /// What becomes of the update that the feed offers; nothing of a failed one may be left but what was
    /// unpacked.
    UpdateState downloaded() {
        publish();
        Updater updater(environment);
        updater.check(false);
        EXPECT_TRUE(std::holds_alternative<Available>(settled(updater)));
        updater.downloadAndStage();
        EXPECT_TRUE(std::holds_alternative<Downloading>(*updater.state));
        const UpdateState state = settled(updater);
        EXPECT_EQ(updater.staged->has_value(), std::holds_alternative<ReadyToRelaunch>(state));
        EXPECT_THAT(archivesLeft(), ::testing::IsEmpty());
        return state;
    }

    [[nodiscard]] std::vector<std::string> archivesLeft() const {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(folder.path("tmp")))
            if (const std::string name = entry.path().filename(); name.ends_with(".zip"))
                names.push_back(name);
        return names;
    }
};

} // namespace

TEST_F(UpdaterTest, DoesOneThingAtATime) {
    publish();
    Updater updater(environment);
    QSignalSpy changes(&updater, &Updater::stateChanged);
    updater.check(true);
    updater.check(false);
    updater.downloadAndStage();
    EXPECT_EQ(*updater.state, UpdateState(Checking{}));
    settled(updater);
    EXPECT_EQ(server.requestsFor("/appcast.json"), 1);
    EXPECT_EQ(changes.count(), 2);

    updater.downloadAndStage();
    updater.downloadAndStage();
    updater.check(false);
    EXPECT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
    updater.check(false);
    updater.downloadAndStage();
    EXPECT_EQ(*updater.state, UpdateState(ReadyToRelaunch{}));
    EXPECT_EQ(server.requestsFor("/appcast.json"), 1);
    EXPECT_EQ(server.requestsFor("/app.zip"), 1);
}

TEST_F(UpdaterTest, MayGoAtAnyMoment) {
    publish();
    makeTool(folder, "shasum", "echo run >'" + folder.path("hashing") + "'; exit 1");
    {
        Updater checking(environment);
        checking.check(false);
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.requestsFor("/appcast.json") > 0; }));
    }
    server.put("/app.zip", {.body = archive, .held = archive.size() / 2, .hangsUp = false});
    {
        Updater downloading(environment);
        check(downloading);
        downloading.downloadAndStage();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !archivesLeft().empty(); }));
    }
    EXPECT_THAT(archivesLeft(), ::testing::IsEmpty());
    server.put("/app.zip", {.body = archive});
    {
        Updater staging(environment);
        check(staging);
        staging.downloadAndStage();
        EXPECT_TRUE(QTest::qWaitFor([&] { return fs::exists(folder.path("hashing")); }));
    }
    EXPECT_THAT(archivesLeft(), ::testing::IsEmpty());
    QCoreApplication::processEvents();
}

TEST_F(UpdaterTest, StagesWhatItDownloadedAndTellsHowFarItIs) {
    publish();
    Updater updater(environment);
    check(updater);
    std::vector<double> progress;
    QObject::connect(&updater, &Updater::stateChanged, [&] {
        if (const auto *downloading = std::get_if<Downloading>(&*updater.state))
            progress.push_back(downloading->progress);
    });
    updater.downloadAndStage();
    EXPECT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
    ASSERT_TRUE(*updater.staged);
    EXPECT_EQ(testing::workingContent((*updater.staged)->path()), "new");
    EXPECT_THAT(archivesLeft(), ::testing::IsEmpty());
    ASSERT_GE(progress.size(), 2U);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.front(), 0);
    EXPECT_EQ(progress.back(), 1);
}

TEST_F(UpdaterTest, EndsInFailedWithoutAStagedApplication) {
    EXPECT_EQ(downloaded(), UpdateState(ReadyToRelaunch{}));

    server.put("/app.zip", {.body = archive + "x"});
    EXPECT_EQ(downloaded(),
              UpdateState(Failed{"The download did not match its checksum and was discarded."}));
    server.put("/app.zip", {.status = "404 Not Found", .body = archive});
    EXPECT_EQ(downloaded(), badResponse);
    server.put("/app.zip", {.status = "302 Found", .headers = "Location: file:///etc/passwd\r\n"});
    EXPECT_EQ(downloaded(), badResponse);

    server.put("/app.zip", {.body = archive});
    feed["build"] = 43;
    EXPECT_EQ(downloaded(), UpdateState(Failed{"The downloaded app is build 42, but build 43 was announced. "
                                               "It was discarded."}));
    feed["build"] = 42;

    feed.remove("sha256");
    server.put("/app.zip", {.body = archive, .held = 100});
    EXPECT_TRUE(std::holds_alternative<Failed>(downloaded())) << "cut short";
    server.put("/app.zip", {.body = archive, .isChunked = true});
    EXPECT_EQ(downloaded(), UpdateState(ReadyToRelaunch{}));

    environment.archiveLimits.bytes = static_cast<qint64>(archive.size()) - 1;
    EXPECT_EQ(downloaded(), badResponse) << "found out on the way";
    server.put("/app.zip", {.body = archive, .held = archive.size(), .hangsUp = false});
    environment.archiveLimits = {.bytes = 1'000'000, .silence = std::chrono::milliseconds(100)};
    EXPECT_EQ(downloaded(), UpdateState(Failed{"The request timed out."}));

    environment.archiveLimits = {.bytes = 1'000'000, .silence = std::chrono::seconds(20)};
    server.put("/app.zip", {.body = archive});
    environment.temporaryFolder = FileURL(folder.path("missing"));
    EXPECT_TRUE(std::holds_alternative<Failed>(downloaded())) << "nowhere to put it";
}

TEST_F(UpdaterTest, InstallsAndRelaunches) {
    publish();
    environment.tools.shell =
        makeTool(folder, "shell",
                 "PATH='" + folder.path("tools") +
                     "':\"$PATH\"; export PATH\n"
                     // This process goes on, which the script would wait for.
                     "exec /bin/sh -c \"$(printf '%s' \"$2\" | sed 's/^process=.*/process=999999999/')\"");
    Updater updater(environment);
    check(updater);
    updater.downloadAndStage();
    ASSERT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
    const std::string current = environment.bundle.url.path();
    const std::string staged = (*updater.staged)->path();
    updater.installAndRelaunch();
    updater.installAndRelaunch();
    EXPECT_EQ(*updater.state, UpdateState(ReadyToRelaunch{}));
    const std::string calling = "[Corvel] installAndRelaunch: current=" + current + " staged=" + staged;
    EXPECT_THAT(record->lines(), ElementsAre(calling, "close windows", "terminate"));

    ASSERT_TRUE(QTest::qWaitFor([&] { return fs::exists(folder.path("opened")); }, 20'000));
    EXPECT_EQ(testing::workingContent(current), "new");
    EXPECT_FALSE(fs::exists(current + ".old"));
    EXPECT_FALSE(fs::exists(staged));
    ASSERT_TRUE(QTest::qWaitFor([&] { return record->lines().size() == 5; }, 20'000));
    EXPECT_THAT(record->lines(), ElementsAre(calling, "close windows", "terminate",
                                             "[Corvel] terminate was refused, exiting directly", "exit"));
}

// macOS keeps the script's tools from changing the application, but not a program of the same team.
TEST_F(UpdaterTest, InstallsWithTheToolOfTheStagedApplicationWhereItCan) {
    makeApp(folder, "My Applications/Brimvale.app", {.content = "old", .build = "41"});
    const std::string started = folder.path("started");
    const std::string tool = "[ \"$2\" != --help ] || exit 0\n"
                             "(printf '%s\\n' \"$0\" \"$@\"; ls -d \"${0%/MacOS/*}/Frameworks/\"*) >'" +
                             started + ".part'; mv '" + started + ".part' '" + started + "'";
    environment.tools.shell = makeTool(folder, "shell", ": >'" + folder.path("script") + "'");
    for (const bool isOurs : {true, false}) {
        makeApp(folder, "release/Brimvale.app", {.tool = tool});
        folder.makeFile("release/Brimvale.app/Contents/Frameworks/library");
        server.put("/app.zip", {.body = testing::archiveOf(folder.path("release"))});
        feed.remove("sha256");
        publish();
        Updater updater(environment);
        check(updater);
        updater.downloadAndStage();
        ASSERT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
        const std::string staged = (*updater.staged)->path();
        const std::string copy = fs::path(staged).parent_path() / "installer/MacOS/brimvalectl";
        if (!isOurs) // exchanged after it was staged
            folder.makeScript(copy.substr(folder.path("").size()), tool);
        updater.installAndRelaunch();
        ASSERT_TRUE(QTest::qWaitFor([&] { return fs::exists(isOurs ? started : folder.path("script")); }));
        if (isOurs) {
            EXPECT_EQ(testing::contentOf(started),
                      copy + "\ninstall-update\n--\n" + staged + "\n" + environment.bundle.url.path() + "\n" +
                          std::to_string(getpid()) + "\n" + fs::path(staged).parent_path().native() +
                          "/installer/Frameworks/library\n");
        }
        EXPECT_EQ(fs::exists(folder.path("script")), !isOurs);
        EXPECT_EQ(fs::exists(started), isOurs);
        fs::remove(started);
    }
}

TEST_F(UpdaterTest, IsMovedBeforeItUpdatesWhereItCannotBeReplaced) {
    publish();
    EXPECT_FALSE(refusalOfPlace(environment.bundle.url));
    EXPECT_TRUE(refusalOfPlace(FileURL("/Volumes/Brimvale/Brimvale.app")));
    environment.bundle.url = FileURL("/private/var/folders/a/AppTranslocation/B/d/Brimvale.app");
    Updater translocated(environment);
    check(translocated);
    translocated.downloadAndStage();
    EXPECT_EQ(*translocated.state,
              UpdateState(Failed{"Move Brimvale to the Applications folder first. Then open it there and "
                                 "update again."}));
    EXPECT_EQ(server.requestsFor("/app.zip"), 0);
}

TEST_F(UpdaterTest, SaysWhyItCannotInstall) {
    publish();
    environment.tools.shell = folder.path("tools/missing");
    Updater updater(environment);
    check(updater);
    updater.downloadAndStage();
    settled(updater);
    updater.installAndRelaunch();
    EXPECT_EQ(*updater.state,
              UpdateState(Failed{"Could not start the installer: No such file or directory"}));

    fs::remove_all((*updater.staged)->path());
    updater.installAndRelaunch();
    EXPECT_EQ(*updater.state,
              UpdateState(Failed{"The downloaded copy is no longer on disk. Download the update again."}));

    fs::rename(environment.bundle.url.path(), folder.path("My Applications/Mine.app"));
    environment.bundle.url = FileURL(folder.path("My Applications/Mine.app"));
    Updater ofRenamed(environment);
    check(ofRenamed);
    ofRenamed.downloadAndStage();
    settled(ofRenamed);
    ofRenamed.installAndRelaunch();
    EXPECT_EQ(*ofRenamed.state,
              UpdateState(Failed{"The app was renamed to Mine.app, so the update can’t replace it. Quit it, "
                                 "name it Brimvale.app, open it, and update again."}));

    // Downloading again is possible.
    updater.downloadAndStage();
    EXPECT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
    for (const std::string &line : record->lines())
        EXPECT_THAT(line, StartsWith("[Corvel] installAndRelaunch: ")) << "the application goes on";
}

} // namespace brimvale
