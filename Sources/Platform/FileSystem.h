#pragma once

#include <string>

namespace brimvale {

/// Questions and requests to the file system of an absolute path, for copying.

/// Writes everything in memory to the disk for the file system of the existing item at `path`, so that its
/// figures are final. Errors are not reported: the copy then lacks the data and fails its check.
void syncFileSystem(const std::string &path);

/// Whether a copy of `source` in the existing folder `folder` shares its blocks and takes no extra space.
/// False when unsure.
[[nodiscard]] bool copiesShareBlocks(const std::string &source, const std::string &folder);

} // namespace brimvale
