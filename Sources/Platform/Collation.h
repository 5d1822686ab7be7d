#pragma once

#include <string_view>

namespace brimvale {

/// Less than 0, 0 or more than 0, as `a` stands before, with or behind `b` (UTF-8) in a list for people: by
/// the rules of the user's language, whatever the case, with runs of digits as numbers ("file2" before
/// "file10"). Texts that only differ in what that leaves out have an order too: lower case first, then fewer
/// leading zeros. Thread-safe.
[[nodiscard]] int compareAsInFinder(std::string_view a, std::string_view b);

} // namespace brimvale
