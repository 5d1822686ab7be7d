#include "Core/Text/JsonReader.h"

#include <charconv>
#include <system_error>

namespace brimvale {

namespace {

constexpr int endOfDocument = -1;

void appendUtf8(std::string &bytes, char32_t code) {
    const auto continuation = [&](int shift) { bytes += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        bytes += static_cast<char>(code);
    } else if (code < 0x800) {
        bytes += static_cast<char>(0xC0 | (code >> 6));
        continuation(0);
    } else if (code < 0x10000) {
        bytes += static_cast<char>(0xE0 | (code >> 12));
        continuation(6);
        continuation(0);
    } else {
        bytes += static_cast<char>(0xF0 | (code >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

bool isDigit(int byte) {
    return byte >= '0' && byte <= '9';
}

} // namespace

JsonReader::Token JsonReader::fail(std::string_view what) {
    if (fault_.empty())
        fault_.append("Line ")
            .append(std::to_string(line_))
            .append(", byte ")
            .append(std::to_string(column_))
            .append(": ")
            .append(what)
            .append(".");
    return Token::fault;
}

std::optional<std::int64_t> JsonReader::integer() const {
    std::int64_t number = 0;
    const char *last = text_.data() + text_.size();
    const auto [rest, error] = std::from_chars(text_.data(), last, number);
    return error == std::errc() && rest == last ? std::optional(number) : std::nullopt;
}

int JsonReader::peek() {
    while (piece_.empty() && !isAtEnd_) {
        const std::optional<std::string_view> piece = source_.next();
        if (!piece)
            fail("reading failed here");
        piece_ = piece.value_or(std::string_view());
        isAtEnd_ = piece_.empty();
    }
    return piece_.empty() ? endOfDocument : static_cast<unsigned char>(piece_.front());
}

int JsonReader::take() {
    const int byte = peek();
    if (byte == endOfDocument)
        return byte;
    piece_.remove_prefix(1);
    ++column_;
    if (byte == '\n') {
        ++line_;
        column_ = 0;
    }
    return byte;
}

int JsonReader::peekAfterSpace() {
    int byte = peek();
    while (byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t') {
        take();
        byte = peek();
    }
    return byte;
}

JsonReader::Expected JsonReader::afterValue() const {
    return open_.empty() ? Expected::nothing : Expected::commaOrEnd;
}

JsonReader::Token JsonReader::next() {
    if (!fault_.empty())
        return Token::fault;
    int byte = peekAfterSpace();
    if (expected_ == Expected::nothing)
        return byte == endOfDocument && fault_.empty() ? Token::end : fail("something follows the document");
    if (byte == endOfDocument)
        return fail("the document ends too early");
    if (expected_ == Expected::commaOrEnd) {
        if (byte == ']' || byte == '}')
            return end(static_cast<char>(byte));
        if (byte != ',')
            return fail("a comma or a closing bracket is missing");
        take();
        byte = peekAfterSpace();
        expected_ = open_.back() == '{' ? Expected::key : Expected::value;
    }
    if (expected_ == Expected::keyOrEnd && byte == '}')
        return end('}');
    if (expected_ == Expected::valueOrEnd && byte == ']')
        return end(']');
    if (expected_ == Expected::key || expected_ == Expected::keyOrEnd)
        return readKey();
    return readValue(byte);
}

JsonReader::Token JsonReader::begin(char bracket, Expected expected, Token token) {
    take();
    open_ += bracket;
    expected_ = expected;
    return token;
}

JsonReader::Token JsonReader::end(char bracket) {
    take();
    if (open_.back() != (bracket == '}' ? '{' : '['))
        return fail("this bracket does not close the last one");
    open_.pop_back();
    expected_ = afterValue();
    return bracket == '}' ? Token::endObject : Token::endArray;
}

JsonReader::Token JsonReader::readKey() {
    if (peek() != '"')
        return fail("the name of a member is missing");
    if (!readText())
        return Token::fault;
    if (peekAfterSpace() != ':')
        return fail("a colon is missing");
    take();
    expected_ = Expected::value;
    return Token::key;
}

JsonReader::Token JsonReader::readValue(int first) {
    if (first == '{')
        return begin('{', Expected::keyOrEnd, Token::beginObject);
    if (first == '[')
        return begin('[', Expected::valueOrEnd, Token::beginArray);
    expected_ = afterValue();
    if (first == '"')
        return readText() ? Token::text : Token::fault;
    if (first == '-' || isDigit(first))
        return readNumber();
    if (first == 't')
        return readWord("true", Token::truth);
    if (first == 'f')
        return readWord("false", Token::truth);
    if (first == 'n')
        return readWord("null", Token::null);
    return fail("a value is missing");
}

JsonReader::Token JsonReader::readWord(std::string_view word, Token token) {
    for (const char expected : word)
        if (take() != static_cast<unsigned char>(expected))
            return fail("this is not a JSON value");
    text_ = word;
    return token;
}

JsonReader::Token JsonReader::readNumber() {
    text_.clear();
    for (int byte = peek();
         isDigit(byte) || byte == '-' || byte == '+' || byte == '.' || byte == 'e' || byte == 'E';
         byte = peek()) {
        if (text_.size() == longestText)
            return fail("a number is too long");
        text_ += static_cast<char>(take());
    }
    return Token::number;
}

/// Also takes bytes that are not UTF-8, but no controls.
bool JsonReader::readText() {
    take();
    text_.clear();
    for (;;) {
        // Most of a text needs no look at its bytes one by one.
        std::size_t plain = 0;
        while (plain < piece_.size() && piece_[plain] != '"' && piece_[plain] != '\\' &&
               static_cast<unsigned char>(piece_[plain]) >= 0x20)
            ++plain;
        text_.append(piece_.substr(0, plain));
        piece_.remove_prefix(plain);
        column_ += static_cast<std::int64_t>(plain);
        if (text_.size() > longestText)
            return fail("a text is too long"), false;
        const int byte = peek();
        if (byte == '"')
            return take(), true;
        if (byte == endOfDocument)
            return fail("a text does not end"), false;
        if (byte == '\\' && !readEscape())
            return false;
        if (byte < 0x20)
            return fail("a text contains a control character"), false;
    }
}

bool JsonReader::readEscape() {
    take();
    const int byte = take();
    switch (byte) {
    case '"':
    case '\\':
    case '/':
        text_ += static_cast<char>(byte);
        return true;
    case 'b':
        text_ += '\b';
        return true;
    case 'f':
        text_ += '\f';
        return true;
    case 'n':
        text_ += '\n';
        return true;
    case 'r':
        text_ += '\r';
        return true;
    case 't':
        text_ += '\t';
        return true;
    case 'u':
        return readCodePoint();
    default:
        return fail("there is no such escape"), false;
    }
}

std::optional<char32_t> JsonReader::readHexUnit() {
    char32_t unit = 0;
    for (int i = 0; i < 4; ++i) {
        const int byte = take();
        const int lower = byte | 0x20;
        if (isDigit(byte))
            unit = unit * 16 + static_cast<char32_t>(byte - '0');
        else if (lower >= 'a' && lower <= 'f')
            unit = unit * 16 + static_cast<char32_t>(lower - 'a' + 10);
        else
            return std::nullopt;
    }
    return unit;
}

/// A half of a pair without the other one is no character.
bool JsonReader::readCodePoint() {
    std::optional<char32_t> code = readHexUnit();
    if (code && *code >= 0xD800 && *code < 0xDC00 && take() == '\\' && take() == 'u') {
        const std::optional<char32_t> low = readHexUnit();
        code = low && *low >= 0xDC00 && *low < 0xE000
                   ? std::optional(0x10000 + ((*code - 0xD800) << 10) + (*low - 0xDC00))
                   : std::nullopt;
    }
    if (!code || (*code >= 0xD800 && *code < 0xE000))
        return fail("there is no such character"), false;
    appendUtf8(text_, *code);
    return true;
}

void JsonReader::skip(Token first) {
    if (first != Token::beginObject && first != Token::beginArray)
        return;
    const std::size_t around = depth() - 1;
    while (depth() > around && next() != Token::fault) {
    }
}

} // namespace brimvale
