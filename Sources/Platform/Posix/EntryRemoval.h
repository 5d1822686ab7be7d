#pragma once

#include "Platform/Folder.h"

namespace brimvale {

/// Whether the entry `name` of an open folder is a subfolder that has to be emptied first: `unlinkat` refused
/// it with `error` because it is a folder, and not because it or its parent may not change.
[[nodiscard]] bool isFolderToEmpty(const Folder &folder, const char *name, int error);

} // namespace brimvale
