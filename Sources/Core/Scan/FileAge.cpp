#include "Core/Scan/FileAge.h"

#include <array>
#include <limits>

namespace brimvale {

namespace {

constexpr std::uint32_t day = 24 * 60 * 60;

/// The end of each known age, in seconds.
constexpr std::array<std::uint32_t, fileAgeCount - 1> ends{30 * day, 182 * day, 365 * day,
                                                           std::numeric_limits<std::uint32_t>::max()};

} // namespace

FileAge ageOf(std::uint32_t modified, std::uint32_t moment) {
    if (modified == 0)
        return FileAge::unknown;
    const std::uint32_t seconds = modified < moment ? moment - modified : 0;
    std::size_t age = 0;
    while (seconds > ends[age])
        ++age;
    return static_cast<FileAge>(age);
}

std::pair<std::uint32_t, std::uint32_t> rangeOf(FileAge age) {
    const auto place = static_cast<std::size_t>(age);
    return {place == 0 ? 0 : ends[place - 1], ends[place]};
}

const FileAgeWords &wordsOf(FileAge age) {
    static constexpr std::array<FileAgeWords, fileAgeCount> words{{{"month", "Up to a month"},
                                                                   {"half-year", "Up to half a year"},
                                                                   {"year", "Up to a year"},
                                                                   {"older", "More than a year"},
                                                                   {"unknown", "Date unknown"}}};
    return words[static_cast<std::size_t>(age)];
}

} // namespace brimvale
