#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Platform/OpenedItem.h"
#include "Platform/Trash.h"

#include <optional>

namespace brimvale {

class Folder;

/// The folder that stands for the Trash of the Mac that the program is confined to; nothing otherwise.
[[nodiscard]] std::optional<FileURL> folderTrash();

/// Whether this open folder is that one.
[[nodiscard]] bool isFolderTrash(const Folder &folder);

/// Moves the item into a folder that stands for a Trash without records, as a Mac's is, and is made where it
/// is missing. This is only ever a rename on one volume, and replaces nothing. A name that is taken gets a
/// number. The errors are those of `moveToTrash`.
[[nodiscard]] Result<TrashedItem> moveToFolderTrash(const OpenedItem &item, const FileURL &trash);

} // namespace brimvale
