#include "CommandLine/Program.h"
#include "Platform/FileContents.h"
#include "Support/LoopbackServer.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;

Outcome runUpdate(const LoopbackServer &server, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {"update", "--feed", server.url("/feed").toString().toStdString()});
    return runProgram(arguments, [] {
        for (const char *proxy : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
            unsetenv(proxy);
    });
}

QJsonObject state(const char *name, const QJsonObject &members = {}) {
    QJsonObject all{{"version", QJsonValue::Null},
                    {"build", QJsonValue::Null},
                    {"notes", QJsonValue::Null},
                    {"message", QJsonValue::Null}};
    all["state"] = name;
    for (auto member = members.begin(); member != members.end(); ++member)
        all[member.key()] = member.value();
    return all;
}

} // namespace

TEST(UpdateCommand, PrintsResultOfTheCheck) {
    LoopbackServer server;
    QJsonObject feed{{"version", "9.9"}, {"build", 2'000'000'000}, {"url", "https://host/app.zip"}};
    const auto publish = [&] { server.put("/feed", {.body = QJsonDocument(feed).toJson().toStdString()}); };

    publish();
    Outcome outcome = runUpdate(server, {"--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(jsonIn(outcome).object(), state("available", {{"version", "9.9"}, {"build", 2'000'000'000}}));
    feed["notes"] = "First\n\u001B[2JSecond\n";
    publish();
    EXPECT_EQ(jsonIn(runUpdate(server, {"--json"}))["notes"], feed["notes"]);
    outcome = runUpdate(server);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "Brimvale 9.9 (build 2000000000) is available\nFirst\n␛[2JSecond\n");

    feed["build"] = 0;
    publish();
    outcome = runUpdate(server, {"--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(jsonIn(outcome).object(), state("upToDate"));
    EXPECT_EQ(runUpdate(server).out, "Brimvale is up to date\n");
}

TEST(UpdateCommand, FailurePrintsAMessage) {
    const LoopbackServer server;
    Outcome outcome = runUpdate(server, {"--json"});
    EXPECT_EQ(outcome.status, 1);
    const std::string message = "The update server did not answer properly.";
    EXPECT_EQ(jsonIn(outcome).object(), state("failed", {{"message", QString::fromStdString(message)}}));
    EXPECT_EQ(outcome.err, "brimvalectl: could not update: " + message + "\n");
    outcome = runUpdate(server);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");

    for (const char *feed : {"http://updates.brimvale.example/", "file:///etc/passwd", "nonsense", ""}) {
        outcome = runProgram({"update", "--feed", feed});
        EXPECT_EQ(outcome.status, 2) << feed;
        EXPECT_THAT(outcome.err, HasSubstr("\"--feed\" takes an https address, not \"" + std::string(feed)));
    }
}

// Its libraries take longer to load than everything else together.
TEST(UpdateCommand, LoadsTheNetworkForItselfAlone) {
    const auto program = contentsOfFile(BRIMVALECTL, std::size_t{1} << 30);
    ASSERT_TRUE(program);
    for (const char *library : {"libQt6Network", "QtNetwork.framework"})
        EXPECT_EQ(program->find(library), std::string::npos) << library;
}

} // namespace brimvale::testing
