#pragma once

namespace brimvale {

/// Whether a name is "." or "..", with which a system lists a folder itself and the one around it.
[[nodiscard]] constexpr bool isDotEntry(const char *name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace brimvale
