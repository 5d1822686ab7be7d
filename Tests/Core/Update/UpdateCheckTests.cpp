#include "Core/Update/UpdateAddress.h"
#include "Core/Update/UpdateDownload.h"
#include "Support/SettledUpdater.h"
#include "Support/UpdateScene.h"

#include <QJsonDocument>

namespace brimvale {

namespace {

using namespace updateState;
using testing::HttpAnswer;
using testing::settled;

const UpdateState badResponse = Failed{"The update server did not answer properly."};
const std::string wrongFormat = "The data couldn\u2019t be read because it isn\u2019t in the correct format.";

class UpdateCheckTest : public testing::UpdateScene {
protected:
    UpdateState checked(bool silent = false) const {
        Updater updater(environment);
        updater.check(silent);
        EXPECT_EQ(*updater.state, UpdateState(Checking{}));
        return settled(updater);
    }
};

} // namespace

TEST_F(UpdateCheckTest, OffersANewerBuildAndRemembersIt) {
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

TEST_F(UpdateCheckTest, EndsACheckAsItsLoudnessAsks) {
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
             {"an archive over plain http",
              {{"url", "http://updates.brimvale.example/app.zip"}},
              badResponse},
             {"an archive from the disk", {{"url", "file:///tmp/app.zip"}}, badResponse},
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

TEST_F(UpdateCheckTest, TakesNothingButAProperAnswer) {
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
             {"an empty body", {.body = ""}, wrongFormat},
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

TEST_F(UpdateCheckTest, CanBeStopped) {
    Updater updater(environment);
    const auto hold = [this] { server.put("/appcast.json", {.body = "{", .held = 1, .hangsUp = false}); };
    updater.stopCheck();
    hold();
    updater.check(false);
    updater.stopCheck();
    EXPECT_EQ(*updater.state, UpdateState(Idle{}));

    publish();
    updater.check(false);
    const UpdateState available = settled(updater);
    ASSERT_TRUE(std::holds_alternative<Available>(available));
    hold();
    updater.check(false);
    updater.stopCheck();
    EXPECT_EQ(*updater.state, available) << "still offered";
    QTest::qWait(50);
    EXPECT_EQ(*updater.state, available) << "and nothing comes later";
}

TEST_F(UpdateCheckTest, IsNeverSilentWhereThePackageManagerUpdates) {
    environment.canInstallItself = false;
    publish();
    Updater updater(environment);
    updater.check(true);
    EXPECT_EQ(*updater.state, UpdateState(Idle{}));
    QTest::qWait(50);
    EXPECT_EQ(server.requestsFor("/appcast.json"), 0);
}

TEST_F(UpdateCheckTest, FailsWhereNobodyAnswers) {
    environment.feedLimits.silence = std::chrono::milliseconds(100);
    server.put("/appcast.json", {.body = "{", .held = 1, .hangsUp = false});
    EXPECT_EQ(checked(), UpdateState(Failed{"The request timed out."})) << "silent from the beginning";
    server.put("/appcast.json", {.body = std::string(10, ' '), .held = 5, .hangsUp = false});
    EXPECT_EQ(checked(), UpdateState(Failed{"The request timed out."})) << "silent in the midst";
    EXPECT_EQ(checked(true), UpdateState(Idle{}));

    environment.feedLimits.silence = std::chrono::seconds(20);
    environment.feedLimits.whole = std::chrono::milliseconds(200);
    server.put("/appcast.json",
               {.body = std::string(10'000, ' '), .held = 10'000, .drip = std::chrono::milliseconds(10)});
    EXPECT_EQ(checked(), UpdateState(Failed{"The request timed out."})) << "never silent for long";
    EXPECT_EQ(checked(true), UpdateState(Idle{}));
    EXPECT_EQ(UpdateEnvironment::current().feedLimits.whole, std::chrono::seconds(60));

    environment.feedURL = QUrl("http://127.0.0.1:1/appcast.json");
    EXPECT_EQ(checked(), UpdateState(Failed{"Connection refused"}));
    for (const char *address :
         {"http://updates.brimvale.example/", "file:///etc/passwd", "ftp://127.0.0.1/", ""}) {
        environment.feedURL = QUrl(address);
        EXPECT_EQ(checked(), badResponse) << address;
    }
}

TEST(UpdateAddress, TrustsHttpsAndThisMachine) {
    for (const char *safe :
         {"https://host/x", "HTTPS://host", "https://user@host:8443/", "http://localhost:80/",
          "http://127.0.0.1/", "http://127.8.9.10:1/", "http://[::1]:8080/x"})
        EXPECT_TRUE(isSafeUpdateURL(QUrl(safe))) << safe;
    for (const char *unsafe :
         {"http://host/x", "http://localhost.evil/", "http://127.0.0.1.evil/", "http://127.0.0.256/",
          "http://127.0.0.1.5/", "http://localhost@evil/", "http://10.0.0.1/", "http://[::2]/",
          "ftp://127.0.0.1/", "file:///etc/passwd", "file://localhost/etc/passwd", "data:,x", "https:///x",
          "https:", "//127.0.0.1/", "x", ""})
        EXPECT_FALSE(isSafeUpdateURL(QUrl(unsafe))) << unsafe;
}

} // namespace brimvale
