#include "Platform/Collation.h"

#include "Support/ChildProcess.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// The names, shuffled in a fixed way and sorted again in a child with this locale.
std::string sortedIn(const char *locale, std::vector<std::string> names) {
    std::sort(names.begin(), names.end(), std::greater<>());
    return testing::answerOfChild([&] {
        setenv("LC_ALL", locale, 1);
        std::sort(names.begin(), names.end(),
                  [](const std::string &a, const std::string &b) { return compareAsInFinder(a, b) < 0; });
        std::string text;
        for (const std::string &name : names)
            text += name + '|';
        return text;
    });
}

} // namespace

TEST(Collation, OrdersAsAReaderWould) {
    const std::vector<std::string> names = {"file2", "file02", "file10", "Zebra", "apple", "Apple",   "APPLE",
                                            "étude", "etude",  "a b",    "a-b",   "ab",    "ähnlich", "日本"};
    const std::string english =
        "a b|a-b|ab|ähnlich|apple|Apple|APPLE|etude|étude|file2|file02|file10|Zebra|日本|";
    for (const char *locale : {"C", "C.UTF-8", "POSIX", "en_US.UTF-8", "de_DE.UTF-8"})
        EXPECT_EQ(sortedIn(locale, names), english) << locale;
    EXPECT_EQ(sortedIn("sv_SE.UTF-8", {"ähnlich", "Zebra", "apple"}), "apple|Zebra|ähnlich|");
}

TEST(Collation, TellsAnyTwoTextsApart) {
    const std::vector<std::string> names = {"file2", "file02", "file002", "File2", "file\uFF12",
                                            "file",  "",       "\xFF",    "\xFE"};
    for (const std::string &a : names)
        for (const std::string &b : names) {
            EXPECT_EQ(compareAsInFinder(a, b) == 0, a == b) << a << " and " << b;
            EXPECT_EQ(compareAsInFinder(a, b) < 0, compareAsInFinder(b, a) > 0) << a << " and " << b;
        }
}

} // namespace brimvale
