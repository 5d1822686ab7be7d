#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// Puts a file with this content at an absolute path, in the place of any file or link that is there: all of
/// it or, on failure, nothing, for it grows under another name in the same folder. It is on the disk when
/// this returns.
[[nodiscard]] std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content);

} // namespace brimvale
