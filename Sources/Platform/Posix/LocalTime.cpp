#include "Platform/LocalTime.h"

#include <time.h>

namespace brimvale {

// localtime_r does not look whether the user has gone elsewhere since it was first called.
LocalTimeZone::LocalTimeZone() {
    tzset();
}

LocalTime LocalTimeZone::at(Date date) const {
    const auto moment =
        static_cast<std::time_t>(std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count());
    std::tm parts{};
    // A date of 64 bits of nanoseconds never lies beyond what the calendar can count.
    localtime_r(&moment, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
            parts.tm_wday,        parts.tm_hour,    parts.tm_min};
}

} // namespace brimvale
