#pragma once

#include "Base/FileError.h"
#include "Base/Result.h"
#include "Platform/OpenedItem.h"

#include <optional>
#include <string>

namespace brimvale {

/// An item that was moved to the Trash.
struct TrashedItem {
    /// The item where it is now; nothing if the Trash cannot be read.
    std::optional<ItemPin> now = {};
    /// Its path where the user would not look for it: in another Trash than the one in the home folder, which
    /// cannot be used now. Only its name where the system does not report the path.
    std::optional<std::string> unusualPlace = {};
};

/// Moves the item into the user's Trash on its volume, with a unique name there. Of a link, the link itself
/// is moved. This is only ever a rename: nothing is copied to another volume or deleted, and on failure the
/// item stays where it was. Where another item has taken the name of the one that was opened, that is an
/// error (POSIX ESTALE).
///
/// An error has the code of the macOS file functions with the POSIX error underneath, like `removeItem`; code
/// 3328 without one means that the volume has no usable Trash. Thread-safe.
[[nodiscard]] Result<TrashedItem> moveToTrash(const OpenedItem &item);

} // namespace brimvale
