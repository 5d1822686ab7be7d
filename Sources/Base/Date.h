#pragma once

#include <chrono>
#include <string>

namespace brimvale {

/// A moment on the system clock (UTC, nanoseconds), as file times are.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

/// The present moment.
[[nodiscard]] Date now();

/// The moment in ISO 8601, in UTC and to the second: "2026-03-01T09:30:00Z".
[[nodiscard]] std::string iso8601(Date date);

} // namespace brimvale
