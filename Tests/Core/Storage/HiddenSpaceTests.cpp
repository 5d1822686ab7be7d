#include "Core/Storage/AdministratorSizes.h"
#include "Core/Storage/HiddenSpace.h"
#include "Core/Text/Formatting.h"
#include "Platform/Host.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr auto shownBytes = Fmt::byteFormatter;

} // namespace

TEST(HiddenSpace, IsExplainedInSentences) {
    HiddenSpace hidden;
    hidden.deletedFiles.holders = {{"fire\xFF", 50'000'000}, {"tiny", 4'096}};
    hidden.deletedFiles.unknownPrograms = 2;
    const VolumeInfo root{.url = FileURL("/"), .name = "", .reserved = 9'000'000};
    const std::vector<LocalSnapshot> snapshots = {
        {.name = "a", .date = {}, .tool = "Btrfs", .exclusiveBytes = 1'000'000},
        {.name = "b", .date = {}, .tool = "Btrfs"}};
    Host::useSystem(System::linux);
    EXPECT_THAT(
        hiddenSpaceSentences(hidden, root, snapshots, 1),
        ElementsAre(StartsWith("fire\uFFFD still uses " + shownBytes(50'000'000) + " of deleted files. "),
                    StartsWith("2 programs of other users may still use deleted files"),
                    HasSubstr("frees at least " + shownBytes(1'000'000)),
                    StartsWith(shownBytes(9'000'000) + " are reserved"), StartsWith("1 place has folders")));
    EXPECT_THAT(hiddenSpaceSentences({}, std::nullopt, {}, 0), IsEmpty());
    EXPECT_THAT(hiddenSpaceSentences({}, std::nullopt, {{.name = "b", .date = {}, .tool = "Btrfs"}}, 3),
                ElementsAre(HasSubstr("is unknown"), StartsWith("3 places have folders")));
    Host::useSystem(System::macOS);
    EXPECT_THAT(hiddenSpaceSentences(hidden, root, snapshots, 1), IsEmpty());
    Host::useSystem(std::nullopt);
}

TEST(HiddenSpace, AdministratorMeasuresOnlyWhatWasAsked) {
    const testing::TemporaryFolder folder;
    testing::RecordingActions actions;
    const std::string first = folder.makeFolder("first"), second = folder.makeFolder("it's"),
                      third = folder.makeFolder("third");
    const std::vector<std::string> places = {first, second, third, "/not\xFFtext"};
    actions.printed = R"([{"path": ")" + second + R"(", "size": 7000}, {"path": "/etc", "size": 1},
        {"path": ")" + first +
                      R"(", "size": -1}, {"path": ")" + third + R"(", "size": 9000000000000000000}])";
    const auto result = measureAsAdministrator(places, FileURL(folder.path()), actions);
    ASSERT_TRUE(std::holds_alternative<std::vector<CleanupEntry>>(result));
    const auto &rows = std::get<std::vector<CleanupEntry>>(result);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].url.path(), second);
    EXPECT_EQ(rows[0].size, 7000);
    EXPECT_TRUE(rows[0].isFolder && rows[0].pin && !rows[0].isElsewhere);
    ASSERT_EQ(actions.calls.size(), 1U);
    EXPECT_THAT(actions.calls[0],
                ::testing::EndsWith("/brimvalectl size --json -- " + first + " " + second + " " + third));

    actions.printed = "no JSON";
    const auto broken = measureAsAdministrator(places, std::nullopt, actions);
    EXPECT_TRUE(std::get<PrivilegedRunError>(broken).message);
    actions.privilegedRunError = PrivilegedRunError{};
    const auto refused = measureAsAdministrator(places, std::nullopt, actions);
    EXPECT_FALSE(std::get<PrivilegedRunError>(refused).message);
}

} // namespace brimvale
