#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"

#include <string_view>

namespace brimvale {

/// The operation on an item that failed.
enum class FileOperation { remove, trash };

/// The failure of `operation` on `item` as the macOS file functions report it: their code and a sentence,
/// with the POSIX error underneath. ESTALE means that it is not the item that was selected.
[[nodiscard]] FileError fileError(FileOperation operation, const FileURL &item, int errorNumber);

/// The item cannot be moved to a Trash, because its volume has no usable one. The volume is named by its
/// mount point, "/" where that is unknown.
[[nodiscard]] FileError noTrashError(const FileURL &item, std::string_view mountPoint);

} // namespace brimvale
