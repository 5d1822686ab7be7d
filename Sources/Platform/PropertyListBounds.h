#pragma once

#include <string_view>

namespace brimvale {

/// Whether a property list is harmless for a parser that recurses and builds all of it in memory. A list that
/// is not well-formed may get either answer. Fast, with bounded memory.

/// An XML property list: few enough containers, so they cannot be nested deeply, and few enough character
/// references, because the parser moves the rest of the text for each.
[[nodiscard]] bool isModestXmlPropertyList(std::string_view bytes);

/// A binary property list ("bplist00"). It refers to its objects by number, so a few bytes can stand for a
/// tree of any size: this bounds the size and depth of that tree.
[[nodiscard]] bool isModestBinaryPropertyList(std::string_view bytes);

} // namespace brimvale
