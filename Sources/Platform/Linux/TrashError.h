#pragma once

#include "Base/FileError.h"
#include "Platform/OpenedItem.h"

namespace brimvale {

/// Why an item was not moved to the Trash, in words.
[[nodiscard]] FileError trashError(const OpenedItem &item, int errorNumber);

/// Whether the error of opening the Trash means that the volume has none which the user may use or make. Any
/// other error has a reason that may pass.
[[nodiscard]] bool meansNoTrash(int errorNumber);

} // namespace brimvale
