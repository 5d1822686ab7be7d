#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <string>

namespace brimvale {

/// Numbers and times as the platform words them for people, in the user's locale as it was at the first use.
/// UTF-8. Thread-safe.
namespace Formatters {

/// A number of bytes in KB, MB, GB or TB (1 KB = 1,000 bytes), with no, one, two and two fraction digits at
/// the most: "12.35 GB". Zero is "Zero KB".
[[nodiscard]] std::string fileSize(std::int64_t bytes);

/// A whole number with the locale's grouping: "1,234,567".
[[nodiscard]] std::string number(std::int64_t number);

/// How far `date` is from `reference`, in the largest unit of the calendar, in local time, of which at least
/// one lies between them: "3 weeks ago", "in 1 year". The same moment is "in 0 seconds".
[[nodiscard]] std::string relativeDate(Date date, Date reference);

} // namespace Formatters

} // namespace brimvale
