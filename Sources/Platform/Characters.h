#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brimvale {

/// The number of characters a reader sees in a text (UTF-8); each may have several code points. Thread-safe.
[[nodiscard]] std::size_t perceivedLength(std::string_view text);

/// A form of the text that is equal for texts that differ only in case or in the encoding of accents. Bytes
/// that are not UTF-8 stay unchanged. Thread-safe.
[[nodiscard]] std::string caseFolded(std::string_view text);

} // namespace brimvale
