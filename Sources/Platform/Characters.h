#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brimvale {

/// How many characters a reader sees in a text (UTF-8), however many code points each is made of.
/// Thread-safe.
[[nodiscard]] std::size_t perceivedLength(std::string_view text);

/// The text in a form that is the same for all texts which only differ in case, or in how their accents are
/// encoded. What is not UTF-8 stays as it is. Thread-safe.
[[nodiscard]] std::string caseFolded(std::string_view text);

} // namespace brimvale
