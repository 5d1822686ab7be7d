#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// Whether the bytes are well-formed UTF-8 (Unicode 15, table 3-7).
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// Bytes as text for display: every ill-formed part of UTF-8 becomes one U+FFFD. Never build a path from it.
[[nodiscard]] std::string displayText(std::string_view bytes);

/// How many characters (code points) there are in well-formed UTF-8.
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The text without white space (ASCII) at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// An ASCII letter in lower case; every other byte as it is.
[[nodiscard]] constexpr char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Bytes as part of a URI (RFC 3986): every byte but ASCII letters, digits and "/-._~" as "%" and two digits.
[[nodiscard]] std::string percentEncoded(std::string_view bytes);

/// The bytes of such text, whichever bytes were encoded; nothing where two digits do not follow a "%".
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

} // namespace brimvale
