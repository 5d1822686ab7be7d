#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The text as one word for a POSIX shell, which then takes every byte literally.
[[nodiscard]] std::string quotedForShell(std::string_view text);

} // namespace brimvale
