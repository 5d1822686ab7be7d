#pragma once

#include "Platform/OpenedItem.h"

#include <optional>
#include <string>

namespace brimvale {

/// The path of a subvolume at or inside the opened folder: a file system within the file system, which is no
/// mount point and which a deletion of the folder cannot enter. Nothing if there is none, and only Btrfs has
/// any. Asks the file system for its subvolumes instead of walking the folder, so it takes little time
/// however large that is. Those inside folders that the user may not read are not found.
[[nodiscard]] std::optional<std::string> subvolumeIn(const OpenedItem &item);

} // namespace brimvale
