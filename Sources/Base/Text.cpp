#include "Base/Text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace brimvale {

namespace {

struct Sequence {
    std::size_t length; ///< bytes of one character, or of one ill-formed part
    bool isWellFormed;
};

/// The sequence at the start of `bytes`, which is not empty. An ill-formed part ends before the first byte
/// that cannot continue it, as Unicode recommends for replacement.
Sequence firstSequence(std::string_view bytes) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80)
        return {1, true};
    if (lead < 0xC2 || lead > 0xF4)
        return {1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    // The range of the second byte excludes overlong forms, surrogates and values above U+10FFFF.
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i) {
        if (i == bytes.size())
            return {i, false};
        const unsigned char byte = byteAt(i);
        if (byte < (i == 1 ? low : 0x80) || byte > (i == 1 ? high : 0xBF))
            return {i, false};
    }
    return {length, true};
}

} // namespace

bool isValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const Sequence sequence = firstSequence(bytes);
        if (!sequence.isWellFormed)
            return false;
        bytes.remove_prefix(sequence.length);
    }
    return true;
}

std::string displayText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Sequence sequence = firstSequence(bytes);
        text += sequence.isWellFormed ? bytes.substr(0, sequence.length) : std::string_view("\uFFFD");
        bytes.remove_prefix(sequence.length);
    }
    return text;
}

std::size_t characterCount(std::string_view text) {
    const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isFirstByte));
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string percentEncoded(std::string_view bytes) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (plain.find(byte) != std::string_view::npos)
            text.push_back(byte);
        else
            text.append({'%', digits[value >> 4U], digits[value & 15U]});
    }
    return text;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes.push_back(text[i]);
            continue;
        }
        const std::string_view digits = text.substr(i + 1, 2);
        int value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2 || digits.front() == '-')
            return std::nullopt;
        bytes.push_back(static_cast<char>(value));
        i += digits.size();
    }
    return bytes;
}

} // namespace brimvale
