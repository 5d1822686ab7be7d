#pragma once

#include "Base/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// Reads one JSON document (RFC 8259) token by token. Keeps only the open brackets and the current token, so
/// a document may have any length and any depth. A text is the bytes of the document with its escapes
/// replaced; they need not be UTF-8. The first fault ends the reading: every later token is `fault`.
class JsonReader {
public:
    enum class Token {
        beginObject,
        endObject,
        beginArray,
        endArray,
        key,
        text,
        number,
        truth,
        null,
        end,
        fault
    };

    /// Texts and numbers longer than this are faults.
    static constexpr std::size_t longestText = std::size_t{1} << 24;

    /// `source` must outlive the reader.
    explicit JsonReader(ByteSource &source) : source_(source) {}
    JsonReader(const JsonReader &) = delete;
    JsonReader &operator=(const JsonReader &) = delete;

    [[nodiscard]] Token next();

    /// The bytes of the last `key`, `text` or `number`; "true" or "false" for a `truth`.
    [[nodiscard]] const std::string &text() const { return text_; }
    /// The last `number`; nothing where it is not whole or does not fit.
    [[nodiscard]] std::optional<std::int64_t> integer() const;

    /// How many objects and arrays are open.
    [[nodiscard]] std::size_t depth() const { return open_.size(); }

    /// Passes over the rest of a value that began with this token.
    void skip(Token first);

    /// Ends the reading: the document is well-formed, but not what was expected ("a name is missing").
    Token fail(std::string_view what);

    /// What is wrong with the document and where: "Line 3, byte 20: …". Empty where nothing is.
    [[nodiscard]] const std::string &fault() const { return fault_; }

private:
    /// What may follow.
    enum class Expected { value, valueOrEnd, keyOrEnd, key, commaOrEnd, nothing };

    [[nodiscard]] int peek();
    int take();
    [[nodiscard]] int peekAfterSpace();
    Token begin(char bracket, Expected expected, Token token);
    Token end(char bracket);
    Token readKey();
    Token readValue(int first);
    Token readWord(std::string_view word, Token token);
    Token readNumber();
    bool readText();
    bool readEscape();
    bool readCodePoint();
    [[nodiscard]] std::optional<char32_t> readHexUnit();
    [[nodiscard]] Expected afterValue() const;

    ByteSource &source_;
    std::string_view piece_;
    bool isAtEnd_ = false;
    std::int64_t line_ = 1;
    std::int64_t column_ = 0; ///< bytes taken in this line
    std::string open_;        ///< the brackets that are open, outermost first
    Expected expected_ = Expected::value;
    std::string text_;
    std::string fault_;
};

} // namespace brimvale
