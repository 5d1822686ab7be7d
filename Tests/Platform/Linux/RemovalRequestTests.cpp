#include "Platform/Linux/RemovalRequest.h"
#include "Support/RandomInputs.h"

#include <gtest/gtest.h>
#include <limits>

namespace brimvale {

namespace {

std::string everyByteOfAName() {
    std::string name;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            name += static_cast<char>(byte);
    return name;
}

std::vector<ItemPin> someItems() {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    return {{FileURL("/a"), {0, 1}, {{2, 3}, true, 0}},
            {FileURL("/a/" + everyByteOfAName()), {most, most}, {{most, 0}, false, std::nullopt}},
            {FileURL("/.../..b/ ./-"), {1, 1}, {{1, 1}, false, std::numeric_limits<std::int64_t>::min()}},
            {FileURL("/" + std::string(20'000, 'x')), {1, 1}, {{1, 1}, true, -1}}};
}

/// The request for one item with one of its fields replaced; the last one is the number of items.
std::string withField(std::size_t field, const std::string &value) {
    std::vector<std::string> fields = {"/folder/item", "1", "2", "3", "4", "folder", "5", "1"};
    fields.at(field) = value;
    std::string request = std::string("brimvale removal 1") + '\0' + fields.back() + '\0';
    for (std::size_t i = 0; i + 1 < fields.size(); ++i)
        request += fields[i] + '\0';
    return request;
}

} // namespace

TEST(RemovalRequest, KeepsEveryByte) {
    for (const auto &items : {someItems(), std::vector<ItemPin>()})
        EXPECT_EQ(itemsOfRequest(removalRequest(items)), items);
}

TEST(RemovalRequest, IsRefusedWhereItIsMalformed) {
    ASSERT_TRUE(itemsOfRequest(withField(0, "/folder/item")));
    for (const char *path : {"", "/", "a", "./a", "/a/", "//a", "/a//b", "/.", "/..", "/a/.", "/a/..", "/./a",
                             "/a/../b", "/a/./b"})
        EXPECT_FALSE(itemsOfRequest(withField(0, path))) << path;
    for (const char *number : {"", " 1", "1 ", "+1", "-1", "01", "0x1", "1.0", "1e3", "18446744073709551616"})
        for (const std::size_t field : {1U, 2U, 3U, 4U})
            EXPECT_FALSE(itemsOfRequest(withField(field, number))) << field << " " << number;
    for (const char *kind : {"", "Folder", "file", "folder ", "0"})
        EXPECT_FALSE(itemsOfRequest(withField(5, kind))) << kind;
    for (const char *time : {"", "--1", "-0", "00", "9223372036854775808", "- "})
        EXPECT_FALSE(itemsOfRequest(withField(6, time))) << time;
    for (const char *count : {"", "0", "2", "-1", "18446744073709551615", "18446744073709551616"})
        EXPECT_FALSE(itemsOfRequest(withField(7, count))) << count;
}

TEST(RemovalRequest, IsRefusedWhereSomethingIsMissingOrAdded) {
    const std::string request = removalRequest(someItems());
    for (std::size_t end = 0; end < request.size(); ++end)
        ASSERT_FALSE(itemsOfRequest(std::string_view(request).substr(0, end))) << end;
    for (const char byte : {'\0', '\n', 'x'})
        EXPECT_FALSE(itemsOfRequest(request + byte));
    EXPECT_FALSE(itemsOfRequest(request + request));
    EXPECT_FALSE(itemsOfRequest("x" + request));
    EXPECT_FALSE(itemsOfRequest(removalRequest({}) + std::string(longestRemovalRequest, 'x')));
}

// Whatever is accepted is the one request for its items.
TEST(RemovalRequest, HasOneFormOnly) {
    testing::RandomInputs inputs({removalRequest({someItems().front()}), withField(0, "/folder/item")});
    for (int i = 0; i < 20'000; ++i) {
        const std::string input = inputs.next();
        const auto items = itemsOfRequest(input);
        EXPECT_EQ(items ? removalRequest(*items) : input, input);
    }
}

TEST(RemovalRequest, AnswerTellsTheReasonOfEachItem) {
    const std::string answer =
        removalAnswer("“a\nremoved\n” is busy.") + removalAnswer(std::nullopt) + removalAnswer("No.");
    const KeptReasons reasons = {"“a␊removed␊” is busy.", "", "No."};
    EXPECT_EQ(reasonsOfAnswer(answer, 3), reasons);
    EXPECT_EQ(reasonsOfAnswer(answer, 5), (KeptReasons{reasons[0], "", "No.", "", ""})) << "cut off";
    for (const std::string &malformed : {answer, std::string("gone\nremoved\n"), std::string("\n\n")})
        EXPECT_EQ(reasonsOfAnswer(malformed, 2), KeptReasons(2)) << malformed;
}

} // namespace brimvale
