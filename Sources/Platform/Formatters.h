#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <string>

namespace brimvale {

/// Numbers and times in words of the platform, in the user's locale at the first use. UTF-8. Thread-safe.
namespace Formatters {

/// A number of bytes in KB, MB, GB or TB (1 KB = 1,000 bytes), with no, one, two and two fraction digits at
/// the most: "12.35 GB". Zero is "Zero KB".
[[nodiscard]] std::string fileSize(std::int64_t bytes);

/// A whole number with the locale's grouping: "1,234,567".
[[nodiscard]] std::string number(std::int64_t number);

/// The distance from `reference` to `date` in the largest calendar unit, in local time, of which at least one
/// has passed: "3 weeks ago", "in 1 year". The same moment is "in 0 seconds".
[[nodiscard]] std::string relativeDate(Date date, Date reference);

} // namespace Formatters

} // namespace brimvale
