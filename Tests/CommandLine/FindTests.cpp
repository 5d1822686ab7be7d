#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::testing {

TEST(Find, ListsWhatTheFiltersAccept) {
    const TemporaryFolder folder;
    const std::string film = folder.makeFile("films/My Film.mp4", 3'000'000);
    const std::string clip = folder.makeFile("films/clip.mkv", 300'000);
    const std::string notes = folder.makeFile("notes.txt", 5'000);
    folder.makeLink("link", "films");
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(clip, now - std::chrono::hours(24 * 400));

    const std::string &path = folder.path();
    const auto found = [&](std::vector<std::string> filters) {
        filters.insert(filters.begin(), {"find", "--json", path});
        std::vector<std::string> paths;
        for (const QJsonValue &file : jsonIn(runProgram(filters)).object()["files"].toArray())
            paths.push_back(file["path"].toString().toStdString());
        return paths;
    };
    using Paths = std::vector<std::string>;
    EXPECT_EQ(found({"type:video"}), (Paths{film, clip}));
    EXPECT_EQ(found({"type:video", "older:1y"}), (Paths{clip}));
    EXPECT_EQ(found({">4K", "<1M", "newer:1d"}), (Paths{notes}));
    EXPECT_EQ(found({"my film"}), (Paths{film}));
    EXPECT_EQ(found({"--largest", "1"}), (Paths{film}));
    EXPECT_EQ(found({">1G"}), Paths());

    const QJsonObject byType = jsonIn(runProgram({"find", path, "--by", "type", "--json"})).object();
    const QJsonArray groups = byType["groups"].toArray();
    ASSERT_EQ(groups.size(), 3);
    EXPECT_EQ(groups[0].toObject()["key"].toString(), "video");
    EXPECT_EQ(groups[0].toObject()["files"].toInteger(), 2);
    EXPECT_EQ(groups[0].toObject()["bytes"].toInteger(), allocatedBytes(film) + allocatedBytes(clip));
    EXPECT_EQ(byType["count"].toInteger(), 4);

    const Outcome byAge = runProgram({"find", path, "--by", "age"});
    EXPECT_THAT(byAge.out, ::testing::HasSubstr("  More than a year\n"));
    EXPECT_THAT(byAge.out, ::testing::HasSubstr("\n4 files, "));
    const Outcome table = runProgram({"find", film});
    EXPECT_THAT(table.out, ::testing::HasSubstr("  " + film + "\n"));
}

TEST(Find, RefusesWhatIsNoFilter) {
    const TemporaryFolder folder;
    const Outcome size = runProgram({"find", folder.path(), ">many"});
    EXPECT_EQ(size.status, 2);
    EXPECT_THAT(size.err, ::testing::HasSubstr("find: “>many” is not a size."));
    EXPECT_EQ(runProgram({"find", folder.path(), "--by", "name"}).status, 2);
    EXPECT_EQ(runProgram({"find", folder.path("missing")}).status, 1);
}

} // namespace brimvale::testing
