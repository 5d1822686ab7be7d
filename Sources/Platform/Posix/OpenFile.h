#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>

struct stat;

namespace brimvale {

struct ItemIdentity;

/// The flags that open a folder only to reach its entries. The user needs no permission to read it. Where the
/// folder waits to have something mounted on it, that is mounted.
[[nodiscard]] int passThroughFlags();

/// The path of the file with this descriptor, without links in it; empty where the system does not report it.
[[nodiscard]] std::string pathOf(int file);

/// Which item the entry `name` of an open folder is, links not followed; nothing, with errno set, on failure.
[[nodiscard]] std::optional<ItemIdentity> identityOfEntry(int folder, const char *name);

/// Makes the next read of these bytes of the open file come from the disk, where the system allows it for
/// bytes that are already written out.
void readFromDisk(int descriptor, std::int64_t start, std::int64_t count);

/// Opens the entry `name` of an open folder to read it, if it is a file: a link is not followed, and a pipe
/// without a writer does not block. Where the system allows it, the date of the last access stays as it is.
[[nodiscard]] int openWithoutTrace(int folder, const char *name);

/// Like pread(2). What had to be read from the disk is not kept in memory, where the system allows it.
[[nodiscard]] ssize_t readWithoutTrace(int descriptor, std::span<char> buffer, std::int64_t offset);

/// Nanoseconds since 1970; dates out of range wrap around, which only matters for showing them.
[[nodiscard]] constexpr std::int64_t nanosecondsOf(std::int64_t seconds, std::int64_t nanoseconds) {
    constexpr std::uint64_t perSecond = 1'000'000'000;
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds) * perSecond +
                                     static_cast<std::uint64_t>(nanoseconds));
}

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
