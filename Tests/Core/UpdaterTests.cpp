#include "Core/Updater.h"

#include "Core/UpdateDownload.h"
#include "Support/UpdateScene.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using namespace updateState;
using ::testing::ElementsAre;
using testing::HttpAnswer;
using testing::makeTool;
using ::testing::StartsWith;

const UpdateState badResponse = Failed{"The update server did not answer properly."};
const std::string wrongFormat = "The data couldn\u2019t be read because it isn\u2019t in the correct format.";

class UpdaterTest : public testing::UpdateScene {
protected:
    /// Lets the event loop run until nothing is under way.
    static UpdateState settled(const Updater &updater) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return !std::holds_alternative<Checking>(*updater.state) &&
                       !std::holds_alternative<Downloading>(*updater.state);
            },
            20'000));
        return *updater.state;
    }

    static void check(Updater &updater) {
        updater.check(false);
        settled(updater);
    }

    UpdateState checked(bool silent = false) const {
        Updater updater(environment);
        updater.check(silent);
        EXPECT_EQ(*updater.state, UpdateState(Checking{}));
        return settled(updater);
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

TEST_F(UpdaterTest, OffersANewerBuildAndRemembersIt) {
    publish();
    Updater updater(environment);
    EXPECT_EQ(*updater.state, UpdateState(Idle{}));
    EXPECT_EQ(updater.currentVersion(), "1.4.1");
    EXPECT_EQ(updater.currentBuild(), 41);
    const Date before = now();
    updater.check(false);
    EXPECT_EQ(settled(updater), UpdateState(Available{"1.4.2", 42, "New."}));
    ASSERT_TRUE(*updater.lastChecked);
    EXPECT_TRUE(**updater.lastChecked >= before);
    ASSERT_TRUE(*updater.pending);
    EXPECT_EQ((*updater.pending)->url, server.url("/app.zip"));
    EXPECT_TRUE(server.lastHead("/appcast.json").toLower().contains("cache-control: no-cache"));

    // Another look may find less.
    feed["build"] = 41;
    publish();
    updater.check(false);
    EXPECT_EQ(settled(updater), UpdateState(UpToDate{}));
    updater.downloadAndStage();
    EXPECT_EQ(*updater.state, UpdateState(UpToDate{})) << "nothing is offered any more";
}

TEST_F(UpdaterTest, EndsACheckAsItsLoudnessAsks) {
    struct Case {
        std::string name;
        QJsonObject changes;
        UpdateState loud;
        UpdateState silent = Idle{};
    };
    const Available available{"1.4.2", 42, "New."};
    for (const Case &one : std::vector<Case>{
             {"newer", {}, available, available},
             {"the same", {{"build", 41}}, UpToDate{}},
             {"only the version is newer", {{"build", 40}, {"version", "9"}}, UpToDate{}},
             {"needs more",
              {{"minimumSystemVersion", "14.7"}, {"build", 1}},
              Failed{"This update needs macOS 14.7 or newer."}},
             {"needs this", {{"minimumSystemVersion", "14.6.3"}}, available, available},
             {"an archive over plain http",
              {{"url", "http://updates.brimvale.example/app.zip"}},
              badResponse},
             {"an archive from the disk", {{"url", "file:///tmp/app.zip"}}, badResponse},
             {"an archive from nowhere", {{"url", "app.zip"}}, badResponse},
             {"a wrong type", {{"notes", 5}}, Failed{wrongFormat}},
         }) {
        const QJsonObject honestFeed = feed;
        for (const QString &key : one.changes.keys())
            feed[key] = one.changes[key];
        publish();
        EXPECT_EQ(checked(false), one.loud) << one.name;
        EXPECT_EQ(checked(true), one.silent) << one.name;
        feed = honestFeed;
    }
    // No number of its own counts as 0, and only macOS has versions of macOS.
    environment.bundle.build.reset();
    environment.macOSVersion.reset();
    feed["minimumSystemVersion"] = "99";
    publish();
    EXPECT_EQ(checked(), UpdateState(available));
}

TEST_F(UpdaterTest, TakesNothingButAProperAnswer) {
    const std::string good = QJsonDocument(feed).toJson().toStdString();
    const auto redirect = [](const QString &target) {
        return HttpAnswer{.status = "302 Found", .headers = "Location: " + target.toStdString() + "\r\n"};
    };
    server.put("/moved", {.body = good});
    server.put("/loop", redirect("/loop"));
    struct Case {
        std::string name;
        HttpAnswer answer;
        std::optional<std::string> failure; ///< nothing: the feed is taken; "": another sentence than these
    };
    const std::string improper = std::get<Failed>(badResponse).message;
    for (const Case &one : std::vector<Case>{
             {"status 404", {.status = "404 Not Found", .body = good}, improper},
             {"status 206", {.status = "206 Partial Content", .body = good}, improper},
             {"status 204", {.status = "204 No Content"}, improper},
             {"an empty body", {.body = ""}, wrongFormat},
             {"no JSON", {.body = "<html>"}, wrongFormat},
             {"JSON cut short", {.body = good.substr(0, good.size() - 3)}, wrongFormat},
             {"a body cut short", {.body = good, .held = 5}, ""},
             {"a body that may be of any length", {.body = good, .isChunked = true}, std::nullopt},
             {"1 MiB", {.body = good + std::string(1024 * 1024 - good.size(), ' ')}, std::nullopt},
             {"more", {.body = good + std::string(1024 * 1024 + 1 - good.size(), ' ')}, improper},
             {"more, untold", {.body = std::string(5'000'000, ' '), .isChunked = true}, improper},
             {"a redirect on the server", redirect("/moved"), std::nullopt},
             {"a redirect with much to say",
              {.status = "307 Temporary Redirect",
              .headers = "Location: moved\r\n",
              .body = std::string(2'000'000, ' ')},
              std::nullopt},
             {"a redirect to a stranger over http", redirect("http://updates.brimvale.example/"), improper},
             {"a redirect to the disk", redirect("file:///etc/passwd"), improper},
             {"a redirect to data", redirect("data:application/json,{}"), improper},
             {"a redirect in a circle", redirect("/loop"), improper},
             {"a redirect to nowhere", {.status = "302 Found", .body = good}, improper},
         }) {
        server.put("/appcast.json", one.answer);
        const UpdateState state = checked();
        const auto *failed = std::get_if<Failed>(&state);
        EXPECT_EQ(failed != nullptr, one.failure.has_value()) << one.name;
        if (failed != nullptr && one.failure != "") {
            EXPECT_EQ(failed->message, one.failure.value_or("")) << one.name;
        }
        EXPECT_EQ(checked(true) == UpdateState(Idle{}), one.failure.has_value()) << one.name;
    }
    EXPECT_EQ(server.requestsFor("/loop"), 20) << "ten for each check";
}

TEST_F(UpdaterTest, FailsWhereNobodyAnswers) {
    environment.feedLimits.silence = std::chrono::milliseconds(100);
    server.put("/appcast.json", {.body = "{", .held = 1, .hangsUp = false});
    EXPECT_EQ(checked(), UpdateState(Failed{"The request timed out."})) << "silent from the beginning";
    server.put("/appcast.json", {.body = std::string(10, ' '), .held = 5, .hangsUp = false});
    EXPECT_EQ(checked(), UpdateState(Failed{"The request timed out."})) << "silent in the midst";
    EXPECT_EQ(checked(true), UpdateState(Idle{}));

    environment.feedURL = QUrl("http://127.0.0.1:1/appcast.json");
    EXPECT_EQ(checked(), UpdateState(Failed{"Connection refused"}));
    for (const char *address :
         {"http://updates.brimvale.example/", "file:///etc/passwd", "ftp://127.0.0.1/", ""}) {
        environment.feedURL = QUrl(address);
        EXPECT_EQ(checked(), badResponse) << address;
    }
}

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
    }
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

    const std::string checksum = "The download did not match its checksum and was discarded.";
    server.put("/app.zip", {.body = archive + "x"});
    EXPECT_EQ(downloaded(), UpdateState(Failed{checksum}));
    server.put("/app.zip", {.body = ""});
    EXPECT_EQ(downloaded(), UpdateState(Failed{checksum}));
    server.put("/app.zip", {.status = "404 Not Found", .body = archive});
    EXPECT_EQ(downloaded(), badResponse);
    server.put("/app.zip", {.status = "302 Found", .headers = "Location: file:///etc/passwd\r\n"});
    EXPECT_EQ(downloaded(), badResponse);

    feed.remove("sha256");
    server.put("/app.zip", {.body = archive, .held = 100});
    EXPECT_TRUE(std::holds_alternative<Failed>(downloaded())) << "cut short";
    server.put("/app.zip", {.body = "no archive"});
    EXPECT_EQ(downloaded(), UpdateState(Failed{"The update could not be unpacked."}));
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

