#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// Bytes as text that shows itself on a terminal and does nothing else: like `displayText`, and every
/// character that would act instead of being seen (a control, a line separator, a change of the writing
/// direction) is replaced by one that can be seen. Always a single line.
[[nodiscard]] std::string terminalText(std::string_view bytes);

/// The same, in quotation marks.
[[nodiscard]] std::string inQuotes(std::string_view bytes);

/// `text` in fainter letters, for an output that `isStyled`.
[[nodiscard]] std::string faint(std::string_view text);

/// The characters of "999.99 GB": as wide as a formatted size gets below 1,000 TB.
constexpr std::size_t usualSizeWidth = 9;

/// `text` with spaces before it, up to `width` characters.
[[nodiscard]] std::string rightAligned(std::string_view text, std::size_t width);

/// The end of `text` (well-formed UTF-8) behind "…", so that it takes `columns` of a terminal at most; all of
/// it where there is room. A character that may be two columns wide counts as two.
[[nodiscard]] std::string endOfText(std::string_view text, std::size_t columns);

} // namespace brimvale::commandLine
