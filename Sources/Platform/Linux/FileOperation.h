#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"

#include <string_view>

namespace brimvale {

/// What was to be done with an item.
enum class FileOperation { remove, trash };

/// The failure of `operation` on `item` as the file functions of macOS report it: their code and a sentence,
/// with the POSIX error beneath.
[[nodiscard]] FileError fileError(FileOperation operation, const FileURL &item, int errorNumber);

/// The item cannot be moved to a trash, since the volume with this mount point, "/" where it is not known,
/// has none to be used.
[[nodiscard]] FileError noTrashError(const FileURL &item, std::string_view mountPoint);

} // namespace brimvale
