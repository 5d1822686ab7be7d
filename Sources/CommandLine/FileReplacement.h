#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "CommandLine/Output.h"

#include <functional>
#include <optional>

namespace brimvale::commandLine {

/// Puts what `write` writes in the place of the file at `url`, or makes it: all of it or, on failure,
/// nothing, for it grows under another name in the same folder. A file that is replaced passes on its
/// permissions, and a link is followed. Into what is no file (a pipe, a device) it is written directly.
[[nodiscard]] std::optional<FileError> replaceFile(const FileURL &url,
                                                   const std::function<void(Output &)> &write);

} // namespace brimvale::commandLine
