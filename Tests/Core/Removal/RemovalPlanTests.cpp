#include "Core/Removal/RemovalPlan.h"

#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

CleanupEntry entry(const std::string &path, std::int64_t size = 0) {
    return {.url = FileURL(path), .size = size, .pin = pinOf(FileURL(path))};
}

std::string faultOf(std::string_view text) {
    const auto read = planIn(text);
    const auto *fault = std::get_if<std::string>(&read);
    return fault != nullptr ? *fault : "";
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return text.replace(place, from.size(), to);
}

} // namespace

TEST(RemovalPlan, KeepsEveryByteAndIdentity) {
    const TemporaryFolder folder;
    const std::string odd = folder.makeFile(folder.possibleName("odd \"\xFF\n"), 5'000);
    const std::string inner = folder.makeFolder("inner");
    folder.makeLink("link", "inner");
    const MadePlan made =
        planFor({entry(odd, 8'192), entry(inner), entry(folder.path("link"))}, RemovalMode::deleteNow);
    EXPECT_THAT(made.leftOut, IsEmpty());
    ASSERT_THAT(made.plan.items, SizeIs(3));
    EXPECT_EQ(made.plan.items[0].pin, pinOf(FileURL(odd)));
    EXPECT_TRUE(made.plan.items[1].pin.item.isFolder);

    const std::string file = folder.path("plan");
    EXPECT_EQ(savePlan(file, made.plan), std::nullopt);
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    const auto read = planAt(file);
    ASSERT_TRUE(std::holds_alternative<RemovalPlan>(read)) << std::get<std::string>(read);
    EXPECT_EQ(std::get<RemovalPlan>(read), made.plan);
}

TEST(RemovalPlan, LeavesOutWhatIsRefusedOrReplaced) {
    const TemporaryFolder folder;
    const CleanupEntry shown = entry(folder.makeFile("file", 5'000));
    std::filesystem::rename(shown.url.path(), folder.path("kept"));
    folder.makeFile("file", 5'000);
    const MadePlan made =
        planFor({shown, {.url = FileURL("/usr")}, {.url = FileURL(folder.path("gone"))}}, RemovalMode::trash);
    EXPECT_THAT(made.plan.items, IsEmpty());
    ASSERT_THAT(made.leftOut, SizeIs(3));
    EXPECT_EQ(made.leftOut[0].reason, "“file” changed since you selected it.");
    EXPECT_THAT(made.leftOut[1].reason, HasSubstr("never removed"));
}

TEST(RemovalPlan, EveryDamageGetsASentence) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const std::string saved = folder.path("plan");
    EXPECT_EQ(savePlan(saved, planFor({entry(file)}, RemovalMode::trash).plan), std::nullopt);
    const std::string text = testing::contentOf(saved);
    ASSERT_EQ(faultOf(text), "");
    for (std::size_t length = 0; length + 1 < text.size();
         ++length) // the line feed at the end may be missing
        EXPECT_NE(faultOf(text.substr(0, length)), "") << length;
    for (const char *foreign : {"", "[]", "{}", "no plan", R"({"root": {}, "items": []})"})
        EXPECT_EQ(faultOf(foreign), "This file is no removal plan.") << foreign;
    EXPECT_EQ(faultOf(replaced(text, "\"version\":1", "\"version\":2")),
              "A later version of Brimvale made this plan.");
    EXPECT_THAT(faultOf(replaced(text, "\"trash\"", "\"shred\"")), HasSubstr("damaged"));
    for (const char *member : {"\"path\"", "\"isFolder\"", "\"size\"", "\"device\"", "\"inode\"",
                               "\"parentInode\"", "\"length\"", "\"inodeMayChange\""})
        EXPECT_THAT(faultOf(replaced(text, member, "\"other\"")), HasSubstr("not complete")) << member;
    for (const std::string &path :
         {std::string("relative"), folder.path("../file"), std::string("/"), folder.path("file/")})
        EXPECT_THAT(faultOf(replaced(text, "\"" + file + "\"", "\"" + path + "\"")),
                    HasSubstr("not complete"))
            << path;
    EXPECT_NE(faultOf(replaced(text, "\"inode\":\"", "\"inode\":\"-")), "");
    EXPECT_NE(faultOf(text + "{}"), "");
    const auto missing = planAt(folder.path("missing"));
    EXPECT_THAT(std::get<std::string>(missing), HasSubstr("No such file"));
    EXPECT_TRUE(std::holds_alternative<std::string>(planAt(folder.path())));
}

// A new file may get the number of the old one.
TEST(RemovalPlan, WithoutATimeOfCreationAChangeCounts) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    PlannedItem item = planFor({entry(file)}, RemovalMode::trash).plan.items.at(0);
    item.pin.item.created.reset();
    item.pin.item.details.reset();
    EXPECT_TRUE(isUnchanged(item));
    std::filesystem::last_write_time(file,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(5));
    EXPECT_FALSE(isUnchanged(item));
    item.pin.item.created = 1;
    EXPECT_TRUE(isUnchanged(item)) << "where the pin tells";
}

} // namespace brimvale
