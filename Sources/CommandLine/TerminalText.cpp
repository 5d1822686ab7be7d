#include "CommandLine/TerminalText.h"

#include "Base/Text.h"

namespace brimvale::commandLine {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The bytes of the first character of `text`, which is well-formed and not empty.
std::string_view firstCharacter(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && isContinuation(text[length]))
        ++length;
    return text.substr(0, length);
}

char32_t codePoint(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    if (character.size() == 1)
        return lead;
    char32_t code = lead & (0xFFU >> (character.size() + 1));
    for (const char byte : character.substr(1))
        code = (code << 6) | (static_cast<unsigned char>(byte) & 0x3FU);
    return code;
}

/// The visible symbol for an ASCII control (U+2400 and up, in UTF-8).
std::string controlPicture(char32_t control) {
    return {'\xE2', '\x90', static_cast<char>(0x80 + (control == 0x7F ? 0x21 : control))};
}

} // namespace

std::string terminalText(std::string_view bytes) {
    const std::string displayed = displayText(bytes);
    std::string_view rest = displayed;
    std::string text;
    text.reserve(rest.size());
    while (!rest.empty()) {
        const std::string_view character = firstCharacter(rest);
        rest.remove_prefix(character.size());
        const char32_t code = codePoint(character);
        if (code < 0x20 || code == 0x7F)
            text += controlPicture(code);
        else
            text += actsUnseen(code) ? std::string_view("\uFFFD") : character;
    }
    return text;
}

std::string inQuotes(std::string_view bytes) {
    return std::string("\"").append(terminalText(bytes)).append("\"");
}

std::string faint(std::string_view text) {
    return std::string("\033[2m").append(text).append("\033[22m");
}

std::string rightAligned(std::string_view text, std::size_t width) {
    const std::size_t count = characterCount(text);
    return std::string(width > count ? width - count : 0, ' ').append(text);
}

std::string endOfText(std::string_view text, std::size_t columns) {
    std::size_t used = 0;
    std::size_t start = text.size(); // of the part that fits without an ellipsis
    std::size_t shortened = start;   // of the part that fits after the ellipsis
    while (start > 0) {
        std::size_t before = start - 1;
        while (isContinuation(text[before]))
            --before;
        // No character below U+1100 is wide.
        used += codePoint(text.substr(before, start - before)) < 0x1100 ? 1U : 2U;
        if (used > columns)
            return columns == 0 ? std::string() : "…" + std::string(text.substr(shortened));
        start = before;
        if (used < columns)
            shortened = before;
    }
    return std::string(text);
}

} // namespace brimvale::commandLine
