#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The text as one word for a POSIX shell, which then takes every byte literally.
[[nodiscard]] std::string quotedForShell(std::string_view text);

/// The same to show to the user, who copies it: bytes that would not be shown as themselves are written as
/// octal numbers in $'…', which the usual shells understand (POSIX.1-2024).
[[nodiscard]] std::string shownShellWord(std::string_view text);

} // namespace brimvale
