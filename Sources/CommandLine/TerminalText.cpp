#include "CommandLine/TerminalText.h"

#include "Base/Text.h"
#include "Base/VisibleText.h"

namespace brimvale::commandLine {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
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

} // namespace

std::string terminalText(std::string_view bytes) {
    return visibleText(bytes);
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
