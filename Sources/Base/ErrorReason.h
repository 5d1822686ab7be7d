#pragma once

#include <string>

namespace brimvale {

/// Why a system call failed on an item, in words that follow "because": "the disk reported an error". For
/// unusual numbers, the system's own words. `errorNumber` is an errno.
[[nodiscard]] std::string reasonOfError(int errorNumber);

} // namespace brimvale
