#pragma once

#include <cstddef>
#include <string_view>
#include <sys/types.h>

namespace brimvale {

// The system's calls for extended attributes of the entry at a path. Links are not followed. They return the
// number of bytes, also when `size` is 0, and −1 with errno set on failure.

/// The names, each with a zero byte behind it.
[[nodiscard]] ssize_t listAttributes(const char *path, char *buffer, std::size_t size);

/// The value of one.
[[nodiscard]] ssize_t readAttribute(const char *path, const char *name, char *buffer, std::size_t size);

/// Whether the system sets this attribute itself.
[[nodiscard]] bool belongsToSystem(std::string_view name);

} // namespace brimvale
