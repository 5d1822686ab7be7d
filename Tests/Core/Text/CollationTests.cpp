#include "Core/Text/Collation.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

/// Shuffles the names in a fixed way, sorts them again in this locale, and prints them to standard error.
[[noreturn]] void printSorted(const char *locale, std::vector<std::string> names) {
    setenv("LC_ALL", locale, 1);
    std::sort(names.begin(), names.end(), std::greater<>());
    std::sort(names.begin(), names.end(),
              [](const std::string &a, const std::string &b) { return compareAsInFinder(a, b) < 0; });
    for (const std::string &name : names)
        std::fprintf(stderr, "%s|", name.c_str());
    std::_Exit(0);
}

} // namespace

// A process keeps the locale of its first comparison, which another test may have made; this style of test
// starts the program anew.
TEST(CollationDeathTest, OrdersNamesByLocale) {
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const std::vector<std::string> names = {"file2", "file02", "file10", "Zebra", "apple", "Apple",   "APPLE",
                                            "étude", "etude",  "a b",    "a-b",   "ab",    "ähnlich", "日本"};
    const std::string english =
        "a b|a-b|ab|ähnlich|apple|Apple|APPLE|etude|étude|file2|file02|file10|Zebra|日本|";
    for (const char *locale : {"C", "C.UTF-8", "POSIX", "en_US.UTF-8", "de_DE.UTF-8"})
        EXPECT_EXIT(printSorted(locale, names), ::testing::ExitedWithCode(0), ::testing::HasSubstr(english));
    EXPECT_EXIT(printSorted("sv_SE.UTF-8", {"ähnlich", "Zebra", "apple"}), ::testing::ExitedWithCode(0),
                ::testing::HasSubstr("apple|Zebra|ähnlich|"));
}

TEST(Collation, OnlyEqualTextsCompareEqual) {
    const std::vector<std::string> names = {"file2", "file02", "file002", "File2", "file\uFF12",
                                            "file",  "",       "\xFF",    "\xFE"};
    for (const std::string &a : names)
        for (const std::string &b : names) {
            EXPECT_EQ(compareAsInFinder(a, b) == 0, a == b) << a << " and " << b;
            EXPECT_EQ(compareAsInFinder(a, b) < 0, compareAsInFinder(b, a) > 0) << a << " and " << b;
        }
}

} // namespace brimvale
