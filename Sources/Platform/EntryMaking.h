#pragma once

#include "Base/FileError.h"

#include <optional>
#include <string>

namespace brimvale {

/// Makes a folder at an absolute path that only its owner can list or enter. The error is EEXIST if anything
/// of that name exists.
[[nodiscard]] std::optional<FileError> makePrivateFolder(const std::string &path);

/// Copies the symbolic link at `link` to `place` (absolute paths), with its modification time and, if
/// permitted, its owner. An error if anything exists at `place`, or if there is no link at `link`.
[[nodiscard]] std::optional<FileError> copyLink(const std::string &link, const std::string &place);

} // namespace brimvale