TEST_F(UpdaterTest, SaysWhyItCannotInstall) {
    {
        Updater updater(environment);
        updater.installAndRelaunch();
        EXPECT_EQ(*updater.state,
                  UpdateState(Failed{"Nothing is staged to install. Download the update again."}));
    }
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

    // Which is then possible.
    updater.downloadAndStage();
    EXPECT_EQ(settled(updater), UpdateState(ReadyToRelaunch{}));
    for (const std::string &line : record->lines())
        EXPECT_THAT(line, StartsWith("[Corvel] installAndRelaunch: ")) << "the application goes on";
}

TEST(UpdateTransfer, TrustsHttpsAndThisMachine) {
    for (const char *safe :
         {"https://host/x", "HTTPS://host", "https://user@host:8443/", "http://localhost:80/",
          "http://127.0.0.1/", "http://127.8.9.10:1/", "http://[::1]:8080/x"})
        EXPECT_TRUE(isSafeUpdateURL(QUrl(safe))) << safe;
    for (const char *unsafe :
         {"http://host/x", "http://localhost.evil/", "http://127.0.0.1.evil/", "http://localhost@evil/",
          "http://10.0.0.1/", "http://[::2]/", "ftp://127.0.0.1/", "file:///etc/passwd",
          "file://localhost/etc/passwd", "data:,x", "https:///x", "https:", "//127.0.0.1/", "x", ""})
        EXPECT_FALSE(isSafeUpdateURL(QUrl(unsafe))) << unsafe;
}

} // namespace brimvale
