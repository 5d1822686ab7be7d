#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Starts the tool at an absolute path as an independent process. It keeps running when this program ends or
/// the terminal is closed, has no standard streams, and is not waited for. An error where it cannot be
/// started.
[[nodiscard]] std::optional<FileError> startDetached(const std::string &executable,
                                                     const std::vector<std::string> &arguments);

} // namespace brimvale
