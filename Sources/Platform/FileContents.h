#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace brimvale {

/// The bytes of the file at an absolute path of any length; links are followed. Nothing where it is no plain
/// file, cannot be read, or has more than `mostBytes` bytes. Never waits for a writer, as a pipe would have
/// it.
[[nodiscard]] std::optional<std::string> contentsOfFile(const std::string &path, std::size_t mostBytes);

} // namespace brimvale
