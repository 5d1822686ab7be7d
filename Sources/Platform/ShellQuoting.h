#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The text as one word for a POSIX shell, which takes every byte of it as it stands.
[[nodiscard]] std::string quotedForShell(std::string_view text);

} // namespace brimvale
