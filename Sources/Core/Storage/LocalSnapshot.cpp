#include "Core/Storage/LocalSnapshot.h"

#include "Base/Text.h"
#include "Core/Text/Shell.h"
#include "Core/Text/SnapshotName.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <sstream>

namespace brimvale {

namespace {

/// The number in the `length` characters of `text` from `start` on; nothing unless all of them are digits.
std::optional<int> digits(std::string_view text, std::size_t start, std::size_t length) {
    const std::string_view part = text.substr(start, length);
    int number = 0;
    const auto result = std::from_chars(part.data(), part.data() + part.size(), number);
    const bool isNumber = part.front() != '-' && result.ec == std::errc() && result.ptr == part.end();
    return isNumber ? std::optional(number) : std::nullopt;
}

/// The moment for a text in the form "yyyy-MM-dd-HHmmss" in the current time zone.
std::optional<Date> localDate(std::string_view text) {
    if (text.size() != 17 || text[4] != '-' || text[7] != '-' || text[10] != '-')
        return std::nullopt;
    const auto year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2),
               hour = digits(text, 11, 2), minute = digits(text, 13, 2), second = digits(text, 15, 2);
    if (!year || !month || !day || !hour || !minute || !second)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    std::tm civil{};
    civil.tm_year = *year - 1900;
    civil.tm_mon = *month - 1;
    civil.tm_mday = *day;
    civil.tm_hour = *hour;
    civil.tm_min = *minute;
    civil.tm_sec = *second;
    civil.tm_isdst = -1; // let the time zone decide for that day
    const std::time_t moment = std::mktime(&civil);
    constexpr std::time_t farthest = 9'000'000'000; // as far as nanoseconds reach
    if (moment < -farthest || moment > farthest)
        return std::nullopt;
    return Date(std::chrono::seconds(moment));
}

} // namespace

std::vector<LocalSnapshot> LocalSnapshot::list(const std::string &volume, const Tools &tools) {
    std::vector<LocalSnapshot> snapshots;
    if (tools.tmutil.empty())
        return snapshots;
    std::istringstream lines(Shell::run(tools.tmutil, {"listlocalsnapshots", volume}).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        const std::string name(trimmed(line));
        if (SnapshotName::isOne(name))
            snapshots.push_back({name, localDate(SnapshotName::stamp(name))});
    }
    // A missing date sorts before every date.
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const LocalSnapshot &a, const LocalSnapshot &b) { return a.date > b.date; });
    return snapshots;
}

std::optional<std::string> snapshotNote(std::size_t count) {
    if (count == 0)
        return std::nullopt;
    return std::to_string(count) + " snapshot" + (count == 1 ? "" : "s") +
           ". These hold on to deleted blocks and are the usual reason System Data grows and shrinks on its "
           "own.";
}

} // namespace brimvale
