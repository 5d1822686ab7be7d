#pragma once

#include "Base/FileError.h"
#include "Platform/OpenedItem.h"
#include "Platform/RemovalProgress.h"

#include <optional>

namespace brimvale {

/// Deletes the item permanently, a folder with all its contents. Only the item that was opened is deleted:
/// where another one has taken its name, that is an error (POSIX ESTALE). No link is followed: not the item
/// itself, none below it, and none swapped in during the removal. No mount point is entered, even of the same
/// device: meeting one is an error (POSIX EBUSY), and its contents stay. Paths may have any length and trees
/// any depth. No flag is cleared: a locked item, and one in a locked folder, is an error (POSIX EPERM).
///
/// Stops at the first error and returns it: the code of the macOS file functions with the POSIX error
/// underneath, and a sentence that names the item. Where an entry inside it caused the error, the error has
/// its path. Everything removed before stays removed. An entry that another program removes during the
/// removal is no error; an item missing from the start is one (code 4). A cancelled removal is the error
/// 3072.
///
/// Blocks, for large trees for many seconds. Thread-safe; uses several threads of its own.
[[nodiscard]] std::optional<FileError> removeItem(const OpenedItem &item,
                                                  RemovalProgress *progress = nullptr);

} // namespace brimvale
