#pragma once

#include <string_view>

namespace brimvale {

/// Whether a property list is harmless for a parser that recurses into it and builds all of it in memory.
/// What is not well-formed may get either answer. Fast, in memory that grows with the limits only.

/// An XML property list: few enough containers, so that they cannot be nested deeply, and few enough
/// character references, each of which the parser replaces by moving the rest of its text.
[[nodiscard]] bool isModestXmlPropertyList(std::string_view bytes);

/// A binary property list ("bplist00"), which refers to its objects by number, so that few bytes can stand
/// for a tree of any size: what the tree comes to, and its depth.
[[nodiscard]] bool isModestBinaryPropertyList(std::string_view bytes);

} // namespace brimvale
