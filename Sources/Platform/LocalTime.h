#pragma once

#include "Base/Date.h"

namespace brimvale {

/// A moment in the Gregorian calendar and the local time zone.
struct LocalTime {
    int year = 1970;
    int month = 1;   ///< from 1
    int day = 1;     ///< from 1
    int weekday = 0; ///< 0 is Sunday
    int hour = 0;
    int minute = 0;

    [[nodiscard]] bool isSameDayAs(const LocalTime &other) const {
        return year == other.year && month == other.month && day == other.day;
    }
};

/// The local time zone when the object is made. Thread-safe.
class LocalTimeZone {
public:
    LocalTimeZone();

    [[nodiscard]] LocalTime at(Date date) const;
};

} // namespace brimvale
