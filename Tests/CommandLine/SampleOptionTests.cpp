#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <string>

namespace brimvale {

namespace {

using ::testing::HasSubstr;
using testing::isThere;
using testing::runProgram;
using testing::TemporaryFolder;

} // namespace

TEST(SampleOption, ShowsTheSampleAndChangesNothingElse) {
    const TemporaryFolder place;
    place.makeFolder("home");
    const auto inPlace = [&] {
        setenv("HOME", place.path("home").c_str(), 1);
        setenv("XDG_CACHE_HOME", place.path("caches").c_str(), 1);
        setenv("OLLAMA_MODELS", place.path("home").c_str(), 1);
    };
    const std::string disk = place.path("caches/brimvale-sample/linux");
    const auto cleanup = runProgram({"--sample", "cleanup", "--json"}, inPlace);
    EXPECT_EQ(cleanup.status, 0);
    EXPECT_THAT(cleanup.err, HasSubstr("This is a sample, in “" + disk + "”"));
    EXPECT_THAT(cleanup.out, HasSubstr("\"" + disk + "/home/sam/.cache/pip/http-v2\""));
    EXPECT_EQ(cleanup.out.find("\"" + place.path("home") + "\""), std::string::npos);

    const auto scan = runProgram({"--sample", "scan", "--json", "--depth=0"}, inPlace);
    EXPECT_THAT(scan.out, HasSubstr("\"path\":\"" + disk + "/home/sam\""));

    const auto uninstall = runProgram({"--sample", "uninstall", "org.kde.krita", "--yes"}, inPlace);
    EXPECT_EQ(uninstall.status, 0) << uninstall.err;
    EXPECT_FALSE(isThere(disk + "/home/sam/.local/share/flatpak/app/org.kde.krita"));
    place.makeFile("home/mine", 5000);
    const auto outside = runProgram({"--sample", "remove", "--yes", place.path("home/mine")}, inPlace);
    EXPECT_EQ(outside.status, 1);
    EXPECT_TRUE(isThere(place.path("home/mine")));

    EXPECT_EQ(runProgram({"--sample=other", "volumes"}, inPlace).status, 2);
    EXPECT_EQ(runProgram({"--sample=remove"}, inPlace).status, 0);
    EXPECT_FALSE(isThere(place.path("caches/brimvale-sample")));
}

} // namespace brimvale
