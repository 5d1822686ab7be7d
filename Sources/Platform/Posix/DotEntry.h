#pragma once

namespace brimvale {

/// Whether a name is "." or "..", the entries for a folder itself and for its parent.
[[nodiscard]] constexpr bool isDotEntry(const char *name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace brimvale
