#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

/// Where and when a tree was scanned. Of a tree that was read from a file, this is what the file says.
struct ScanOrigin {
    std::string program = {};      ///< with its version
    std::string host = {};         ///< the machine; empty where the file does not say it
    std::optional<Date> date = {}; ///< to the second
    std::int64_t unreadable = 0;   ///< entries that could not be read

    /// The origin of a scan that ends now on this machine.
    [[nodiscard]] static ScanOrigin here(std::int64_t unreadable);
};

/// Seconds since 1970, and back; nothing for a moment before 1970 or far in the future.
[[nodiscard]] std::int64_t secondsOf(Date date);
[[nodiscard]] std::optional<Date> dateOfSeconds(std::int64_t seconds);

} // namespace brimvale
