#include "Base/Hex.h"

#include <array>
#include <cstddef>

namespace brimvale {

namespace {

constexpr int noDigit = -1;

/// The value of every byte as a hexadecimal digit. A table, because databases print hundreds of megabytes of
/// them.
constexpr std::array<int, 256> digitValues = [] {
    std::array<int, 256> values{};
    values.fill(noDigit);
    constexpr std::string_view digits = "0123456789abcdef", capitals = "0123456789ABCDEF";
    for (std::size_t i = 0; i < digits.size(); ++i)
        values[static_cast<unsigned char>(digits[i])] = values[static_cast<unsigned char>(capitals[i])] =
            static_cast<int>(i);
    return values;
}();

int valueOf(char digit) {
    return digitValues[static_cast<unsigned char>(digit)];
}

} // namespace

std::string hexString(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char one : bytes) {
        const auto byte = static_cast<unsigned char>(one);
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::optional<std::string> bytesOfHex(std::string_view digits) {
    if (digits.size() % 2 != 0)
        return std::nullopt;
    std::string bytes(digits.size() / 2, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int high = valueOf(digits[2 * i]);
        const int low = valueOf(digits[2 * i + 1]);
        if (high == noDigit || low == noDigit)
            return std::nullopt;
        bytes[i] = static_cast<char>(high * 16 + low);
    }
    return bytes;
}

} // namespace brimvale
