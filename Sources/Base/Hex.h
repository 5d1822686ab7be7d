#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// The bytes as hexadecimal digits, two a byte, in lower case.
[[nodiscard]] std::string hexString(std::string_view bytes);

/// The bytes that hexadecimal digits of either case stand for; nothing for an odd number of digits or any
/// other character.
[[nodiscard]] std::optional<std::string> bytesOfHex(std::string_view digits);

} // namespace brimvale
