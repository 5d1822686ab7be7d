#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

// A file appears under its name all at once. It is written under another name in the same folder, and renamed
// when it is complete and on the disk. On failure nothing has changed.

/// Writes a file with this content at an absolute path, and replaces any file or link there.
[[nodiscard]] std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content);

/// The same, but a link to a file is followed, and a replaced file passes on its permissions. Other entries
/// (a pipe, a device) are written to directly.
[[nodiscard]] std::optional<FileError> replaceFileAtomically(const std::string &path,
                                                             std::string_view content);

} // namespace brimvale
