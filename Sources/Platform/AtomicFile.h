#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

// A file appears under its name all at once. It is written under another name in the same folder, and takes
// its place only when it is complete and on the disk. On failure nothing has changed.

/// Puts a file with this content at an absolute path, in the place of any file or link that is there.
[[nodiscard]] std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content);

/// The same, but a link to a file is followed, and a file that is replaced passes on its permissions. What is
/// no file (a pipe, a device) is written to directly.
[[nodiscard]] std::optional<FileError> replaceFileAtomically(const std::string &path,
                                                             std::string_view content);

} // namespace brimvale
