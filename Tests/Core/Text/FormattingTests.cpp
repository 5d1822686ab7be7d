#include "Core/Text/Formatting.h"

#include "Platform/Host.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace brimvale {

namespace {

Date moment(int year, unsigned month, unsigned day, std::chrono::nanoseconds time = {}) {
    const std::chrono::year_month_day civil{std::chrono::year(year), std::chrono::month(month),
                                            std::chrono::day(day)};
    return std::chrono::sys_days(civil) + time;
}

} // namespace

TEST(Fmt, FormatsSizesInDecimalUnits) {
    struct Case {
        std::int64_t bytes;
        std::string text;
    };
    for (const Case &one :
         {Case{1, "0 KB"}, Case{-55, "0 KB"}, Case{550, "1 KB"}, Case{-1023, "-1 KB"}, Case{5'500, "6 KB"},
          Case{55'000, "55 KB"}, Case{999'499, "999 KB"}, Case{999'500, "1 MB"}, Case{-999'500, "-1 MB"},
          Case{5'500'000, "5.5 MB"}, Case{999'949'999, "999.9 MB"}, Case{999'950'000, "1 GB"},
          Case{12'345'678'987, "12.35 GB"}, Case{999'994'999'999, "999.99 GB"}, Case{999'995'000'000, "1 TB"},
          Case{5'500'000'000'000, "5.5 TB"},
          Case{std::numeric_limits<std::int64_t>::max(), "9,223,372.04 TB"},
          Case{std::numeric_limits<std::int64_t>::min(), "-9,223,372.04 TB"}})
        EXPECT_EQ(Fmt::byteFormatter(one.bytes), one.text) << one.bytes;
    for (const auto &[system, none] :
         {std::pair(System::macOS, "Zero KB"), std::pair(System::linux, "0 bytes")}) {
        Host::useSystem(system);
        EXPECT_EQ(Fmt::byteFormatter(0), none);
    }
    Host::useSystem(std::nullopt);
}

TEST(Fmt, GroupsDigits) {
    EXPECT_EQ(Fmt::count(999), "999");
    EXPECT_EQ(Fmt::count(-1'000), "-1,000");
    EXPECT_EQ(Fmt::count(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
}

TEST(Fmt, RelativeDateUsesLargestCalendarUnit) {
    using namespace std::chrono_literals;
    const Date noon = moment(2026, 3, 31, 12h);
    struct Case {
        Date date, reference;
        std::string text;
    };
    for (const Case &one : {
             Case{noon, noon, "in 0 seconds"},
             Case{noon - 999ms, noon, "in 0 seconds"},
             Case{noon - 1999ms, noon, "1 second ago"},
             Case{noon + 59s, noon, "in 59 seconds"},
             Case{noon - 60s, noon, "1 minute ago"},
             Case{noon - 119min, noon, "1 hour ago"},
             Case{noon - 2h, noon, "2 hours ago"},
             Case{noon - 24h, noon, "1 day ago"},
             Case{noon + 24h * 6, noon, "in 6 days"},
             Case{noon - 24h * 7, noon, "1 week ago"},
             Case{noon - 24h * 27, noon, "3 weeks ago"},
             // A month is what the calendar says: the 28th is as far as February goes.
             Case{moment(2026, 2, 28, 12h), noon, "1 month ago"},
             Case{moment(2026, 2, 28, 12h), moment(2026, 3, 27, 12h), "3 weeks ago"},
             Case{moment(2025, 3, 31, 12h + 1s), noon, "11 months ago"},
             Case{moment(2025, 3, 31, 12h), noon, "1 year ago"},
             Case{moment(2027, 3, 31, 12h), noon, "in 1 year"},
             Case{moment(1700, 1, 1), noon, "326 years ago"},
             Case{Date::min(), Date::max(), "584 years ago"},
         })
        EXPECT_EQ(Fmt::relativeDate(one.date, one.reference), one.text) << iso8601(one.date);
    EXPECT_EQ(Fmt::relativeDate(std::nullopt), "unknown");
    EXPECT_EQ(Fmt::relativeDate(now() - 90min), "1 hour ago");
}

TEST(Fmt, RecentDateIsJustNowWithinASecond) {
    using namespace std::chrono_literals;
    const Date noon = moment(2026, 3, 31, 12h);
    for (const Date date : {noon, noon - 999ms, noon + 999ms})
        EXPECT_EQ(Fmt::recentDate(date, noon), "just now");
    EXPECT_EQ(Fmt::recentDate(noon - 1s, noon), "1 second ago");
    EXPECT_EQ(Fmt::recentDate(noon + 3h, noon), "in 3 hours");
    EXPECT_EQ(Fmt::recentDate(Date::min(), Date::max()), "584 years ago") << "their distance overflows";
    EXPECT_EQ(Fmt::recentDate(std::nullopt), "unknown");
}

TEST(Fmt, RelativeDateCountsLocalDays) {
    using namespace std::chrono_literals;
    // The night of 29 March 2026 is an hour short in Berlin, so one calendar day is 23 hours.
    EXPECT_EQ(Fmt::relativeDate(moment(2026, 3, 28, 11h), moment(2026, 3, 29, 10h)), "1 day ago");
    EXPECT_EQ(Fmt::relativeDate(moment(2026, 3, 29, 11h), moment(2026, 3, 30, 10h)), "23 hours ago");
}

TEST(Palette, SameNameGetsSameColor) {
    struct Case {
        std::string key;
        std::size_t index;
    };
    for (const Case &one : {Case{"", 5}, Case{"a", 6}, Case{"b", 7}, Case{"c", 0}, Case{"\u00E9", 1},
                            Case{"Library/Application Support", 2}})
        EXPECT_EQ(Palette::color(one.key), Palette::ramp[one.index]) << one.key;
}

} // namespace brimvale
