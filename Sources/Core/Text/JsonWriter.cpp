#include "Core/Text/JsonWriter.h"

#include "Base/Hex.h"
#include "Base/Text.h"
#include "Core/Text/Decimal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace brimvale {

namespace {

/// The length in bytes of the character at the start of `text` if it must be escaped, otherwise 0. Besides
/// the characters that JSON requires, DEL and the C1 controls are escaped, because a terminal may obey them.
std::size_t escapedLength(std::string_view text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte < 0x20 || byte == '"' || byte == '\\' || byte == 0x7F)
        return 1;
    return byte == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0 ? 2 : 0;
}

std::string escape(std::string_view character) {
    const auto byte = static_cast<unsigned char>(character.back());
    switch (byte) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        constexpr std::string_view digits = "0123456789abcdef";
        return {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 0xF]};
    }
}

/// The member for the digits of the path in the member `name`.
std::string hexName(std::string_view name) {
    return (name == "url" ? "path" : std::string(name)) + "Hex";
}

} // namespace

void JsonWriter::begin(char bracket) {
    separate();
    sink_.write({&bracket, 1});
    open_.push_back(bracket);
    needsComma_ = false;
}

void JsonWriter::end() {
    sink_.write(open_.back() == '{' ? "}" : "]");
    open_.pop_back();
    needsComma_ = true;
    if (open_.empty())
        sink_.write("\n");
}

void JsonWriter::key(std::string_view name) {
    separate();
    writeText(name);
    sink_.write(":");
    needsComma_ = false;
}

void JsonWriter::value(std::string_view bytes) {
    separate();
    if (isValidUtf8(bytes))
        writeText(bytes);
    else
        writeText(displayText(bytes));
}

void JsonWriter::value(std::int64_t number) {
    separate();
    sink_.write(std::to_string(number));
}

void JsonWriter::value(double number) {
    if (!std::isfinite(number))
        return null();
    separate();
    sink_.write(shortestDecimal(number));
}

void JsonWriter::value(bool truth) {
    separate();
    sink_.write(truth ? "true" : "false");
}

void JsonWriter::null() {
    separate();
    sink_.write("null");
}

void JsonWriter::path(std::string_view name, std::string_view bytes) {
    member(name, bytes);
    if (!isValidUtf8(bytes))
        member(hexName(name), hexString(bytes));
}

void JsonWriter::writePaths(std::string_view name, const std::vector<std::string_view> &all) {
    key(name);
    beginArray();
    for (const std::string_view bytes : all)
        value(bytes);
    end();
    if (std::all_of(all.begin(), all.end(), isValidUtf8))
        return;
    key(hexName(name));
    beginArray();
    for (const std::string_view bytes : all) {
        if (isValidUtf8(bytes))
            null();
        else
            value(hexString(bytes));
    }
    end();
}

/// Writes the comma before the next value, if one is needed.
void JsonWriter::separate() {
    if (needsComma_)
        sink_.write(",");
    needsComma_ = true;
}

/// A string in quotes. `text` is well-formed UTF-8.
void JsonWriter::writeText(std::string_view text) {
    sink_.write("\"");
    std::size_t plain = 0; // the length of the start of `text` that needs no escape
    while (plain < text.size()) {
        const std::size_t length = escapedLength(text.substr(plain));
        if (length == 0) {
            ++plain;
            continue;
        }
        sink_.write(text.substr(0, plain));
        sink_.write(escape(text.substr(plain, length)));
        text.remove_prefix(plain + length);
        plain = 0;
    }
    sink_.write(text);
    sink_.write("\"");
}

} // namespace brimvale
