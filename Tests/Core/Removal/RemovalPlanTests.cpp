#include "Core/Removal/RemovalPlan.h"

#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

MadePlan planOf(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    return planFor(entries, mode, {});
}

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
        planOf({entry(odd, 8'192), entry(inner), entry(folder.path("link"))}, RemovalMode::deleteNow);
    EXPECT_THAT(made.leftOut, IsEmpty());
    ASSERT_THAT(made.plan.items, SizeIs(3));
    EXPECT_EQ(made.plan.items[0].entry.pin, pinOf(FileURL(odd)));
    EXPECT_TRUE(made.plan.items[1].entry.pin.item.isFolder);

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
        planOf({shown, {.url = FileURL("/usr")}, {.url = FileURL(folder.path("gone"))}}, RemovalMode::trash);
    EXPECT_THAT(made.plan.items, IsEmpty());
    ASSERT_THAT(made.leftOut, SizeIs(3));
    EXPECT_EQ(made.leftOut[0].reason, "“file” changed since you selected it.");
    EXPECT_THAT(made.leftOut[1].reason, HasSubstr("never removed"));
}

TEST(RemovalPlan, EveryDamageGetsASentence) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const std::string saved = folder.path("plan");
    EXPECT_EQ(savePlan(saved, planOf({entry(file)}, RemovalMode::trash).plan), std::nullopt);
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
    EXPECT_NE(faultOf(replaced(text, "\"inode\":\"", "\"inode\":\"99999999999999999999")), "");
    EXPECT_NE(faultOf(replaced(text, "\"size\":0", "\"size\":-1")), "");
    EXPECT_NE(faultOf(replaced(text, "\"size\":", "\"equalTo\":{},\"size\":")), "");
    EXPECT_NE(faultOf(replaced(text, "\"size\":", "\"equalTo\":null,\"size\":")), "");
    EXPECT_THAT(faultOf(replaced(text, "\"isFolder\":false", "\"isFolder\":true")), HasSubstr("not complete"))
        << "nobody knows what was in it";
    EXPECT_THAT(faultOf(replaced(text, "\"" + file, "\"" + file + "\\u0000")), HasSubstr("not complete"));
    EXPECT_NE(
        faultOf(replaced(text, "\"program\":", "\"deep\":" + std::string(1'000'000, '[') + ",\"program\":")),
        "");
    EXPECT_NE(faultOf(text + "{}"), "");
    const auto missing = planAt(folder.path("missing"));
    EXPECT_THAT(std::get<std::string>(missing), HasSubstr("No such file"));
    EXPECT_TRUE(std::holds_alternative<std::string>(planAt(folder.path())));
}

TEST(RemovalPlan, IsNotReadWhereOthersMayChangeIt) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const std::string shared = folder.makeFolder("shared"), saved = shared + "/plan";
    EXPECT_EQ(savePlan(saved, planOf({entry(file)}, RemovalMode::trash).plan), std::nullopt);
    const auto refusal = [&](const std::string &path) {
        const auto read = planAt(path);
        const auto *reason = std::get_if<std::string>(&read);
        return reason != nullptr ? *reason : "";
    };
    EXPECT_EQ(refusal(saved), "");
    chmod(saved.c_str(), 0602);
    EXPECT_THAT(refusal(saved), HasSubstr("Somebody else may change this file"));
    chmod(saved.c_str(), 0600);
    chmod(shared.c_str(), 0777);
    EXPECT_THAT(refusal(saved), HasSubstr("Somebody else may change this file"));
    chmod(shared.c_str(), 0700);
    folder.makeLink("link", "shared/plan");
    EXPECT_NE(refusal(folder.path("link")), "");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(saved.c_str(), 1, 1), 0);
        EXPECT_THAT(refusal(saved), HasSubstr("Somebody else may change this file"));
    }
}

} // namespace brimvale
