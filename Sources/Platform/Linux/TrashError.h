#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Platform/Posix/Descriptor.h"

namespace brimvale {

/// Why an item in the open folder `parent` was not moved to the Trash, in words.
[[nodiscard]] FileError trashError(const FileURL &item, const Descriptor &parent, int errorNumber);

/// Whether the error of opening the Trash means that the volume has none which the user may use or make. Any
/// other error has a reason that may pass.
[[nodiscard]] bool meansNoTrash(int errorNumber);

} // namespace brimvale
