#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The first character, as a reader sees it, of well-formed UTF-8, in capitals: "É" of "élan", a whole flag
/// of two code points; empty for empty text.
[[nodiscard]] std::string capitalInitial(std::string_view text);

} // namespace brimvale
