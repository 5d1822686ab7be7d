#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The AppleScript that runs a shell command after asking for an administrator's password.
[[nodiscard]] std::string administratorScript(std::string_view command);

} // namespace brimvale
