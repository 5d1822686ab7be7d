#include "Base/VisibleText.h"

#include "Base/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace brimvale {

namespace {

struct Range {
    char32_t first, last;
};

bool isIn(const auto &ranges, char32_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [=](const Range &range) {
        return range.first <= character && character <= range.last;
    });
}

/// C1 controls, line separators, annotations, and what Unicode calls default ignorable: zero-width characters
/// and changes of the writing direction.
constexpr std::array<Range, 18> shapeless = {
    Range{0x80, 0x9F},  {0xAD, 0xAD},       {0x34F, 0x34F},    {0x61C, 0x61C},   {0x115F, 0x1160},
    {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},  {0x2028, 0x202E}, {0x2060, 0x206F},
    {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

/// Where emoji are, with their skin tones.
constexpr std::array<Range, 10> pictographs = {
    Range{0xA9, 0xA9}, {0xAE, 0xAE},     {0x203C, 0x203C}, {0x2049, 0x2049}, {0x2122, 0x2122},
    {0x2139, 0x2139},  {0x2190, 0x2BFF}, {0x3030, 0x303D}, {0x3297, 0x3299}, {0x1F000, 0x1FAFF}};

constexpr std::array<Range, 10> viramas = {
    Range{0x94D, 0x94D}, {0x9CD, 0x9CD}, {0xA4D, 0xA4D}, {0xACD, 0xACD}, {0xB4D, 0xB4D},
    {0xBCD, 0xBCD},      {0xC4D, 0xC4D}, {0xCCD, 0xCCD}, {0xD4D, 0xD4D}, {0xDCA, 0xDCA}};

constexpr std::array<Range, 4> arabicLetters = {
    Range{0x620, 0x63F}, {0x641, 0x64A}, {0x66E, 0x6D3}, {0x6FA, 0x6FF}};

/// Arabic letters that the next letter is never joined to.
constexpr std::array<Range, 12> endingLetters = {
    Range{0x621, 0x625}, {0x627, 0x627}, {0x629, 0x629}, {0x62F, 0x632}, {0x648, 0x648}, {0x671, 0x677},
    {0x688, 0x699},      {0x6C0, 0x6C0}, {0x6C3, 0x6CB}, {0x6CD, 0x6CD}, {0x6CF, 0x6CF}, {0x6D2, 0x6D3}};

constexpr char32_t nonJoiner = 0x200C, joiner = 0x200D;
constexpr char32_t textStyle = 0xFE0E, emojiStyle = 0xFE0F, keycap = 0x20E3;

/// Whether a character without a shape shapes its neighbours.
bool shapesNeighbours(char32_t before, char32_t character, char32_t after) {
    switch (character) {
    case textStyle:
    case emojiStyle:
        return isIn(pictographs, before) || after == keycap;
    case joiner:
        return isIn(viramas, before) ||
               ((isIn(pictographs, before) || before == emojiStyle) && isIn(pictographs, after));
    case nonJoiner:
        return isIn(viramas, before) ||
               (isIn(arabicLetters, before) && !isIn(endingLetters, before) && isIn(arabicLetters, after));
    default:
        return false;
    }
}

/// The first character of well-formed UTF-8 that is not empty, and its length in bytes.
struct Decoded {
    char32_t character;
    std::size_t length;
};

Decoded decode(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (const char byte : text.substr(1, length - 1))
        character = (character << 6) | (static_cast<unsigned char>(byte) & 0x3FU);
    return {character, length};
}

/// The symbol for an ASCII control (U+2400 and up, in UTF-8).
std::string controlSymbol(char32_t control) {
    return {'\xE2', '\x90', static_cast<char>(0x80 + (control == 0x7F ? 0x21 : control))};
}

std::string numberOf(char32_t character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string number;
    for (char32_t rest = character; rest != 0 || number.size() < 4; rest >>= 4)
        number.insert(number.begin(), digits[rest & 0xF]);
    return "\\u{" + number + "}";
}

bool isPlain(char byte) {
    return byte >= ' ' && byte < '\x7F';
}

} // namespace

std::string visibleText(std::string_view bytes) {
    if (std::all_of(bytes.begin(), bytes.end(), isPlain))
        return std::string(bytes);
    const std::string displayed = displayText(bytes);
    std::string text;
    text.reserve(displayed.size());
    char32_t before = 0; // the last character, if it was kept
    for (std::string_view rest = displayed; !rest.empty();) {
        const auto [character, length] = decode(rest);
        const std::string_view same = rest.substr(0, length);
        rest.remove_prefix(length);
        const char32_t after = rest.empty() ? 0 : decode(rest).character;
        const bool isControl = character < 0x20 || character == 0x7F;
        const bool isKept =
            !isControl && (!isIn(shapeless, character) || shapesNeighbours(before, character, after));
        text += isKept ? std::string(same) : isControl ? controlSymbol(character) : numberOf(character);
        before = isKept ? character : 0;
    }
    return text;
}

} // namespace brimvale
