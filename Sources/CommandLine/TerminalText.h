#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// Bytes as text that only shows itself on a terminal, always a single line: `visibleText`.
[[nodiscard]] std::string terminalText(std::string_view bytes);

/// The same, in quotation marks.
[[nodiscard]] std::string inQuotes(std::string_view bytes);

/// `text` in fainter letters, for an `Output` that `isStyled`.
[[nodiscard]] std::string faint(std::string_view text);

/// The number of characters in "999.99 GB": the width of a formatted size below 1,000 TB.
constexpr std::size_t usualSizeWidth = 9;

/// `text`, padded with spaces on the left to `width` characters.
[[nodiscard]] std::string rightAligned(std::string_view text, std::size_t width);

/// The end of `text` (well-formed UTF-8) after "…", at most `columns` wide on a terminal; the whole text if
/// it fits. A character that may be two columns wide counts as two.
[[nodiscard]] std::string endOfText(std::string_view text, std::size_t columns);

} // namespace brimvale::commandLine
