#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace brimvale {

/// The bytes of the file at an absolute path of any length; links are followed. Nothing where it is not a
/// regular file, cannot be read, or is longer than `mostBytes`. Never blocks on a pipe.
[[nodiscard]] std::optional<std::string> contentsOfFile(const std::string &path, std::size_t mostBytes);

/// The same for an open file, from where it was read to. It stays open. Opened with O_NONBLOCK, it never
/// blocks.
[[nodiscard]] std::optional<std::string> contentsOfOpenFile(int descriptor, std::size_t mostBytes);

} // namespace brimvale
