#pragma once

#include <string>

namespace brimvale {

/// What a copy needs to know and to ask of the file system that an absolute path lies on.

/// Writes out everything that waits in memory for the file system of the existing file or folder at `path`,
/// so that its figures are final. What cannot be written is told by nobody here: the copy then lacks it.
void syncFileSystem(const std::string &path);

/// Whether a copy of `source` into the existing folder `folder` shares its blocks instead of taking up more.
/// No on doubt.
[[nodiscard]] bool copiesShareBlocks(const std::string &source, const std::string &folder);

} // namespace brimvale
