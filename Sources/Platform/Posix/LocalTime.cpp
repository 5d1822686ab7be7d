#include "Platform/LocalTime.h"

#include <time.h>

namespace brimvale {

// localtime_r does not notice when the time zone changes after its first call.
LocalTimeZone::LocalTimeZone() {
    tzset();
}

LocalTime LocalTimeZone::at(Date date) const {
    const auto moment =
        static_cast<std::time_t>(std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count());
    std::tm parts{};
    // A 64-bit date in nanoseconds is always within the calendar's range.
    localtime_r(&moment, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
            parts.tm_wday,        parts.tm_hour,    parts.tm_min};
}

} // namespace brimvale
