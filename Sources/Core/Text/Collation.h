#pragma once

#include <string_view>

class QCollatorSortKey;

namespace brimvale {

// How names are ordered in lists for people: by the rules of the user's language, whatever the case, with
// runs of digits as numbers ("file2" before "file10"). Thread-safe.

/// Less than 0, 0 or more than 0, as `a` stands before, with or behind `b` (UTF-8). Texts that only differ in
/// what the rules leave out have an order too: lower case first, then fewer leading zeros.
[[nodiscard]] int compareAsInFinder(std::string_view a, std::string_view b);

/// A key that orders by the same rules, and is the same for texts that only differ in what they leave out.
/// For many names: a key is made once for each.
[[nodiscard]] QCollatorSortKey collationKey(std::string_view text);

} // namespace brimvale
