#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Starts the tool at an absolute path with these arguments as a process of its own, which goes on when this
/// program has ended and when its terminal is closed. It reads and writes nothing but what it opens itself,
/// and nobody waits for it. An error where it cannot be started.
[[nodiscard]] std::optional<FileError> startDetached(const std::string &executable,
                                                     const std::vector<std::string> &arguments);

} // namespace brimvale
