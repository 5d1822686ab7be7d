#include "Core/Update/UpdateManifest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

const std::string wrongFormat = "The data couldn\u2019t be read because it isn\u2019t in the correct format.";
const std::string missing = "The data couldn\u2019t be read because it is missing.";

QJsonObject fullFeed() {
    return {{"version", "1.4.2"}, {"build", 42},        {"url", "https://host/app.zip"},
            {"sha256", "AB12"},   {"notes", "New:\n…"}, {"minimumSystemVersion", "14.0"}};
}

/// What is wrong with a feed; "" when nothing is.
std::string faultOf(const QByteArray &json) {
    const auto decoded = UpdateManifest::decode(json);
    const auto *failure = std::get_if<UpdateFailure>(&decoded);
    return failure == nullptr ? "" : failure->localizedDescription;
}

/// The full feed with the value of one key put in as JSON text.
QByteArray feedWith(const QString &key, const QByteArray &value) {
    QJsonObject feed = fullFeed();
    feed[key] = "HERE";
    return QJsonDocument(feed).toJson().replace("\"HERE\"", value);
}

} // namespace

TEST(UpdateManifest, ReadsAFeedAndIgnoresWhatItDoesNotKnow) {
    QJsonObject feed = fullFeed();
    feed["channel"] = QJsonObject{{"build", "x"}};
    const UpdateManifest expected{.version = "1.4.2",
                                  .build = 42,
                                  .url = QUrl("https://host/app.zip"),
                                  .sha256 = "AB12",
                                  .notes = "New:\n…",
                                  .minimumSystemVersion = "14.0"};
    const auto full = UpdateManifest::decode(QJsonDocument(feed).toJson());
    ASSERT_TRUE(std::holds_alternative<UpdateManifest>(full));
    EXPECT_EQ(std::get<UpdateManifest>(full), expected);

    for (const QString key : {"sha256", "notes", "minimumSystemVersion"}) {
        feed = fullFeed();
        feed.remove(key);
        const auto absent = UpdateManifest::decode(QJsonDocument(feed).toJson());
        ASSERT_TRUE(std::holds_alternative<UpdateManifest>(absent)) << key.toStdString();
        const auto null = UpdateManifest::decode(feedWith(key, "null"));
        EXPECT_EQ(absent, null) << key.toStdString();
        EXPECT_NE(absent, full) << key.toStdString();
    }
}

TEST(UpdateManifest, FailsForAMissingKeyAndForEveryValueOfAnotherType) {
    for (const QString key : {"version", "build", "url"}) {
        QJsonObject feed = fullFeed();
        feed.remove(key);
        EXPECT_EQ(faultOf(QJsonDocument(feed).toJson()), missing) << key.toStdString();
        EXPECT_EQ(faultOf(feedWith(key, "null")), missing) << key.toStdString();
    }
    for (const QString &key : fullFeed().keys())
        for (const QByteArray value : {"true", "1.5", "[]", "{}", "[\"1\"]", "{\"a\": 1}"})
            EXPECT_EQ(faultOf(feedWith(key, value)), wrongFormat)
                << key.toStdString() << ": " << value.toStdString();
    for (const QString &key : fullFeed().keys())
        EXPECT_EQ(faultOf(feedWith(key, key == "build" ? "\"42\"" : "42")), wrongFormat) << key.toStdString();
}

TEST(UpdateManifest, TakesABuildOnlyWhereItIsAWholeNumberOf64Bits) {
    struct Case {
        QByteArray text;
        std::optional<std::int64_t> build;
    };
    for (const Case &one : {Case{"0", 0}, Case{"-7", -7}, Case{"42.0", 42}, Case{"1e3", 1000},
                            Case{"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                            Case{"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                            Case{"9223372036854775808", std::nullopt}, Case{"1e300", std::nullopt},
                            Case{"0.5", std::nullopt}, Case{"42.0000001", std::nullopt}}) {
        const auto decoded = UpdateManifest::decode(feedWith("build", one.text));
        const auto *manifest = std::get_if<UpdateManifest>(&decoded);
        EXPECT_EQ(manifest == nullptr ? std::nullopt : std::optional(manifest->build), one.build)
            << one.text.toStdString();
    }
}

TEST(UpdateManifest, FailsForWhatIsNoObjectAndForAnAddressThatIsNone) {
    const QByteArray full = QJsonDocument(fullFeed()).toJson();
    for (const QByteArray &json :
         {QByteArray(), QByteArray("[]"), QByteArray("null"), QByteArray("42"), QByteArray("<html>"),
          full.chopped(3), full + "x", "[" + full + "]", QByteArray("{\"version\": \"\xFF\"}"),
          QByteArray(200'000, '['), feedWith("url", "\"https://ho st/app.zip\""),
          feedWith("url", "\"https://host:port/\""), feedWith("url", "\"\"")})
        EXPECT_EQ(faultOf(json), wrongFormat) << json.left(200).toStdString();
}

TEST(UpdateVersion, ReadsTheBuildNumberOfABundle) {
    struct Case {
        std::optional<std::string> text;
        std::int64_t number;
    };
    for (const Case &one :
         {Case{std::nullopt, 0}, Case{"", 0}, Case{"42", 42}, Case{"+42", 42}, Case{"-42", -42},
          Case{"007", 7}, Case{"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
          Case{"9223372036854775808", 0}, Case{"1.4.2", 0}, Case{"42 ", 0}, Case{" 42", 0}, Case{"+", 0},
          Case{"+-42", 0}, Case{"0x2A", 0}, Case{"four", 0}})
        EXPECT_EQ(buildNumber(one.text), one.number) << one.text.value_or("absent");
}

TEST(UpdateVersion, ComparesTheMajorAndTheMinorNumberOfASystem) {
    struct Case {
        std::string minimum;
        bool isMet; ///< by 14.6
    };
    for (const Case &one : {Case{"15", false}, Case{"15.0", false}, Case{"14", true}, Case{"14.5", true},
                            Case{"14.6", true}, Case{"14.6.3", true}, Case{"14.7", false}, Case{"13.9", true},
                            Case{"9", true}, Case{"14.10", false}, Case{"14.x", true}, Case{"x.14.7", false},
                            Case{"14..7", false}, Case{"..15", false}, Case{"macOS", true}, Case{"", true}})
        EXPECT_EQ(systemMeets(one.minimum, {.major = 14, .minor = 6}), one.isMet) << one.minimum;
}

} // namespace brimvale
