#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"

#include <optional>

namespace brimvale {

/// Moves the item into the user's Trash on the volume that it lies on, under a name of its own there. A link
/// is moved itself. It is a rename and nothing else: no contents are ever copied to another volume, nothing
/// is ever deleted, and where it fails the item is where it was.
///
/// An error has the code of the file functions of macOS with the POSIX error beneath it, as `removeItem`
/// has it; 3328, without one beneath, says that there is no trash to be used on that volume. Thread-safe.
[[nodiscard]] std::optional<FileError> moveToTrash(const FileURL &item);

} // namespace brimvale
