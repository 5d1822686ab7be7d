#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Platform/RemovalProgress.h"

#include <optional>

namespace brimvale {

/// Removes the item for good, a folder with everything in it. No link is followed, neither the item itself
/// nor any below it, and what is exchanged for a link meanwhile is not followed either. No mount point is
/// entered, whatever device is behind it: meeting one is an error (POSIX EBUSY), and what is behind it stays.
/// Paths may be of any length, trees of any depth; on macOS the path of the item itself has less than 1,024
/// bytes, and a longer one is an error.
///
/// Ends at the first error, and answers it: the code of the file functions of macOS with the POSIX error
/// beneath it, and a sentence that names the item, whichever entry in it stood in the way. What was removed
/// before is gone; after it nothing more is. An entry that somebody else removes meanwhile is no error, an
/// item that is not there to begin with is one (code 4). A cancelled removal is the error 3072.
///
/// Blocks, for large trees for many seconds. Thread-safe; works with several threads of its own.
[[nodiscard]] std::optional<FileError> removeItem(const FileURL &item, RemovalProgress *progress = nullptr);

} // namespace brimvale
