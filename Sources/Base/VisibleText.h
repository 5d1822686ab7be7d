#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// Bytes as one line in which every character can be seen, for names and paths in the window and on the
/// terminal. Ill-formed UTF-8 becomes U+FFFD, an ASCII control its symbol ("␊"), and any other character
/// without a shape (a control, a line separator, a change of the writing direction, a zero-width character)
/// its number: "\u{200B}". A joiner or variation selector stays where it shapes its neighbours: in an emoji,
/// after the virama of an Indic script, between Arabic letters. Never build a path from it.
[[nodiscard]] std::string visibleText(std::string_view bytes);

} // namespace brimvale
