#include "CommandLine/Program.h"
#include "Platform/FileSystem.h"
#include "Support/EnvironmentVariable.h"
#include "Support/SampleMac.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

QJsonDocument documentOf(const Outcome &outcome) {
    EXPECT_EQ(outcome.err, "");
    return jsonIn(outcome);
}

QJsonObject withId(const QJsonArray &records, const char *id) {
    for (const QJsonValue &record : records)
        if (record["id"] == id || record["category"]["id"] == id)
            return record.toObject();
    ADD_FAILURE() << id << " is missing";
    return {};
}

/// A sample Mac whose home folder is the user's.
class Storage : public ::testing::Test {
protected:
    Storage() { makeSampleMac(folder.path()); }

    [[nodiscard]] Outcome run(const std::vector<std::string> &arguments) const {
        return runProgramOnMac(folder.path(), arguments);
    }
    [[nodiscard]] std::string home(const std::string &inside) const { return homeIn(folder.path()) + inside; }

    const TemporaryFolder folder;
    const EnvironmentVariable variable{"HOME", homeIn(folder.path())};
};

} // namespace

TEST_F(Storage, ListsCleanupTargetsWithTheirEntries) {
    const QJsonArray targets = documentOf(run({"cleanup", "--json"})).array();
    EXPECT_EQ(targets.size(), 15);
    const QJsonObject trash = withId(targets, "trash");
    EXPECT_EQ(trash.keys().join(' ').toStdString(),
              "contentsOnly detail entries id risk roots scanned title");
    EXPECT_TRUE(trash["scanned"].toBool());
    EXPECT_THAT(pathsIn(trash["entries"]),
                ElementsAre(home("/.Trash/Old Project"), home("/.Trash/Übung.pdf")));
    EXPECT_EQ(trash["entries"][1]["size"].toInteger(), allocatedBytes(home("/.Trash/Übung.pdf")));
    EXPECT_THAT(trash["entries"][0]["modified"].toString().toStdString(),
                ::testing::MatchesRegex("....-..-..T..:..:..Z"));
    EXPECT_EQ(trash["entries"][0]["isFolder"], true);
    EXPECT_EQ(trash["entries"][1]["isFolder"], false);
    // One item under two cards has one size.
    const QJsonObject caches = withId(targets, "user-caches");
    EXPECT_THAT(pathsIn(caches["entries"]), ::testing::Contains(home("/Library/Caches/ms-playwright")));
    EXPECT_THAT(pathsIn(withId(targets, "macos-installers")["entries"]),
                ::testing::Contains(folder.path("Library/Updates/042-12345")));

    const QJsonArray two = documentOf(run({"cleanup", "--json", "trash", "logs", "trash"})).array();
    EXPECT_EQ(two.size(), 2);
    EXPECT_EQ(two[1].toObject(), trash);

    const Outcome table = run({"cleanup", "trash"});
    EXPECT_THAT(table.out, HasSubstr("Items already thrown away, still occupying the disk.\n"));
    EXPECT_THAT(table.out, HasSubstr(home("/.Trash/Old Project") + "\n"));
}

TEST_F(Storage, OverviewCategoriesSumToUsedSpace) {
    const QJsonObject overview = documentOf(run({"overview", "--json"})).object();
    EXPECT_EQ(overview.keys().join(' ').toStdString(),
              "categories categorisedBytes sentence systemDataAccounted volumes");
    const QJsonArray categories = overview["categories"].toArray();
    // What is on another volume is listed, but takes nothing of this one.
    const bool isHere = storageOf(folder.path()) == storageOf("/");
    std::int64_t sum = 0;
    for (const QJsonValue &category : categories)
        if (category["category"]["measurement"] == "measured") {
            std::int64_t rows = 0;
            for (const QJsonValue &entry : category["entries"].toArray())
                rows += isHere ? entry["size"].toInteger() : 0;
            EXPECT_EQ(category["size"].toInteger(), rows);
            sum += rows;
        }
    EXPECT_EQ(overview["categorisedBytes"].toInteger(), sum);
    const QJsonObject root = overview["volumes"][0].toObject();
    EXPECT_TRUE(root["isRootVolume"].toBool());
    const QJsonObject systemData = withId(categories, "systemData");
    EXPECT_TRUE(systemData["measured"].toBool());
    EXPECT_EQ(
        systemData["size"].toInteger(),
        std::max<std::int64_t>(root["totalCapacity"].toInteger() - root["trueFree"].toInteger() - sum, 0));
    EXPECT_THAT(pathsIn(systemData["entries"]), ::testing::Contains(home("/.ollama")));
    EXPECT_THAT(overview["sentence"].toString().toStdString(),
                ::testing::StartsWith(isHere ? "The locations above " : ""));

    QJsonObject both = documentOf(run({"overview", "--cleanup", "--json"})).object();
    EXPECT_EQ(both.take("cleanup").toArray(), documentOf(run({"cleanup", "--json"})).array());
    EXPECT_EQ(both["categories"].toArray().size(), categories.size());
    EXPECT_EQ(withId(both["categories"].toArray(), "documents"), withId(categories, "documents"));

    const QJsonObject documents = documentOf(run({"category", "documents", "--json"})).object();
    EXPECT_EQ(documents, withId(categories, "documents"));
    EXPECT_EQ(documents["category"]["action"].toObject(), (QJsonObject{{"case", "removable"}}));
    EXPECT_THAT(run({"category", "photos"}).out, HasSubstr("A photo library is a bundle"));
}

TEST(StorageUsage, UnknownIdListsValidIds) {
    for (const char *command : {"cleanup", "category"}) {
        const Outcome outcome = runProgram({command, "Trash"});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(std::string(command) + ": unknown "));
        EXPECT_THAT(outcome.err, HasSubstr(", trash"));
    }
    EXPECT_EQ(runProgram({"category"}).status, 2);
    EXPECT_EQ(runProgram({"volumes", "/"}).status, 2);
}

TEST(StorageVolumes, ListsRootFirst) {
    const QJsonArray volumes = documentOf(runProgram({"volumes", "--json"})).array();
    ASSERT_FALSE(volumes.isEmpty());
    EXPECT_EQ(volumes[0]["url"], "/");
    EXPECT_EQ(
        volumes[0].toObject().keys().join(' ').toStdString(),
        "availableForImportantUsage device fileSystem isInternal isRootVolume name reserved totalCapacity "
        "trueFree url");
    EXPECT_THAT(runProgram({"volumes"}).out, HasSubstr("MOUNTED AT\n"));
    // Here is no Time Machine, or it has what it has.
    EXPECT_TRUE(documentOf(runProgram({"snapshots", "--json"})).isArray());
}

} // namespace brimvale::testing
