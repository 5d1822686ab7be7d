#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// The version of macOS as far as an update asks for one; its patch number does not count.
struct SystemVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
};

/// The build number that a bundle's text means: decimal digits, with a sign if it likes. 0, so that every
/// published build is newer, for anything else.
[[nodiscard]] std::int64_t buildNumber(const std::optional<std::string> &text);

/// Whether a system of this version is as new as the dotted version `minimum`. Pieces of it that are no
/// number are dropped; a missing minor number counts as 0, and where nothing is left nothing is asked for.
[[nodiscard]] bool systemMeets(std::string_view minimum, const SystemVersion &system);

} // namespace brimvale
