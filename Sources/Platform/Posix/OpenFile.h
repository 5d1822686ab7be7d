#pragma once

#include "Base/Date.h"

#include <cstdint>

struct stat;

namespace brimvale {

/// Makes the next read of these bytes of the open file come from the disk, where the system allows it for
/// bytes that are already written out.
void readFromDisk(int descriptor, std::int64_t start, std::int64_t count);

/// When the content was last changed.
[[nodiscard]] Date modificationDate(const struct stat &record);

/// When the content or anything about the file (its name, permissions or dates) was last changed.
[[nodiscard]] Date statusChangeDate(const struct stat &record);

/// The date of that many seconds and nanoseconds; the nearest possible one if it is out of range.
[[nodiscard]] constexpr Date dateOf(std::int64_t seconds, std::int64_t nanoseconds) {
    constexpr std::int64_t farthest = 9'000'000'000; // as far as nanoseconds reach
    if (seconds < -farthest || seconds > farthest)
        return seconds < 0 ? Date::min() : Date::max();
    return Date(std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds));
}

} // namespace brimvale
